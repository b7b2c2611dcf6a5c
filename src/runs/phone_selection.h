// What the selection lists of companies, models and phones hold.
#pragma once

#include "common/list_entry.h"

#include <QList>

namespace velmora {

class MMain;

/// All companies, by code.
QList<ListEntry> companies(MMain& main);

/// The models of which the company has phones, by code.
QList<ListEntry> modelsOf(MMain& main, const QString& company);

/// The company's phones of that model, by code; only codes from `from` on when it is not empty.
QList<ListEntry> phonesOf(MMain& main, const QString& company, const QString& model,
                          const QString& from = {});

/// All phones of the company, by code.
QList<ListEntry> phonesOf(MMain& main, const QString& company);

/// Remembers a value for `owner` under `subcode`, in place of the one before.
void remember(MMain& main, const QString& owner, const QString& subcode, const QString& value);

/// The folder remembered for `owner` (a company code, or company and model code written together) under
/// `subcode`, without a trailing separator; empty when there is none.
QString rememberedFolder(MMain& main, const QString& owner, const QString& subcode);

} // namespace velmora

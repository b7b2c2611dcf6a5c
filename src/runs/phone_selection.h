// What the selection lists of companies, models and phones hold.
#pragma once

#include <QList>
#include <QString>

namespace velmora {

class MMain;

/// An entry of a selection list.
struct ListEntry {
    QString code;
    QString description;

    /// The entry as the lists show it: code, " \\ ", description.
    QString text() const;
};

/// The code of an entry's text: everything left of the first " \\ ".
QString codeOf(const QString& entryText);

/// All companies, by code.
QList<ListEntry> companies(MMain& main);

/// The models of which the company has phones, by code.
QList<ListEntry> modelsOf(MMain& main, const QString& company);

/// The company's phones of that model, by code; only codes from `from` on when it is not empty.
QList<ListEntry> phonesOf(MMain& main, const QString& company, const QString& model,
                          const QString& from = {});

/// All phones of the company, by code.
QList<ListEntry> phonesOf(MMain& main, const QString& company);

/// The folder remembered for `owner` (a company code, or company and model code written together) under
/// `subcode`, without a trailing separator; empty when there is none.
QString rememberedFolder(MMain& main, const QString& owner, const QString& subcode);

/// Which levels of parameters a run includes.
struct Levels {
    bool phone = true;
    bool company = true;
    bool equipment = true;
};

/// `levels` changed by what is remembered for the company and model: "0" leaves a level out, a blank leaves
/// it as it is, anything else includes it.
Levels rememberedLevels(MMain& main, const QString& company, const QString& model, Levels levels = {});

} // namespace velmora

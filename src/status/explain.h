// Why a phone has its values.
#pragma once

#include "common/phone.h"

#include <QList>
#include <QStringList>

#include <optional>

namespace velmora {

class MMain;

/// Where the value of a parameter comes from.
enum class ValueSource { Default, Company, Phone, Absent };

/// The source as the command line names it.
QString nameOf(ValueSource source);

struct ExplainedParameter {
    QString code;
    /// The description in the catalogue.
    QString description;
    /// The value as it is written into the file; nothing where the parameter is absent.
    std::optional<QString> value;
    /// The level in the catalogue; empty where the model's catalogue does not have the parameter.
    QString level;
    ValueSource source = ValueSource::Absent;
    /// The model whose row gives the value: the phone's own, unless the phone was moved from another one.
    QString model;
    /// The text of the row, before macros were expanded.
    QString stored;
    /// What else is to be said, in the user's language.
    QStringList remarks;
};

/// Every parameter of the model's catalogue and every other one that the phone has a value for, in ascending
/// code order, as a file would get them with the levels that are remembered for the company and model. The
/// main module's phones and stop flag stay as they are. Throws DatabaseError.
QList<ExplainedParameter> explain(MMain& main, const Phone& phone);

} // namespace velmora

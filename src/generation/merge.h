// Merging the rows that set the parameters of a phone: a pure function.
#pragma once

#include "modules/writer.h"

#include <memory>

namespace velmora {

/// A row that sets a parameter, as the database holds it.
struct ParameterRow {
    Parameter parameter;
    /// "E" for the model's default, "C" for the company's value, "P" for the phone's.
    QChar level;
    /// The model that the value was entered for, where that is another one than the phone has.
    QString otherModel;
    /// The token of the row's macro; empty where none stands in it.
    QString macro;

    ParameterRow(QChar ofLevel, const Parameter& of, const QString& ofOtherModel = {});
};

/// A parameter of a phone.
struct MergedParameter {
    /// The row that gives it; null where only the staging table can tell.
    const ParameterRow* row = nullptr;
    /// What it becomes for the phone, where that is not what the row holds.
    std::shared_ptr<const Parameter> own = {};

    const Parameter& parameter() const { return own ? *own : row->parameter; }
    /// Whether every phone that the row counts for has the same.
    bool isShared() const { return row && row->level != u'P' && !own; }
};

struct Merge {
    /// In ascending code order.
    QList<MergedParameter> parameters;
    /// The rows that are not simply a parameter more: their parameter has a value already, they grow too
    /// long, or their macro is refused or stands in their code. Only the staging table can tell what becomes
    /// of them.
    QList<const ParameterRow*> doubtful;
};

using ParameterRows = QList<const ParameterRow*>;

/// The order of parameter codes on both engines: by code points, of which those beyond 16 bits are the
/// greatest.
bool hasSmallerCode(const QString& one, const QString& other);

/// Sorts rows as merge() takes them: in ascending code order, as the database has it. Of one code, those for
/// the phone's own model come first, and else those that came first.
void sortForMerge(ParameterRows& rows);

/// Both, as one sorted list; of one code, those of `first` come first.
ParameterRows inOneList(const ParameterRows& first, const ParameterRows& second);

/// What the phone gets from its rows, which are sorted by their codes: of one code, the first one.
Merge merge(const ParameterRows& rows, const Phone& phone);

} // namespace velmora

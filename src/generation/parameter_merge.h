// Merging the parameters of one phone from the levels into the staging table EQ_TEMP.
#pragma once

#include "generation/phone_selection.h"

#include <QList>
#include <QString>

#include <functional>
#include <optional>

namespace velmora {

class MMain;

/// A parameter as a device file shows it.
struct Parameter {
    QString code;
    QString description;
    QString value;
};

/// Takes one line for the list of a run.
using LineSink = std::function<void(const QString& line)>;

/// Empties the staging table.
void clearStaging(MMain& main);

/// Stages the parameters of the current phone and returns them in ascending code order: the model's level-E
/// parameters with their defaults, then what the company sets for the model, then what is set for the phone.
///
/// A parameter that is staged already keeps its first value, and `line` is told its code (M200). One that the database
/// refuses for another reason is left out, and `line` is told (M201). Macros are expanded; an unknown one sets the stop
/// flag, and the merge ends with nothing after the level that holds it.
/// REQUIRES: an empty staging table.
std::optional<QList<Parameter>> mergeParameters(MMain& main, const Levels& levels, const LineSink& line);

} // namespace velmora

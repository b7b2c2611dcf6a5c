// Merging the parameters of one phone from the levels into the staging table EQ_TEMP.
#pragma once

#include <QList>
#include <QString>

#include <functional>

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

/// Adds the model's level-E parameters, with their defaults, for the current phone.
void stageEquipmentLevel(MMain& main, const LineSink& line);
/// Adds what the current phone's company sets for its model.
void stageCompanyLevel(MMain& main, const LineSink& line);
/// Adds what is set for the current phone alone.
void stagePhoneLevel(MMain& main, const LineSink& line);

// A parameter that is staged already keeps its first value, and `line` is told its code (M200). One that the
// database refuses for another reason is left out, and `line` is told (M201). Macros are expanded; an unknown
// one sets the stop flag, and the rest of the level is still staged.

/// What is staged, in ascending code order.
QList<Parameter> stagedParameters(MMain& main);

} // namespace velmora

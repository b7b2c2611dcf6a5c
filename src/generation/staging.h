// Staging the parameters of a phone in the table EQ_TEMP.
#pragma once

#include "generation/merge.h"
#include "runs/run_report.h"

#include <optional>

namespace velmora {

class MMain;

/// Merges the parameters of the current phone in the staging table, row by row, and returns them in ascending
/// code order: the model's level-E parameters with their defaults, then what the company sets for the model,
/// then what is set for the phone.
///
/// A parameter that is staged already keeps its first value, and `line` is told its code (M200), or, where
/// the phone's own model has a value and another model has one too, whose value does not count (M266). One
/// that the database refuses for another reason is left out, and `line` is told (M201). Macros are expanded;
/// an unknown one sets the stop flag, and nothing comes back after the level that holds it. The table is
/// empty afterwards.
std::optional<QList<MergedParameter>> mergeInTable(MMain& main, const Levels& levels, const LineSink& line);

} // namespace velmora

// Staging the parameters of a phone in the table EQ_TEMP.
#pragma once

#include "generation/merge.h"
#include "runs/run_report.h"

#include <optional>

namespace velmora {

class MMain;
struct MacroExpansion;

/// Where staging reports.
struct StagingReport {
    /// Takes a line about a row that is left out.
    LineSink line;
    /// Takes a macro that was refused; the rest of its row is staged all the same.
    std::function<void(const MacroExpansion& expansion)> refusedMacro;
};

/// Merges the parameters of the current phone in the staging table, row by row, and returns them in ascending
/// code order: the model's level-E parameters with their defaults, then what the company sets for the model,
/// then what is set for the phone.
///
/// A parameter that is staged already keeps its first value, and a line tells its code (M200), or, where the
/// phone's own model has a value and another model has one too, whose value does not count (M266). One that
/// the database refuses for another reason is left out, and a line tells it (M201). Macros are expanded;
/// after the level that holds an unknown one, nothing comes back. The table is empty afterwards.
std::optional<QList<MergedParameter>> mergeInTable(MMain& main, const Levels& levels,
                                                   const StagingReport& report);

} // namespace velmora

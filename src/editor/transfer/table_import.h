// Taking the lines of a file into a table.
#pragma once

#include "editor/transfer/table_check.h"

namespace velmora {

struct ImportOptions {
    /// Whether refused lines are left out; otherwise one of them keeps all others from being written.
    bool skipRefused = false;
    /// See checkLines().
    bool addRanges = false;
};

struct TableImport {
    /// What became of each line. Where nothing was written, what would.
    CheckedLines lines;
    bool written = false;
};

/// Writes the new and the changed records, all of them in one transaction or none; nothing is ever deleted.
/// The lines are checked within it. What the database refuses all the same is a refused line. `shown`, where
/// there are any, are the verdicts that the user has agreed to: others, since somebody has changed something
/// meanwhile, are not written. Nothing where `progress` ended it. Throws DatabaseError when the connection or
/// the transaction is lost.
std::optional<TableImport> importLines(MMain& main, const OpenTable& table, const TableFile& file,
                                       const ImportOptions& options, const TransferProgress& progress,
                                       const CheckedLines& shown = {});

/// Whether the current user may add codes to the ranges of companies.
bool mayAddRanges(MMain& main);

} // namespace velmora

// What the lines of a file would do to a table.
#pragma once

#include "editor/table_access.h"
#include "editor/transfer/note.h"
#include "editor/transfer/table_file.h"

#include <functional>

namespace velmora {

enum class Verdict { New, Changed, Same, Refused };

/// A line of the file and what it would do.
struct CheckedLine {
    /// Of the line in the file.
    qsizetype number = 0;
    Verdict verdict = Verdict::New;
    /// In table order, as they are to be stored: null only where a record may lack a value. None of a line
    /// that has too many or too few.
    QStringList values;
    /// The values of the record that is changed, as they are now; else none.
    QStringList before;
    /// Why the line is refused; else what is worth knowing.
    QList<Note> notes;
    /// Whether the phone's code has to be added to its company's range.
    bool addsRange = false;

    /// Whether that column of a record is changed.
    bool changes(qsizetype column) const
    {
        return verdict == Verdict::Changed &&
               (values[column] != before[column] || values[column].isNull() != before[column].isNull());
    }
    void refuse(Note why)
    {
        verdict = Verdict::Refused;
        notes = {std::move(why)};
        before.clear();
        addsRange = false;
    }
};

using CheckedLines = std::vector<CheckedLine>;

/// How far a long piece of work is, of how much; false ends it.
using TransferProgress = std::function<bool(qsizetype done, qsizetype total)>;

/// The verdict on every line, from what the database holds now; nothing is written. The rows of the table are
/// read once, and of the tables that it refers to, the keys. With `addRanges` a phone whose code is not in
/// its company's range has it added there; else it is refused. Nothing where `progress` ended it.
std::optional<CheckedLines> checkLines(MMain& main, const OpenTable& table, const TableFile& file,
                                       bool addRanges, const TransferProgress& progress);

/// How many lines have that verdict.
qsizetype count(const CheckedLines& lines, Verdict verdict);

/// The record's key, in the order of the key.
QStringList keyOf(const TableDescription& table, const QStringList& values);

} // namespace velmora

// The rows of a table as a file of separated values holds them.
#pragma once

#include "editor/table_description.h"
#include "editor/transfer/note.h"

#include <optional>
#include <stdexcept>
#include <vector>

namespace velmora {

/// The largest file that is read, and the most lines of it.
constexpr qsizetype mostFileBytes = qsizetype{64} << 20;
constexpr qsizetype mostFileLines = 500'000;

/// A row of the file.
struct TableLine {
    /// Of the line on which it begins.
    qsizetype number = 0;
    /// In table order; null where the line has nothing, or the file no such column.
    QStringList values;
    /// How many fields there are; a line with more or fewer than the first one has no values.
    qsizetype fields = 0;
};

struct TableFile {
    /// For each column of the table, whether the file has it.
    std::vector<bool> held;
    /// The headings that name no column of the table.
    QStringList further;
    /// How many headings there are.
    qsizetype fields = 0;
    std::vector<TableLine> lines;
};

/// A file that can't be taken at all.
class TableFileError : public std::runtime_error {
public:
    explicit TableFileError(Note why) : std::runtime_error(why.code.toStdString()), m_why(std::move(why)) {}

    const Note& why() const { return m_why; }

private:
    Note m_why;
};

/// Reads the bytes of a file in UTF-8, with or without a byte-order mark, or else in Windows-1252. Its first
/// line names columns, by their names or captions, in any order; every key column is among them. Lines of
/// empty fields alone are passed over. Without a `separator` it is recognised by what makes most columns of
/// the first line: ",", ";" or a tab. Throws TableFileError.
TableFile readTableFile(QByteArrayView bytes, const TableDescription& table,
                        std::optional<char> separator = std::nullopt);

/// What a spreadsheet puts on the clipboard, as the content of a file: a quotation mark that does not begin a
/// field stands there as it is.
QByteArray pastedTableBytes(const QString& text);

/// The content of a file; no more of it is read than can be taken. Throws FileError and TableFileError.
QByteArray readTableBytes(const QString& path);

} // namespace velmora

#include "phonebook/workbook.h"

#include "files/file_error.h"
#include "files/move_into_place.h"

#include <QFile>

#include <algorithm>
#include <xlsxwriter.h>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// The widest that a column is made, in characters.
constexpr qsizetype widestColumn = 60;

void writeRow(lxw_worksheet* sheet, lxw_row_t row, const QStringList& values, lxw_format* format)
{
    for (qsizetype column = 0; column < values.size(); ++column)
        worksheet_write_string(sheet, row, static_cast<lxw_col_t>(column),
                               values[column].toUtf8().constData(), format);
}

void setWidths(lxw_worksheet* sheet, const QStringList& headings, const QList<QStringList>& rows,
               lxw_format* text)
{
    for (qsizetype column = 0; column < headings.size(); ++column) {
        qsizetype longest = headings[column].size();
        for (const QStringList& row : rows)
            longest = std::max(longest, row[column].size());
        const auto place = static_cast<lxw_col_t>(column);
        worksheet_set_column(sheet, place, place, static_cast<double>(std::min(longest, widestColumn) + 2),
                             text);
    }
}

} // namespace

void writeWorkbook(const QString& path, const QStringList& headings, const QList<QStringList>& rows)
{
    const QString unfinished = path + ".part"_L1;
    lxw_workbook* book = workbook_new(unfinished.toUtf8().constData());
    if (!book)
        throw FileError(path, u"no memory for a workbook"_s);
    lxw_format* bold = workbook_add_format(book);
    format_set_bold(bold);
    // "@" is the format of texts: also what is typed into these columns later stays one.
    lxw_format* text = workbook_add_format(book);
    format_set_num_format(text, "@");
    lxw_worksheet* sheet = workbook_add_worksheet(book, nullptr);
    setWidths(sheet, headings, rows, text);
    writeRow(sheet, 0, headings, bold);
    for (qsizetype row = 0; row < rows.size(); ++row)
        writeRow(sheet, static_cast<lxw_row_t>(row + 1), rows[row], text);
    worksheet_freeze_panes(sheet, 1, 0);
    if (const lxw_error error = workbook_close(book); error != LXW_NO_ERROR) {
        QFile::remove(unfinished);
        throw FileError(path, QString::fromUtf8(lxw_strerror(error)));
    }
    if (const QString reason = moveIntoPlace(unfinished, path); !reason.isEmpty()) {
        QFile::remove(unfinished);
        throw FileError(path, reason);
    }
}

} // namespace velmora

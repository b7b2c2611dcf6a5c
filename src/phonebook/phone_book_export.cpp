#include "phonebook/phone_book_export.h"

#include "common/MMain.h"
#include "files/ansi.h"
#include "files/stored_path.h"
#include "files/unfinished_file.h"
#include "files/whole_file.h"
#include "phonebook/workbook.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// The rows of the company's book; nothing, after a line, when the run was stopped.
std::optional<QList<QStringList>> bookOf(MMain& main, const QString& company, const RunReport& report)
{
    Recordset rows = main.query("SELECT * FROM PHONE_BOOK WHERE CO_CODE = '"_L1 + company + u'\'');
    const auto columns = static_cast<int>(main.connection.columns(u"PHONE_BOOK"_s).size());
    QList<QStringList> book;
    for (; !rows.eof(); rows.moveNext()) {
        report.progress(rows.absolutePosition() - 1, rows.recordCount());
        if (main.stopFlag) {
            report.line(main.messageLine(u"M219"_s));
            return std::nullopt;
        }
        QStringList values;
        for (int column = 0; column < columns; ++column)
            values << rows.text(column);
        book << values;
    }
    report.progress(book.size(), book.size());
    return book;
}

void reportRows(MMain& main, qsizetype rows, const RunReport& report)
{
    bool show = true;
    report.line(main.GetMessage(u"M33"_s, QString::number(rows), show));
}

QString newWorkbookPath(const QString& folder)
{
    QString path = pathIn(folder, u"Phone_Book.xlsx"_s);
    for (int number = 2; QFileInfo::exists(path); ++number)
        path = pathIn(folder, u"Phone_Book_%1.xlsx"_s.arg(number));
    return path;
}

} // namespace

QByteArray semicolonSeparated(const QList<QStringList>& rows)
{
    QByteArray file;
    for (const QStringList& values : rows) {
        appendAnsi(file, values.join(u';'));
        file += "\r\n";
    }
    return file;
}

QString csvPath(const PhoneBookRequest& request)
{
    return pathIn(localFolder(request.folder), u"Phone_Book.csv"_s);
}

bool exportToCsv(MMain& main, const PhoneBookRequest& request, const RunReport& report)
{
    main.stopFlag = false;
    if (!openPhones(main, request))
        return false;
    const QString path = csvPath(request);
    if (QFileInfo::exists(path) &&
        !main.prompts.askYesNo(main.messageLine(u"M32"_s, path), main.textOr(u"FPBEXP"_s, u"Velmora"_s))) {
        main.showMessage(u"M33"_s, u"0"_s);
        return false;
    }
    const auto rows = bookOf(main, main.currentPhone().company, report);
    if (!rows)
        return false;
    removeLeftovers(localFolder(request.folder));
    writeWholeFile(path, semicolonSeparated(*rows));
    for (const QStringList& values : *rows)
        if (!fitsAnsi(values.join(u';')))
            report.tell({values.join(u';') + main.messageLine(u"M218"_s), true});
    reportRows(main, rows->size(), report);
    return true;
}

std::optional<QString> exportToWorkbook(MMain& main, const PhoneBookRequest& request, const RunReport& report)
{
    main.stopFlag = false;
    if (!openPhones(main, request))
        return std::nullopt;
    const auto rows = bookOf(main, main.currentPhone().company, report);
    if (!rows)
        return std::nullopt;
    QStringList headings;
    for (const Column& column : main.connection.columns(u"PHONE_BOOK"_s))
        headings << main.textOr(column.name, column.description.isEmpty() ? column.name : column.description);
    const QString path = newWorkbookPath(localFolder(request.folder));
    writeWorkbook(path, headings, *rows);
    reportRows(main, rows->size(), report);
    return path;
}

} // namespace velmora

// The export of a company's phone book.
#pragma once

#include "phonebook/phone_book.h"

#include <QByteArray>
#include <QList>
#include <QStringList>

#include <optional>

namespace velmora {

/// The bytes of a semicolon-separated file in Windows-1252: a line per row, without quoting or escaping.
QByteArray semicolonSeparated(const QList<QStringList>& rows);

/// Writes all rows and columns of the company's phone book into "Phone_Book.csv" in the folder, and asks
/// before it replaces one (M32). The number of rows is shown and is a line (M33), 0 when the user declined.
/// The main module's stop flag ends the run; nothing is written then. False when nothing was written. Throws
/// DatabaseError and FileError.
bool exportToCsv(MMain& main, const PhoneBookRequest& request, const RunReport& report);

/// The file that exportToCsv writes.
QString csvPath(const PhoneBookRequest& request);

/// The same into a new workbook with column headings, whose path is returned; an older workbook is never
/// replaced.
std::optional<QString> exportToWorkbook(MMain& main, const PhoneBookRequest& request,
                                        const RunReport& report);

} // namespace velmora

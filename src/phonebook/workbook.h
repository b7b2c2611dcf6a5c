// Spreadsheet files.
#pragma once

#include <QList>
#include <QStringList>

namespace velmora {

/// Writes a workbook (.xlsx, Office Open XML) with one sheet: the headings, frozen at the top, and the rows.
/// Every value is text, whatever it looks like. The file is written whole or not at all. Throws FileError.
void writeWorkbook(const QString& path, const QStringList& headings, const QList<QStringList>& rows);

} // namespace velmora

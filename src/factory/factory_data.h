// The rows of the factory database, read from the folder of data files.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace velmora {

/// Rows of one table, values in the table's column order.
struct TableRows {
    QString table;
    QList<QStringList> rows;
};

/// Everything that the files in `folder` say, in an order that keeps the foreign keys satisfied. Throws
/// FileError naming the file that is missing or has a broken row.
QList<TableRows> readFactoryData(const QString& folder);

} // namespace velmora

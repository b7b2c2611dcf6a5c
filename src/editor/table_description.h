// What a table consists of.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace velmora {

class MMain;

struct TableColumn {
    QString name;
    /// The text of the database for the column, else the schema's description of it, else its name.
    QString caption;
    bool key = false;
    /// The most characters of a value; 0 where the schema names no bound.
    int width = 0;
    /// Whether a record may lack a value here.
    bool mayBeNull = false;
};

/// A table as the schema of the database declares it.
struct TableDescription {
    QString name;
    QList<TableColumn> columns;
    /// The columns of the primary key in the order of the key.
    QStringList keys;
};

/// Throws DatabaseError when there is no such table.
TableDescription describeTable(MMain& main, const QString& table);

/// The different values of a column, as the texts of a filter.
QStringList distinctValues(MMain& main, const QString& table, const QString& column);

} // namespace velmora

// Looking into a database.
#pragma once

#include "database/connection.h"

namespace velmora {

/// The first field of every row of a query.
inline QStringList firstFields(Connection& connection, const QString& query)
{
    QStringList fields;
    for (Recordset rows = connection.select(query); !rows.eof(); rows.moveNext())
        fields << rows.text(0);
    return fields;
}

} // namespace velmora

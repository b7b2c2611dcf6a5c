// What a step that was cut off has left on a server, which can't undo changes of the schema.
#pragma once

#include <QString>

namespace velmora {

class Connection;

/// Whether the schema and the rows already are as `statement`, of an upgrade step, would make them: it adds
/// columns or a foreign key that are there, drops a foreign key that is not, or inserts a row that is there
/// as it stands. False for every other statement: an UPDATE or a DELETE of a step can be run again.
bool standsAlready(Connection& connection, const QString& statement);

} // namespace velmora

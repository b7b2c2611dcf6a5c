// Changes of the schema on a server, which can't undo them, so that they may be cut off at any moment.
#pragma once

#include <QString>

namespace velmora {

class Connection;

/// Deals with a statement of an upgrade step that can't simply be run, perhaps once more. True where nothing
/// of it is left to do.
///
/// Passed over is what schema and rows show to stand already: columns or a foreign key that are there, a
/// foreign key to be dropped that is not, a row that is there as it stands. A foreign key is added without
/// the server copying the table: where it is killed while it does so, the table loses its other foreign keys.
bool changeMariaDbSchema(Connection& connection, const QString& statement);

} // namespace velmora

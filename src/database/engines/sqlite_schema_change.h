// Changes of the schema that SQLite can't say in one statement.
#pragma once

#include <QString>

namespace velmora {

class Connection;

/// Carries out `statement` when it is one of these, with the result that it asks for, and returns whether it
/// was:
///
///     ALTER TABLE table ADD column, column, ...
///     ALTER TABLE table DROP CONSTRAINT name
///     ALTER TABLE table ADD CONSTRAINT name FOREIGN KEY ...
///
/// The last two rebuild the table as https://www.sqlite.org/lang_altertable.html#otheralter says: a table of
/// the new shape is made, filled and put in place of the old one, with its indexes and triggers; then row
/// count and references are checked. REQUIRES for these two: a transaction, and no other table that refers to
/// this one. Throws DatabaseError; the caller's transaction then undoes what was done.
bool changeSqliteSchema(Connection& connection, const QString& statement);

} // namespace velmora

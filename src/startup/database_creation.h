// Filling an empty database from an earlier one.
#pragma once

#include <QString>

namespace velmora {

class Connection;
class MMain;

/// Whether the database has never been filled: it holds no tables, or only ones of ours, all without a row,
/// which a creation that ended early has left. One that holds other tables is not ours to fill.
bool awaitsCreation(Connection& connection);

/// Creates the thirteen tables in the main database, as far as they are not there, and copies every row of
/// the earlier database that `original`, a connection string, names: all of them or none. Tells the user how
/// it ended; the program then ends. True, without a word, where another start has filled the database
/// meanwhile: this one may go on.
///
/// Where the earlier database can't be opened or is of another version, the empty tables stay. A copy that
/// the database refuses (DatabaseError) or that is cut off leaves no row, and on a server the empty tables:
/// the next start goes on from there. Phones without a model can't be copied: they are named before anything
/// is written.
bool createDatabase(MMain& main, const QString& original);

} // namespace velmora

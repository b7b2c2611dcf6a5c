// Filling an empty database from an earlier one.
#pragma once

#include <QString>

namespace velmora {

class MMain;

/// Creates the thirteen tables in the main database and copies every row of the earlier database that
/// `original`, a connection string, names. Tells the user how it ended; the program then ends.
///
/// Where the earlier database can't be opened or is of another version, the empty tables stay. A copy that
/// the database refuses leaves nothing: DatabaseError is then thrown. One that is cut off leaves nothing in
/// an embedded database. Phones without a model can't be copied: they are named before anything is written.
void createDatabase(MMain& main, const QString& original);

} // namespace velmora

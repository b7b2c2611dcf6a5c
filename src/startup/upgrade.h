// Bringing the stored schema to the program's version.
#pragma once

#include <QString>

namespace velmora {

class MMain;

/// Compares the version that the database records with the program's. Where they differ, the user is told,
/// and the first step of the schema whose bound is beyond the recorded version is taken: one step only, even
/// where the database is further behind. Then the database is stamped with the program's version, whatever it
/// recorded.
///
/// Before a step, a copy of an embedded database is kept beside it; of one on a server the user is told that
/// none is. A step is one transaction with its stamp: one that fails (DatabaseError) or is cut off leaves an
/// embedded database as it was. On a server, whose changes of the schema can't be undone, the next start
/// finishes it.
///
/// False where another start is changing the schema at this moment: the user has been told to wait, and the
/// program must end.
bool upgrade(MMain& main);

/// What a start says that finds another one at work on the schema.
QString anotherStartText();

} // namespace velmora

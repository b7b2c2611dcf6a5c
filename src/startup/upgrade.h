// Bringing the stored schema to the program's version.
#pragma once

namespace velmora {

class MMain;

/// Compares the version that the database records with the program's. Where they differ, the user is told,
/// and the first step of the schema whose bound is beyond the recorded version is taken: one step only, even
/// where the database is further behind. Then the database is stamped with the program's version, whatever it
/// recorded.
///
/// Before a step, a copy of an embedded database is kept beside it. A step is one transaction with its stamp:
/// one that fails (DatabaseError) or is cut off leaves an embedded database as it was.
void upgrade(MMain& main);

} // namespace velmora

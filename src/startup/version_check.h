// Bringing the stored schema to the program's version.
#pragma once

namespace velmora {

class MMain;

/// Compares the version that the database records with the program's, tells the user when they differ, and
/// stamps the database with the program's version. A database whose schema is older than this program can
/// take over is refused with DatabaseError and stays as it is.
void checkVersion(MMain& main);

} // namespace velmora

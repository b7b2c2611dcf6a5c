// The seed file "tarvel.csv": rows that the program takes over once.
#pragma once

#include <QString>

namespace velmora {

class MMain;

/// Loads "tarvel.csv" from the program folder, if it is there, and renames it so that it is loaded once.
///
/// Each line holds, separated by ";", a tag, a table and the row's values. Only lines tagged with the
/// program's version and "V", or "All", are taken. A row that the database refuses is skipped: silently when
/// tagged "All"; the others are told in one message after the file has been renamed. All rows are one
/// transaction: a load that is cut off leaves nothing, and the file stays for the next start. A file that
/// can't be read is reported and left alone. Throws DatabaseError or FileError when the load can't be
/// completed.
void loadSeedFile(MMain& main);

} // namespace velmora

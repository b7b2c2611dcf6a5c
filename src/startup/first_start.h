// What the first start of an installed program brings along.
#pragma once

#include <QString>

namespace velmora {

class MMain;

/// The installed share folder: "../share/velmora", seen from the executable's folder.
QString installedShare();

/// Copies what a program folder is made of from `share` into the user's data folder, when that is the program
/// folder and holds no ParamDB.txt; later, only a manual that has changed, and a factory database of another
/// version that the user has made nothing of. A folder that was chosen is never filled. True when the
/// start-up may go on; false when a message has been shown and the program must end.
bool fillProgramFolder(const MMain& main, const QString& chosen, const QString& share = installedShare());

} // namespace velmora

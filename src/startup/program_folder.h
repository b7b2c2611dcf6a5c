// Where ParamDB.txt, the seed file and the manual lie.
#pragma once

#include <QString>

namespace velmora {

/// The program folder, without a trailing separator: `chosen` when it is not empty, else the variable
/// VELMORA_HOME, else the executable's folder when it holds ParamDB.txt, else the user's data folder.
QString programFolder(const QString& chosen);

/// Whether the user has chosen the program folder, by `chosen` or the variable VELMORA_HOME.
bool isChosen(const QString& chosen);

} // namespace velmora

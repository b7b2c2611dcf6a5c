// The program's version.
#pragma once

#include <QString>

namespace velmora {

/// Major, minor and revision joined with dots, for people: "1.1.42".
QString versionText();

/// Major, minor and revision with two digits each, as the database records it: "010142".
QString versionDigits();

} // namespace velmora

// Names that Windows gives to no file and no folder.
#pragma once

#include <QString>

namespace velmora {

/// The first name in `path` that a file or folder can't have on Windows, or an empty text. There a colon
/// leads to another content of a file, "NUL" or "com1.txt" to a device, and a dot or blank at the end is
/// dropped: what is written under such a name would be lost, or stand under another one.
QString nameForbiddenOnWindows(const QString& path);

/// The same on Windows; nothing on other systems, which have such names.
QString nameForbiddenHere(const QString& path);

} // namespace velmora

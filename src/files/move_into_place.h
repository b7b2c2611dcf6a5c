// Files and folders that get their name when they are whole.
#pragma once

#include <QString>

namespace velmora {

/// Gives the file or folder `from` the name `to`, on the same file system. A file of that name is replaced;
/// until the very moment it stays as it is. On Windows a file that another program holds open can't be
/// replaced: since virus scanners and servers mostly do so for a moment, it is tried for a second. Returns
/// the system's reason where it can't be done, else an empty text.
[[nodiscard]] QString moveIntoPlace(const QString& from, const QString& to);

/// The system's reason why the file `path` could not be replaced now; empty where it could, or is not there.
QString obstacleTo(const QString& path);

} // namespace velmora

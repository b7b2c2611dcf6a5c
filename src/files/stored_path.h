// Folders as database rows hold them.
#pragma once

#include <QString>

namespace velmora {

/// `stored` with one trailing separator cut off ("\" everywhere, "/" unless it is the root folder).
QString withoutTrailingSeparator(const QString& stored);

/// A stored folder as this platform names it: on Windows with "\" alone, and a drive's root folder with it
/// too; on other systems every "\" becomes "/".
QString localFolder(const QString& stored);

/// `name` inside `folder`, joined with this platform's separator.
QString pathIn(const QString& folder, const QString& name);

/// A text that two paths have in common where this platform takes them for the same: on Windows, in any case.
QString comparable(const QString& path);

} // namespace velmora

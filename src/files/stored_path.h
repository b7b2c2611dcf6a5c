// Folders as database rows hold them.
#pragma once

#include <QString>

namespace velmora {

/// `stored` with one trailing separator cut off ("\" everywhere, "/" unless it is the root folder).
QString withoutTrailingSeparator(const QString& stored);

/// A stored folder as this platform names it: on other systems than Windows every "\" becomes "/".
QString localFolder(const QString& stored);

/// `name` inside `folder`, joined with this platform's separator.
QString pathIn(const QString& folder, const QString& name);

} // namespace velmora

// Files and folders that stand beside their place until they are whole.
#pragma once

#include <QString>

class QFile;

namespace velmora {

/// The name beside `path` under which it is made until it is whole; it tells which process makes it, and
/// where.
QString unfinishedName(const QString& path);

/// Opens a new `file` for writing. Where `like` is a file, the new one gets its owner, group and permissions,
/// so that who could not read what it replaces can't read it either. Where it can't get them (the owner may
/// differ when the group reads), it gets what every new file gets: who must read it would else be shut out.
bool openNew(QFile& file, const QString& like);

/// Removes what processes that were killed have left unfinished in `folder`: at once where this machine knows
/// that the process is gone, else, as for a number given anew or a folder shared with another machine, an
/// hour after the last write. What can't be removed stays.
void removeLeftovers(const QString& folder);

} // namespace velmora

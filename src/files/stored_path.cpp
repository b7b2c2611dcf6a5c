#include "files/stored_path.h"

#include <QDir>

namespace velmora {

QString withoutTrailingSeparator(const QString& stored)
{
    const bool backslash = stored.endsWith(u'\\');
    const bool slash = stored.size() > 1 && stored.endsWith(u'/');
    return backslash || slash ? stored.chopped(1) : stored;
}

QString localFolder(const QString& stored)
{
#ifdef Q_OS_WIN
    return stored;
#else
    return QString(stored).replace(u'\\', u'/');
#endif
}

QString pathIn(const QString& folder, const QString& name)
{
    return folder.endsWith(QDir::separator()) ? folder + name : folder + QDir::separator() + name;
}

} // namespace velmora

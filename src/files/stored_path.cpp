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
    const QString native = QDir::toNativeSeparators(stored);
    // A drive without it stands for the folder that was last used there.
    return native.size() == 2 && native.endsWith(u':') ? native + u'\\' : native;
#else
    return QString(stored).replace(u'\\', u'/');
#endif
}

QString pathIn(const QString& folder, const QString& name)
{
    return folder.endsWith(u'/') || folder.endsWith(QDir::separator()) ? folder + name
                                                                       : folder + QDir::separator() + name;
}

QString comparable(const QString& path)
{
#ifdef Q_OS_WIN
    return path.toCaseFolded();
#else
    return path;
#endif
}

} // namespace velmora

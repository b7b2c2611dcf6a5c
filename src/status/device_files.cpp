#include "status/device_files.h"

#include <QFile>
#include <QFileInfo>

namespace velmora {

FoundFile findFile(const QString& path)
{
    const QFileInfo info(path);
    FoundFile found;
    found.exists = info.exists() || info.isSymLink();
    if (!info.isFile())
        return found;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        found.reason = file.errorString();
        return found;
    }
    QByteArray bytes = file.read(largestFile + 1);
    if (file.error() != QFile::NoError)
        found.reason = file.errorString();
    else if (bytes.size() <= largestFile)
        found.bytes = std::move(bytes);
    return found;
}

} // namespace velmora

#include "files/whole_file.h"

#include "files/file_error.h"

#include <QFile>
#include <QSaveFile>

namespace velmora {

QByteArray readWholeFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw FileError(path, file.errorString());
    const QByteArray content = file.readAll();
    if (file.error() != QFileDevice::NoError)
        throw FileError(path, file.errorString());
    return content;
}

void writeWholeFile(const QString& path, const QByteArray& content)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.commit())
        throw FileError(path, file.errorString());
}

} // namespace velmora

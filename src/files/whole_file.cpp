#include "files/whole_file.h"

#include "files/file_error.h"
#include "files/unfinished_file.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <filesystem>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// A disk that fills up takes only a part of what is written, and names its reason when it refuses the rest.
bool writeAll(QFile& file, const QByteArray& content)
{
    qint64 written = 0;
    while (written < content.size()) {
        const qint64 taken = file.write(content.constData() + written, content.size() - written);
        if (taken <= 0)
            return false;
        written += taken;
    }
    return true;
}

} // namespace

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

void writeWholeFile(const QString& path, const QByteArray& content, const QString& like)
{
    // Beside its place until it is whole. QSaveFile would also wait for the disk, which takes longer than all
    // the rest of a device file; what is lost with the power can be generated again.
    QFile file(unfinishedName(path));
    const auto fail = [&](const QString& reason) {
        file.remove();
        throw FileError(path, reason);
    };
    if (!openNew(file, like.isEmpty() ? path : like) || !writeAll(file, content))
        fail(file.errorString());
    file.close();
    if (file.error() != QFileDevice::NoError)
        fail(file.errorString());
    std::error_code failure;
    std::filesystem::rename(file.fileName().toStdU16String(), path.toStdU16String(), failure);
    if (failure)
        fail(QString::fromLocal8Bit(failure.message().c_str()));
}

void checkWritable(const QString& path)
{
    if (QFileInfo(path).isDir())
        throw FileError(path, QString::fromLocal8Bit(std::strerror(EISDIR)));
    QFile file(unfinishedName(path));
    if (!openNew(file, path))
        throw FileError(path, file.errorString());
    file.remove();
}

} // namespace velmora

#include "files/whole_file.h"

#include "files/file_error.h"
#include "files/move_into_place.h"
#include "files/unfinished_file.h"
#include "files/windows_names.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>

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

/// What is written must stand under the very name that was given.
void checkName(const QString& path)
{
    if (const QString name = nameForbiddenHere(path); !name.isEmpty())
        throw FileError(path, u"Windows does not allow the name \"%1\""_s.arg(name));
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
    checkName(path);
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
    if (const QString reason = moveIntoPlace(file.fileName(), path); !reason.isEmpty())
        fail(reason);
}

void checkWritable(const QString& path)
{
    checkName(path);
    if (QFileInfo(path).isDir())
        throw FileError(path, QString::fromLocal8Bit(std::strerror(EISDIR)));
    if (const QString reason = obstacleTo(path); !reason.isEmpty())
        throw FileError(path, reason);
    QFile file(unfinishedName(path));
    if (!openNew(file, path))
        throw FileError(path, file.errorString());
    file.remove();
}

} // namespace velmora

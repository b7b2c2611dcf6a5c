#include "files/whole_file.h"

#include "files/file_error.h"

#include <QCoreApplication>
#include <QFile>

#include <filesystem>

using namespace Qt::StringLiterals;

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
    // Beside its place until it is whole. QSaveFile would also wait for the disk, which takes longer than all
    // the rest of a device file; what is lost with the power can be generated again.
    QFile file(path + ".part"_L1 + QString::number(QCoreApplication::applicationPid()));
    const auto fail = [&](const QString& reason) {
        file.remove();
        throw FileError(path, reason);
    };
    // Unbuffered: what a flush of the buffer could write only in part would count as written.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || file.write(content) != content.size())
        fail(file.errorString());
    file.close();
    std::error_code failure;
    std::filesystem::rename(file.fileName().toStdU16String(), path.toStdU16String(), failure);
    if (failure)
        fail(QString::fromLocal8Bit(failure.message().c_str()));
}

} // namespace velmora

#include "files/unfinished_file.h"

#include "platform/process.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QRegularExpression>
#include <QSysInfo>

#ifndef Q_OS_WIN
#include <sys/stat.h>
#include <unistd.h>
#endif

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// Longer than any file takes to write.
constexpr qint64 patienceSeconds = 3600;

/// This machine, as a part of a file name.
QString thisMachine()
{
    static const QString name = [] {
        static const QRegularExpression other(u"[^A-Za-z0-9.]"_s);
        return QSysInfo::machineHostName().replace(other, u"_"_s).left(40);
    }();
    return name;
}

bool isLeftover(const QFileInfo& entry)
{
    static const QRegularExpression pattern(u"\\.velmora-(\\d+)-(.*)\\.part$"_s);
    const QRegularExpressionMatch parts = pattern.match(entry.fileName());
    if (!parts.hasMatch())
        return false;
    const qint64 process = parts.captured(1).toLongLong();
    // One of this process's own number was left by an earlier process of that number.
    const bool gone = process == QCoreApplication::applicationPid() || !isRunning(process);
    if (gone && parts.captured(2) == thisMachine())
        return true;
    return entry.lastModified().secsTo(QDateTime::currentDateTime()) > patienceSeconds;
}

/// Gives an empty `file` the owner, group and permissions of the file `like`. The owner may be another, such
/// as the next installer, where the group reads.
bool passOnAccess(const QString& like, QFile& file)
{
#ifdef Q_OS_WIN
    Q_UNUSED(like);
    Q_UNUSED(file);
    return false; // there a file has the rights of its folder
#else
    struct stat from = {};
    if (stat(QFile::encodeName(like).constData(), &from) != 0)
        return false;
    const int to = file.handle();
    constexpr auto keepOwner = static_cast<uid_t>(-1);
    const bool groupReads = (from.st_mode & S_IRGRP) != 0;
    return (fchown(to, from.st_uid, from.st_gid) == 0 ||
            (groupReads && fchown(to, keepOwner, from.st_gid) == 0)) &&
           fchmod(to, from.st_mode & 0777) == 0;
#endif
}

} // namespace

QString unfinishedName(const QString& path)
{
    static const QString ending =
        u".velmora-%1-%2.part"_s.arg(QString::number(QCoreApplication::applicationPid()), thisMachine());
    return path + ending;
}

bool openNew(QFile& file, const QString& like)
{
    // Unbuffered: what a flush of the buffer could write only in part would count as written.
    constexpr auto mode = QIODevice::WriteOnly | QIODevice::Unbuffered;
    if (QFileInfo(like).isFile()) {
        if (file.open(mode, QFile::ReadOwner | QFile::WriteOwner) && passOnAccess(like, file))
            return true;
        file.remove();
    }
    return file.open(mode);
}

void removeLeftovers(const QString& folder)
{
    QDirIterator entries(folder, {u"*.velmora-*.part"_s},
                         QDir::Files | QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot);
    while (entries.hasNext()) {
        const QFileInfo entry = entries.nextFileInfo();
        if (!isLeftover(entry))
            continue;
        if (entry.isDir() && !entry.isSymLink())
            QDir(entry.filePath()).removeRecursively();
        else
            QFile::remove(entry.filePath());
    }
}

} // namespace velmora

#include "startup/first_start.h"

#include "common/MMain.h"
#include "files/file_error.h"
#include "files/stored_path.h"
#include "files/unfinished_file.h"
#include "files/whole_file.h"
#include "startup/program_folder.h"

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>

#include <algorithm>
#include <filesystem>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

void makeFolder(const QString& path)
{
    if (!QDir().mkpath(path))
        throw FileError(path, u"the folder can't be made"_s);
}

/// The user's own folder: the database, the seed files and ParamDB.txt hold passwords. One that is there
/// keeps its permissions.
void makeOwnFolder(const QString& path)
{
    const bool isNew = !QFile::exists(path);
    makeFolder(path);
    if (isNew)
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

/// Copies a file, or a folder with all that it holds. The copies get the permissions of new files, so that
/// the user may change them even where the installed ones are read-only.
void copy(const QString& from, const QString& to)
{
    if (!QFileInfo(from).isDir())
        return writeWholeFile(to, readWholeFile(from));
    makeFolder(to);
    for (const QString& name : QDir(from).entryList(QDir::AllEntries | QDir::NoDotAndDotDot))
        copy(pathIn(from, name), pathIn(to, name));
}

/// Moves within one file system. What is there already stays: it is the user's, or another program's that
/// started at the same moment.
void moveUnlessThere(const QString& from, const QString& to)
{
    if (QFile::exists(to) || !QFile::exists(from))
        return;
    std::error_code failure;
    std::filesystem::rename(from.toStdU16String(), to.toStdU16String(), failure);
    if (failure && !QFile::exists(to))
        throw FileError(to, QString::fromLocal8Bit(failure.message().c_str()));
}

void fill(const QString& folder, const QString& share)
{
    makeOwnFolder(folder);
    const QTemporaryDir copies(unfinishedName(pathIn(folder, u"filling-XXXXXX"_s)));
    if (!copies.isValid())
        throw FileError(folder, copies.errorString());
    for (const QString& name : {u"factory.db"_s, u"ParamDB.txt"_s})
        copy(pathIn(share, name), copies.filePath(name));
    for (const QString& name : {u"manual.htm"_s, u"manual"_s})
        if (QFile::exists(pathIn(share, name)))
            copy(pathIn(share, name), copies.filePath(name));
    // ParamDB.txt last: where it stands, the folder is whole.
    for (const QString& name : {u"manual"_s, u"manual.htm"_s, u"factory.db"_s, u"ParamDB.txt"_s})
        moveUnlessThere(copies.filePath(name), pathIn(folder, name));
}

bool sameContent(const QString& one, const QString& other)
{
    return QFile::exists(other) && readWholeFile(one) == readWholeFile(other);
}

/// Replaces the manual by that of the installed program. It is the program's, not the user's; an older one
/// that can't be replaced is no reason not to start.
void renewManual(const QString& folder, const QString& share)
{
    try {
        QStringList pages = {u"manual.htm"_s};
        for (const QString& page : QDir(pathIn(share, u"manual"_s)).entryList({u"*.htm"_s}))
            pages << "manual/"_L1 + page;
        const bool current = std::all_of(pages.begin(), pages.end(), [&](const QString& page) {
            return sameContent(pathIn(share, page), pathIn(folder, page));
        });
        for (const QString& name : {u"manual"_s, u"manual.htm"_s})
            if (!current && QFile::exists(pathIn(share, name)))
                copy(pathIn(share, name), pathIn(folder, name));
    } catch (const FileError&) {
    }
}

} // namespace

QString installedShare()
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + "/../share/velmora"_L1);
}

bool fillProgramFolder(const MMain& main, const QString& chosen, const QString& share)
{
    const auto holdsParamDB = [](const QString& folder) {
        return QFile::exists(pathIn(folder, u"ParamDB.txt"_s));
    };
    // Where nothing is installed, the start-up tells what it misses.
    if (isChosen(chosen) || !holdsParamDB(share))
        return true;
    removeLeftovers(main.programFolder);
    if (holdsParamDB(main.programFolder)) {
        renewManual(main.programFolder, share);
        return true;
    }
    try {
        fill(main.programFolder, share);
        return true;
    } catch (const FileError& error) {
        main.prompts.show("Velmora can't start: "_L1 + error.path() + ": "_L1 + error.description(),
                          u"Another folder can be chosen with --program-dir or the variable VELMORA_HOME."_s);
        return false;
    }
}

} // namespace velmora

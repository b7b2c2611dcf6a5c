#include "startup/first_start.h"

#include "common/MMain.h"
#include "database/connection_string.h"
#include "files/file_error.h"
#include "files/move_into_place.h"
#include "files/stored_path.h"
#include "files/unfinished_file.h"
#include "files/whole_file.h"
#include "schema/version.h"
#include "startup/param_db.h"
#include "startup/program_folder.h"

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>

#include <algorithm>

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
    const QString reason = moveIntoPlace(from, to);
    if (!reason.isEmpty() && !QFile::exists(to))
        throw FileError(to, reason);
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

/// Whether a connection string names that file.
bool isOfFile(const QString& connectionString, const QString& folder, const QString& file)
{
    const ConnectionString string(connectionString, folder);
    const QFileInfo named(string.value(u"Data Source"_s).isEmpty() ? QString()
                                                                   : string.requiredFile(u"Data Source"_s));
    return string.value(u"Provider"_s).compare("SQLite"_L1, Qt::CaseInsensitive) == 0 &&
           named.canonicalFilePath() == QFileInfo(file).canonicalFilePath();
}

/// The version that a database records, where it holds nothing of a user's: no company and no phone, number
/// or code of one. Nothing for others. Throws DatabaseError where it can't be read.
std::optional<QString> versionOfUnused(const QString& file)
{
    // Changes that are not yet in the file are somebody's work.
    for (const QString& log : {u"-wal"_s, u"-journal"_s})
        if (QFileInfo(file + log).size() > 0)
            return {};
    Connection database;
    database.open("Provider=SQLite;Data Source="_L1 + file, OpenMode::ReadOnly);
    for (const QString& table : {u"COMPANY"_s, u"PHONES"_s, u"RANGES"_s, u"PHONE_BOOK"_s})
        if (!database.select("SELECT 1 FROM "_L1 + table + " LIMIT 1"_L1).eof())
            return {};
    const Recordset version =
        database.select(u"SELECT SY_VALUE FROM SYSTEM_PARAMETERS WHERE SY_CODE = '$$BASEVER'"_s);
    return version.eof() ? std::nullopt : std::optional(version.text(0));
}

/// Replaces a factory database of another version by that of the installed program: a new database can only
/// be created from one of its own version. The replaced one is kept under its version's name. Whatever may be
/// a user's own is left alone, and none that can't be replaced is a reason not to start.
void renewFactoryDatabase(const QString& folder, const QString& share)
{
    const QString installed = pathIn(share, u"factory.db"_s);
    const QString own = pathIn(folder, u"factory.db"_s);
    if (!QFile::exists(own) || !QFile::exists(installed))
        return;
    try {
        const ParamDB paramDB = readParamDB(folder);
        if (!isOfFile(paramDB.original, folder, own) || isOfFile(paramDB.working, folder, own))
            return;
        const std::optional<QString> version = versionOfUnused(own);
        if (!version || *version == versionDigits())
            return;
        const QString kept = pathIn(folder, "factory_"_L1 + *version + ".db"_L1);
        if (QFile::exists(kept) && !sameContent(own, kept))
            return;
        copy(own, kept);
        copy(installed, own);
    } catch (const DatabaseError&) {
    } catch (const FileError&) {
    }
}

} // namespace

QString installedShare()
{
#ifdef Q_OS_WIN
    const auto place = "/share/velmora"_L1;
#else
    const auto place = "/../share/velmora"_L1;
#endif
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + place);
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
        renewFactoryDatabase(main.programFolder, share);
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

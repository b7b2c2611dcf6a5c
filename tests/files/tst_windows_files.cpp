// Files on Windows, where others may hold them and names mean what they mean nowhere else.
#include "files/file_error.h"
#include "files/stored_path.h"
#include "files/whole_file.h"
#include "support/rows.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <thread>
#include <windows.h>

using namespace Qt::StringLiterals;
using namespace velmora;

class tst_windows_files : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void replacesAFileOnceNobodyHoldsIt_data();
    void replacesAFileOnceNobodyHoldsIt();
    void writesUnderTheVeryName_data();
    void writesUnderTheVeryName();
    void namesFoldersAsWindowsDoes_data();
    void namesFoldersAsWindowsDoes();
};

void tst_windows_files::replacesAFileOnceNobodyHoldsIt_data()
{
    columns<int, int, bool>("shared", "milliseconds", "replaced");
    constexpr int read = FILE_SHARE_READ;
    constexpr int all = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    row("a moment", read, 300, true);
    row("too long", read, 1800, false);
    row("too long, whoever else may have it", all, 1800, false);
}

void tst_windows_files::replacesAFileOnceNobodyHoldsIt()
{
    QFETCH(int, shared);
    QFETCH(int, milliseconds);
    QFETCH(bool, replaced);
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"held"_s);
    writeWholeFile(path, "old");
    const HANDLE file = CreateFileW(path.toStdWString().c_str(), GENERIC_READ, static_cast<DWORD>(shared),
                                    nullptr, OPEN_EXISTING, 0, nullptr);
    QVERIFY(file != INVALID_HANDLE_VALUE);
    QVERIFY_THROWS_EXCEPTION(FileError, checkWritable(path));
    std::thread holder([=] {
        Sleep(static_cast<DWORD>(milliseconds));
        CloseHandle(file);
    });
    QString reason;
    try {
        writeWholeFile(path, "new");
    } catch (const FileError& error) {
        reason = error.description();
    }
    holder.join();
    QCOMPARE(reason, replaced ? QString() : qt_error_string(ERROR_SHARING_VIOLATION));
    QCOMPARE(readWholeFile(path), replaced ? "new" : "old");
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList(u"held"_s));
}

void tst_windows_files::writesUnderTheVeryName_data()
{
    columns<QString, bool>("name", "allowed");
    row("accents", "été €", true);
    row("another content of a file", "file:content", false);
    row("a device", "nul", false);
    row("a dot at the end", "file.", false);
}

void tst_windows_files::writesUnderTheVeryName()
{
    QFETCH(QString, name);
    QFETCH(bool, allowed);
    const QTemporaryDir folder;
    const QString path = folder.filePath(name);
    if (allowed)
        writeWholeFile(path, "x");
    else
        QVERIFY_THROWS_EXCEPTION(FileError, writeWholeFile(path, "x"));
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files), allowed ? QStringList(name) : QStringList());
}

void tst_windows_files::namesFoldersAsWindowsDoes_data()
{
    columns<QString, QString>("stored", "path");
    row("a drive", "C:", "C:\\x");
    row("slashes", "C:/a/b", "C:\\a\\b\\x");
    row("a server's", "//server/share\\a", "\\\\server\\share\\a\\x");
}

void tst_windows_files::namesFoldersAsWindowsDoes()
{
    QFETCH(QString, stored);
    QTEST(pathIn(localFolder(stored), u"x"_s), "path");
    QCOMPARE(comparable(u"C:\\Été\\CFG01"_s), comparable(u"c:\\été\\cfg01"_s));
}

QTEST_GUILESS_MAIN(tst_windows_files)
#include "tst_windows_files.moc"

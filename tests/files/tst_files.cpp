// Windows-1252, whole files and stored paths.
#include "files/ansi.h"
#include "files/file_error.h"
#include "files/stored_path.h"
#include "files/whole_file.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <sys/resource.h>

#include <csignal>

using namespace Qt::StringLiterals;
using namespace velmora;

/// While it lives, no file of this process can grow beyond `size` bytes: a disk that is full.
class WriteLimit {
public:
    explicit WriteLimit(rlim_t size)
    {
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit = {size, m_before.rlim_max};
        std::signal(SIGXFSZ, SIG_IGN);
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~WriteLimit() { setrlimit(RLIMIT_FSIZE, &m_before); }
    WriteLimit(const WriteLimit&) = delete;
    WriteLimit& operator=(const WriteLimit&) = delete;

private:
    rlimit m_before = {};
};

class tst_files : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void encodes_data();
    void encodes();
    void decodes_data();
    void decodes();
    void replacesAFileWholeOrNotAtAll();
    void cutsOneTrailingSeparator_data();
    void cutsOneTrailingSeparator();
};

void tst_files::encodes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("complete");
    QTest::newRow("ascii") << u"P2=a&b;\r\n"_s << QByteArray("P2=a&b;\r\n") << true;
    QTest::newRow("latin") << u"\u00A0é\u00FF"_s << QByteArray("\xA0\xE9\xFF") << true;
    QTest::newRow("upper controls") << u"€‚Ÿž™"_s << QByteArray("\x80\x82\x9F\x9E\x99") << true;
    QTest::newRow("unassigned stay") << u"\u0081\u009D"_s << QByteArray("\x81\x9D") << true;
    QTest::newRow("control without place") << u"\u0080"_s << QByteArray("?") << false;
    QTest::newRow("outside") << u"ałb"_s << QByteArray("a?b") << false;
    QTest::newRow("beyond the basic plane") << u"a\U0001F600b"_s << QByteArray("a?b") << false;
}

void tst_files::encodes()
{
    QFETCH(QString, text);
    QByteArray bytes;
    QTEST(appendAnsi(bytes, text), "complete");
    QTEST(bytes, "bytes");
}

void tst_files::decodes_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    QTest::newRow("utf-8 with mark") << QByteArray("\xEF\xBB\xBFnum\xC3\xA9") << u"numé"_s;
    QTest::newRow("utf-8 without mark") << QByteArray("num\xC3\xA9") << u"numé"_s;
    QTest::newRow("windows-1252") << QByteArray("num\xE9 \x80") << u"numé €"_s;
    QTest::newRow("utf-8 cut off") << QByteArray("num\xC3") << u"numÃ"_s;
}

void tst_files::decodes()
{
    QFETCH(QByteArray, bytes);
    QTEST(decodeText(bytes), "text");
}

void tst_files::replacesAFileWholeOrNotAtAll()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"file"_s);
    writeWholeFile(path, "old and longer");
    writeWholeFile(path, QByteArray("new\0", 4));
    QCOMPARE(readWholeFile(path), QByteArray("new\0", 4));

    {
        const WriteLimit fullDisk(1000);
        QVERIFY_THROWS_EXCEPTION(FileError, writeWholeFile(path, QByteArray(100000, 'x')));
    }
    QCOMPARE(readWholeFile(path), QByteArray("new\0", 4));

    QVERIFY_THROWS_EXCEPTION(FileError, writeWholeFile(folder.filePath(u"missing/file"_s), "x"));
    QVERIFY(QDir(folder.path()).mkdir(u"taken"_s));
    QVERIFY_THROWS_EXCEPTION(FileError, writeWholeFile(folder.filePath(u"taken"_s), "x"));
    QVERIFY_THROWS_EXCEPTION(FileError, readWholeFile(folder.filePath(u"absent"_s)));
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList(u"file"_s));
}

void tst_files::cutsOneTrailingSeparator_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("cut");
    QTest::newRow("backslash") << u"C:\\out\\"_s << u"C:\\out"_s;
    QTest::newRow("two") << u"C:\\out\\\\"_s << u"C:\\out\\"_s;
    QTest::newRow("slash") << u"/out/"_s << u"/out"_s;
    QTest::newRow("root") << u"/"_s << u"/"_s;
    QTest::newRow("none") << u"out"_s << u"out"_s;
    QTest::newRow("empty") << QString() << QString();
}

void tst_files::cutsOneTrailingSeparator()
{
    QFETCH(QString, stored);
    QTEST(withoutTrailingSeparator(stored), "cut");
}

QTEST_GUILESS_MAIN(tst_files)
#include "tst_files.moc"

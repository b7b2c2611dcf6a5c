// Windows-1252, separated values, whole files and stored paths.
#include "files/ansi.h"
#include "files/file_error.h"
#include "files/separated_values.h"
#include "files/stored_path.h"
#include "files/unfinished_file.h"
#include "files/whole_file.h"
#include "files/windows_names.h"
#include "support/rows.h"

#include <QDateTime>
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#ifndef Q_OS_WIN
#include <sys/resource.h>
#endif

#include <csignal>
#include <cstring>

using namespace Qt::StringLiterals;
using namespace velmora;

#ifndef Q_OS_WIN
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
#endif

class tst_files : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanupTestCase();
    void encodes_data();
    void encodes();
    void decodes_data();
    void decodes();
    void readsSeparatedValues_data();
    void readsSeparatedValues();
    void replacesAFileWholeOrNotAtAll();
    void removesLeftovers_data();
    void removesLeftovers();
    void cutsOneTrailingSeparator_data();
    void cutsOneTrailingSeparator();
    void findsNamesForbiddenOnWindows_data();
    void findsNamesForbiddenOnWindows();

private:
    QProcess m_living; // until the end of its input
};

void tst_files::cleanupTestCase()
{
    m_living.closeWriteChannel();
    m_living.waitForFinished();
}

void tst_files::encodes_data()
{
    columns<QString, QByteArray, bool>("text", "bytes", "complete");
    row("ascii", "P2=a&b;\r\n", QByteArray("P2=a&b;\r\n"), true);
    row("latin", "\u00A0é\u00FF", QByteArray("\xA0\xE9\xFF"), true);
    row("upper controls", "€‚Ÿž™", QByteArray("\x80\x82\x9F\x9E\x99"), true);
    row("unassigned stay", "\u0081\u009D", QByteArray("\x81\x9D"), true);
    row("control without place", "\u0080", QByteArray("?"), false);
    row("outside", "ałb", QByteArray("a?b"), false);
    row("beyond the basic plane", "a\U0001F600b", QByteArray("a?b"), false);
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
    columns<QByteArray, QString>("bytes", "text");
    row("utf-8 with mark", QByteArray("\xEF\xBB\xBFnum\xC3\xA9"), "numé");
    row("utf-8 without mark", QByteArray("num\xC3\xA9"), "numé");
    row("windows-1252", QByteArray("num\xE9 \x80"), "numé €");
    row("utf-8 cut off", QByteArray("num\xC3"), "numÃ");
}

void tst_files::decodes()
{
    QFETCH(QByteArray, bytes);
    QTEST(decodeText(bytes), "text");
}

void tst_files::readsSeparatedValues_data()
{
    // rows: their lines, and their fields in brackets, or why there are none
    columns<QByteArray, QString>("text", "rows");
    row("empty", QByteArray(), "");
    row("plain", QByteArray("a;b\nc;\n"), "1[a][b]2[c][-]");
    row("no last line end", QByteArray("a;b\r\nc;d"), "1[a][b]2[c][d]");
    row("quotes, separator and line end", QByteArray("\"say \"\"a;b\"\"\nnow\";\"\"\nx"),
        "1[say \"a;b\"\nnow][]3[x]");
    row("blanks and tabs", QByteArray(" a\t; ;\" b \"\n"), "1[ a\t][ ][ b ]");
    row("line ends", QByteArray("a\r\n\r\n\nb\rc\r\r\"d\r\n\ne\"\r\nf"), "1[a]4[b]5[c]7[d\r\n\ne]10[f]");
    row("a row of many parts", "x;" + QByteArray("yz;").repeated(70'000 / 3).first(65'530) + "\n",
        "line 1: there are too many fields");
    row("not closed", QByteArray("a\n\"b;c\n"), "1[a]line 2: a quote is not closed");
    row("in the middle", QByteArray("a\"b;c\n"),
        "line 1: a quote stands in an unquoted field, or ends before its field does");
    row("text after it", QByteArray("\"a\"b;c\n"),
        "line 1: a quote stands in an unquoted field, or ends before its field does");
    row("without an end", "a;\n\"" + QByteArray(mostFieldBytes + 1, '\n'),
        "1[a][-]line 2: a field is too long, or its quote is not closed");
}

void tst_files::readsSeparatedValues()
{
    QFETCH(QByteArray, text);
    QString read;
    try {
        readSeparatedRows(text, ';', [&read](const SeparatedRow& row) {
            read += QString::number(row.line());
            for (qsizetype place = 0; place < row.size(); ++place)
                read +=
                    row.field(place).isNull() ? u"[-]"_s : u'[' + QString::fromUtf8(row.field(place)) + u']';
            return true;
        });
    } catch (const SeparatedValuesError& error) {
        read += QString::fromUtf8(error.what());
    }
    QTEST(read, "rows");
}

void tst_files::replacesAFileWholeOrNotAtAll()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"file"_s);
    writeWholeFile(path, "old and longer");
#ifndef Q_OS_WIN // there a file has the rights of its folder
    const auto secret =
        QFile::ReadUser | QFile::ReadOwner | QFile::WriteUser | QFile::WriteOwner | QFile::ReadGroup;
    QVERIFY(QFile::setPermissions(path, secret));
#endif
    writeWholeFile(path, QByteArray("new\0", 4));
    QCOMPARE(readWholeFile(path), QByteArray("new\0", 4));
#ifndef Q_OS_WIN
    QCOMPARE(QFile::permissions(path), secret);

    try {
        const WriteLimit fullDisk(1000);
        writeWholeFile(path, QByteArray(100000, 'x'));
        QFAIL("written beyond the limit");
    } catch (const FileError& error) {
        QCOMPARE(error.description(), QString::fromLocal8Bit(std::strerror(EFBIG)));
    }
    QCOMPARE(readWholeFile(path), QByteArray("new\0", 4));
#endif

    QVERIFY_THROWS_EXCEPTION(FileError, writeWholeFile(folder.filePath(u"missing/file"_s), "x"));
    QVERIFY(QDir(folder.path()).mkdir(u"taken"_s));
    QVERIFY_THROWS_EXCEPTION(FileError, writeWholeFile(folder.filePath(u"taken"_s), "x"));
    QVERIFY_THROWS_EXCEPTION(FileError, readWholeFile(folder.filePath(u"absent"_s)));
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList(u"file"_s));
}

void tst_files::removesLeftovers_data()
{
#ifdef Q_OS_WIN
    m_living.start(u"cmd"_s);
#else
    m_living.start(u"cat"_s);
#endif
    QVERIFY(m_living.waitForStarted());
    const auto unfinished = [](qint64 process) {
        return unfinishedName(u"cfg01"_s)
            .replace(QString::number(QCoreApplication::applicationPid()), QString::number(process));
    };
    constexpr qint64 none = 1LL << 30; // beyond the numbers that are given
    const QString elsewhere = unfinished(none).replace(".part"_L1, "x.part"_L1);
    columns<QString, int, bool>("name", "hours", "stays");
    row("its process is gone", unfinished(none), 0, false);
    row("of an earlier process of this number", unfinishedName(u"cfg01"_s), 0, false);
    const qint64 living = m_living.processId();
    row("its process lives", unfinished(living), 0, true);
    row("its number was given anew", unfinished(living), 2, false);
    row("another machine's", elsewhere, 0, true);
    row("another machine's, old", elsewhere, 2, false);
    row("somebody's own", "archive.part12", 2, true);
}

void tst_files::removesLeftovers()
{
    QFETCH(QString, name);
    QFETCH(int, hours);
    const QTemporaryDir folder;
    QFile file(folder.filePath(name));
    QVERIFY(file.open(QFile::WriteOnly));
    QVERIFY(
        file.setFileTime(QDateTime::currentDateTime().addSecs(-3600 * hours), QFile::FileModificationTime));
    file.close();
    removeLeftovers(folder.path());
    QTEST(file.exists(), "stays");
}

void tst_files::cutsOneTrailingSeparator_data()
{
    columns<QString, QString>("stored", "cut");
    row("backslash", "C:\\out\\", "C:\\out");
    row("two", "C:\\out\\\\", "C:\\out\\");
    row("slash", "/out/", "/out");
    row("root", "/", "/");
    row("none", "out", "out");
    row("empty", QString(), QString());
}

void tst_files::cutsOneTrailingSeparator()
{
    QFETCH(QString, stored);
    QTEST(withoutTrailingSeparator(stored), "cut");
}

void tst_files::findsNamesForbiddenOnWindows_data()
{
    columns<QString, QString>("path", "forbidden");
    for (const char* allowed :
         {"C:\\tftp\\cfg000b82000101", "\\\\server\\share\\a b", "\\\\?\\C:\\tftp", "D:", "C:/out/..\\x/",
          "Été.txt", "console", "COM10", "nul_1.txt", "", ".part"})
        row(allowed, allowed, "");
    row("another content of a file", "C:\\tftp\\cfg00:0b", "cfg00:0b");
    row("the folder last used on a drive", "C:tftp\\x", "C:tftp");
    row("a drive further on", "\\\\server\\C:\\x", "C:");
    row("a device", "C:\\tftp\\nul", "nul");
    row("a device with an ending", "x/Com1.txt/y", "Com1.txt");
    row("a device with a blank", "AUX .ini", "AUX .ini");
    row("a device by another path", "\\\\.\\LPT³", "LPT³");
    row("a dot at the end", "C:\\Smith Co.\\x", "Smith Co.");
    row("a blank at the end", "x \\y", "x ");
    row("a control character", "x\ty", "x\ty");
    for (const char* name : {"a<b", "a>b", "a\"b", "a|b", "a?b", "a*b"})
        row(name, name, name);
}

void tst_files::findsNamesForbiddenOnWindows()
{
    QFETCH(QString, path);
    QTEST(nameForbiddenOnWindows(path), "forbidden");
}

QTEST_GUILESS_MAIN(tst_files)
#include "tst_files.moc"

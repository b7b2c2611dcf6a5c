// The start-up through the real embedded database: creation, language, superusers, version, seed file.
#include "database/connection.h"
#include "files/whole_file.h"
#include "support/program_folder_fixture.h"
#include "support/rows.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QTest>

#ifndef Q_OS_WIN
#include <unistd.h>
#endif

using namespace Qt::StringLiterals;
using namespace velmora;

#ifndef Q_OS_WIN
namespace {

/// Until the end of the block, this process has no more rights in the folder than any user: to root all files
/// are writable.
[[nodiscard]] auto withoutPower(const QString& folder)
{
    constexpr uid_t anybody = 65534;
    const uid_t before = geteuid();
    if (before == 0)
        for (const QFileInfo& entry : QDir(folder).entryInfoList(QDir::NoDotDot | QDir::AllEntries))
            QTest::qVerify(chown(qPrintable(entry.filePath()), anybody, anybody) == 0, "chown", "", __FILE__,
                           __LINE__);
    QTest::qVerify(before != 0 || setresuid(anybody, anybody, before) == 0, "setresuid", "", __FILE__,
                   __LINE__);
    return qScopeGuard([before] { QCOMPARE(setresuid(before, before, before), 0); });
}

} // namespace
#endif

class tst_start_up : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void createsThenStarts();
    void refuses_data();
    void refuses();
    void tellsWhatCanNotBeWritten_data();
    void tellsWhatCanNotBeWritten();
    void hasOneOfTwoFirstStartsWait();
    void copiesEveryRow();
    void doesNotTouchADatabaseOfOthers();
    void asksSuperusers();
    void loadsTheSeedFileOnce();
    void keepsTheSeedFileWhereItCanNotBeRenamed();

private:
    void create() { QVERIFY(!Start(*m_folder).ready); }
    void change(const QString& statement) { execute(m_folder->working(), statement); }
    QStringList rows(const QString& query) { return rowsOf(m_folder->working(), query); }
    QString factory() const { return m_folder->embedded(u"factory.db"_s); }

    std::unique_ptr<ProgramFolderFixture> m_folder;
};

void tst_start_up::init()
{
    m_folder = std::make_unique<ProgramFolderFixture>(QStringLiteral(VELMORA_SHARE));
}

void tst_start_up::createsThenStarts()
{
    QCOMPARE(Start(*m_folder).user.shown, QStringList(u"DATABASE CREATED --> RUN PROGRAM AGAIN"_s));
    Start second(*m_folder);
    QVERIFY(second.ready);
    QCOMPARE(second.user.shown, QStringList());
    QCOMPARE(second.main.language, u"EN"_s);
    QCOMPARE(second.main.userName, u"JDOE"_s);
    second.main.connection.execute(u"INSERT INTO EQ_TEMP VALUES('1', '', '', 'E')"_s);
    QCOMPARE(rows(u"SELECT * FROM EQ_TEMP"_s), QStringList());

    change(u"UPDATE SYSTEM_PARAMETERS SET SY_VALUE = 'FR' WHERE SY_CODE = '$$LNG'"_s);
    QCOMPARE(Start(*m_folder).main.language, u"FR"_s);
    change(u"DELETE FROM SYSTEM_PARAMETERS WHERE SY_CODE = '$$LNG'"_s);
    QCOMPARE(Start(*m_folder).main.language, u"EN"_s);
}

void tst_start_up::refuses_data()
{
    columns<QString, QString, QString, QString, QString, int>("working", "original", "inFactory", "shown",
                                                              "details", "tables");
    const auto toOpen = [](const char* name, const QString& line, const QString& shown,
                           const QString& details) {
        row(name, line, "", "", "Open Database Failed : "_L1 + shown, details, 0);
    };
    toOpen("no folder", u"Provider=SQLite;Data Source=no/x.db"_s, u"Provider=SQLite;Data Source=no/x.db"_s,
           u"unable to open .*/no/x.db$"_s);
#ifndef Q_OS_WIN // there the empty file that was begun stays
    toOpen("a folder in the place of the -wal", u"Provider=SQLite;Data Source=taken.db"_s,
           u"Provider=SQLite;Data Source=taken.db"_s, u"disk I/O error: .*/taken.db$"_s);
#endif
    toOpen("password in quotes", u"Provider=MariaDB;Password='s;Port=ecret';Port=1"_s,
           u"Provider=MariaDB;Password=...;Port=1"_s, u"lacks"_s);
    toOpen("password with its own pairs", u"Provider=MariaDB;Password=a;secret=1;b;Port=1"_s,
           u"Provider=MariaDB;Password=...;Port=1"_s, u"no pair of key and value"_s);
    toOpen("password without =", u"Provider=MariaDB;Password secret;Port=1"_s,
           u"Provider=MariaDB;Password ...;Port=1"_s, u"no pair of key and value"_s);
    toOpen("other word", u"Provider=MariaDB; pass word = secret ;Port=1"_s,
           u"Provider=MariaDB; pass word =...;Port=1"_s, u"lacks"_s);
    const QString complete = u"Provider=MariaDB;Data Source=127.0.0.1;Initial Catalog=a;User ID=b;"_s;
    toOpen("forgotten ;", complete + "Port=1 PWD=secret"_L1, complete + "Port=1 PWD=..."_L1,
           u"^The Port \"1 PWD=...$"_s);

    const auto toCreate = [](const char* name, const QString& original, const QString& inFactory,
                             const QString& shown, const QString& details,
                             int tables) { row(name, "", original, inFactory, shown, details, tables); };
    toCreate("no earlier database", {}, {},
             u"DATABASE CREATION\nOriginal Database Not Specified : see Manual (ParamDB.txt )"_s, u"^$"_s, 0);
    toCreate("unreadable", u"Provider=SQLite;Data Source=none.db;Password=secret"_s, {},
             u"Open Original Database Failed : Provider=SQLite;Data Source=none.db;Password=..."_s,
             u"unable to open .*/none.db\nCorrect line 2 of ParamDB.txt, "_s, 13);
    const QString factory = u"Provider=SQLite;Data Source=factory.db"_s;
    toCreate("another version", factory,
             u"UPDATE SYSTEM_PARAMETERS SET SY_VALUE = '010141' WHERE SY_CODE = '$$BASEVER'"_s,
             u"The Original Database MUST be Version : 010142\n"
             "Run this program version on the old database to convert"_s,
             u"Correct line 2 of ParamDB.txt, "_s, 13);
    toCreate("phones without a model", factory,
             u"INSERT INTO COMPANY VALUES('C1', 'x'); INSERT INTO RANGES VALUES('C1', '1'); "
             "INSERT INTO PHONES VALUES('C1', '1', NULL, 'phone', 'mac')"_s,
             u"The Original Database holds phones without a model : C1 1\n"
             "Give them one, then run this program again"_s,
             u"^$"_s, 0);
    toCreate("refused row", factory, u"INSERT INTO COMPANY VALUES('TOO LONG', 'x')"_s,
             u"Velmora can't start: "_s, u"^INSERT INTO COMPANY VALUES\\('TOO LONG', 'x'\\)$"_s,
             onServer() ? 13 : 0);
}

/// Both lines name their files as seen from the program folder. Once line 2 is right, the next start creates.
void tst_start_up::refuses()
{
    QFETCH(QString, working);
    QFETCH(QString, original);
    QFETCH(QString, inFactory);
    QFETCH(QString, shown);
    QFETCH(QString, details);
    QFETCH(int, tables);
    QVERIFY(QDir(m_folder->path()).mkdir(u"taken.db-wal"_s));
    for (const QString& statement : inFactory.split("; "_L1, Qt::SkipEmptyParts))
        execute(factory(), statement);
    const QString right = m_folder->working().remove(m_folder->path() + u'/');
    m_folder->writeParamDB(working.isEmpty() ? right : working, original);
    const Start start(*m_folder);
    QVERIFY(!start.ready);
    QCOMPARE(start.user.shown.size(), 1);
    QVERIFY2(start.user.shown[0].startsWith(shown), qPrintable(start.user.shown[0]));
    const QString told = QDir::fromNativeSeparators(start.user.details[0]);
    QVERIFY2(told.contains(QRegularExpression(details)), qPrintable(told));
    QVERIFY(!start.user.details[0].contains("ecret"_L1));
    QStringList files = QDir(m_folder->path()).entryList({u"*.db"_s});
    files.removeAll(tables == 0 ? QString() : u"velmora.db"_s);
    QCOMPARE(files, QStringList(u"factory.db"_s));
    Connection left;
    left.open(m_folder->working());
    QCOMPARE(left.tables().size(), tables);
    left.closeUnused();
    if (!working.isEmpty())
        return;

    m_folder->write(u"factory.db"_s, readWholeFile(QStringLiteral(VELMORA_SHARE "/factory.db")));
    m_folder->writeParamDB(right, u"Provider=SQLite;Data Source=factory.db"_s);
    create();
    QCOMPARE(everyRow(m_folder->working()), everyRow(factory()));
}

void tst_start_up::tellsWhatCanNotBeWritten_data()
{
    columns<QString>("name");
    row("database", "velmora.db");
    row("its shared memory", "velmora.db-shm");
    row("its folder", ".");
}

void tst_start_up::tellsWhatCanNotBeWritten()
{
#ifdef Q_OS_WIN
    QSKIP("The permissions are those of Unix");
#else
    if (onServer())
        QSKIP("no files");
    QFETCH(QString, name);
    create();
    if (!QFile::exists(m_folder->file(name)))
        m_folder->write(name, "x"); // the engine gives an empty one the permissions of the database
    const auto user = withoutPower(m_folder->path());
    const auto permissions = QFile::permissions(m_folder->file(name));
    QVERIFY(
        QFile::setPermissions(m_folder->file(name), permissions & ~(QFile::WriteUser | QFile::WriteOwner)));
    const Start start(*m_folder);
    QVERIFY(QFile::setPermissions(m_folder->file(name), permissions));
    QVERIFY(!start.ready);
    const QString told = start.user.shown[0] + start.user.details[0];
    QVERIFY2(told.contains(QDir::cleanPath(m_folder->file(name)) + " can't be written"_L1), qPrintable(told));
#endif
}

void tst_start_up::hasOneOfTwoFirstStartsWait()
{
    QProcess programs[2];
    for (QProcess& program : programs)
        program.start(QStringLiteral(VELMORA_CLI), {u"--program-dir"_s, m_folder->path(), u"start"_s});
    int created = 0;
    for (QProcess& program : programs) {
        QVERIFY(program.waitForFinished());
        const QByteArray told = program.readAllStandardError();
        created += told.contains("DATABASE CREATED");
        // The other one goes on with what the first has created, unless that takes too long.
        QVERIFY2(told.isEmpty() || told.contains("RUN PROGRAM AGAIN"), told.constData());
        QCOMPARE(program.exitCode(), told.isEmpty() ? 0 : 3);
    }
    QCOMPARE(created, 1);
    QCOMPARE(everyRow(m_folder->working()), everyRow(factory()));
}

/// The working database is left for another one and comes back, row for row: the way to a server, or from it.
void tst_start_up::copiesEveryRow()
{
    // Keys that differ in case, accents or a blank only; four bytes, quotes and backslashes.
    execute(factory(), u"INSERT INTO COMPANY VALUES('e', 'L''Étoile; \"a\\b\" \U0001F600'), ('E', 'blank '), "
                       "('é', ''), ('e ', ''), ('\\n', ''), ('\U0001F600', ''), ('\U0001F601', '')"_s);
    execute(factory(), u"INSERT INTO EQ_TEMP VALUES('left', 'over', '', 'E')"_s);
    create();
    m_folder->write(u"tarvel.csv"_s, readWholeFile(QStringLiteral(VELMORA_SHARE "/demo.csv")));
    QVERIFY(Start(*m_folder).ready);
    const QStringList working = everyRow(m_folder->working());
    QVERIFY(working.size() > 1500);
    for (const QString& row : everyRow(factory()))
        QVERIFY2(working.contains(row) || row.startsWith("EQ_TEMP"_L1), qPrintable(row));

    const EmptyDatabase back(m_folder->file(u"back.db"_s));
    m_folder->writeParamDB(back.connectionString(), m_folder->working());
    create();
    QCOMPARE(everyRow(back.connectionString()), working);
    m_folder->writeParamDB(m_folder->embedded(u"file.db"_s), back.connectionString());
    create();
    QCOMPARE(everyRow(m_folder->embedded(u"file.db"_s)), working);
}

void tst_start_up::doesNotTouchADatabaseOfOthers()
{
    change(u"CREATE TABLE THEIRS (A text)"_s);
    change(u"CREATE TABLE COMPANY (CO_CODE text)"_s);
    const Start start(*m_folder);
    QVERIFY(!start.ready);
    QVERIFY2(start.user.shown[0].contains("SYSTEM_PARAMETERS"_L1), qPrintable(start.user.shown[0]));
    Connection theirs;
    theirs.open(m_folder->working());
    QCOMPARE(theirs.tables(), QStringList({u"COMPANY"_s, u"THEIRS"_s}));
}

void tst_start_up::asksSuperusers()
{
    create();
    QCOMPARE(Start(*m_folder, u"other"_s).main.userName, u"JDOE"_s);
    change(u"UPDATE SYSTEM_PARAMETERS SET SY_SUBCODE = 'JDOE' WHERE SY_CODE = '$$SUPERUSER'"_s);
    const Start acting(*m_folder, u"other"_s);
    QVERIFY(acting.ready);
    QCOMPARE(acting.main.userName, u"OTHER"_s);
    QCOMPARE(acting.user.proposals, QStringList(u"JDOE"_s));
    const Start cancelling(*m_folder);
    QVERIFY(cancelling.ready);
    QCOMPARE(cancelling.main.userName, u"JDOE"_s);
}

void tst_start_up::loadsTheSeedFileOnce()
{
    create();
    const QByteArray seed = "010142V;COMPANY;C1;L'\xC9toile\r\n" // Windows-1252
                            "All;COMPANY;C2;two;a field too many\r\n"
                            "All;COMPANY;C2;again\r\n"
                            "All;COMPANY;C3\r\n"
                            "010130V;COMPANY;C4;another version\r\n"
                            "all;COMPANY;C5;another tag\r\n"
                            "\r\n"
                            "010142V;COMPANY;C6\n"
                            "010142V;COMPANY;TOOLONG;x\n"
                            "010142V;NOWHERE;a;b\n"
                            "010142V\n"
                            "010142V;PHONES;C9;1;PAP2;x;y\n"
                            "010142V;COMPANY;C7;last line without an end";
    m_folder->write(u"tarvel.csv"_s, seed);
    m_folder->write(u"tarvel_010142.csv"_s, "an earlier one");
    const Start start(*m_folder);
    QVERIFY(start.ready);
    QCOMPARE(start.user.details, QStringList(u"Rows of the seed file refused: 5"_s));
    const QStringList refused = start.user.shown[0].split(u'\n');
    QCOMPARE(refused.size(), 5);
    QVERIFY(refused[0].startsWith("Error : INSERT INTO COMPANY VALUES('C6', ' The line holds 1 values"_L1));
    QVERIFY(refused[1].startsWith("Error : INSERT INTO COMPANY VALUES('TOOLONG', 'x') "_L1));
    QVERIFY(refused[1].contains("CO_CODE"_L1));
    QVERIFY(refused[2].startsWith("Error : INSERT INTO NOWHERE VALUE) "_L1));
    QVERIFY(refused[4].contains("FOREIGN KEY"_L1, Qt::CaseInsensitive));
    QCOMPARE(rows(u"SELECT * FROM COMPANY ORDER BY 1"_s),
             QStringList({u"C1|L'Étoile"_s, u"C2|two"_s, u"C7|last line without an end"_s}));
    QVERIFY(!QFile::exists(m_folder->file(u"tarvel.csv"_s)));
    QCOMPARE(readWholeFile(m_folder->file(u"tarvel_010142.csv"_s)), seed);
}

void tst_start_up::keepsTheSeedFileWhereItCanNotBeRenamed()
{
    create();
    m_folder->write(u"tarvel.csv"_s, "010142V;COMPANY;C1;x\n");
    QVERIFY(QDir(m_folder->path()).mkdir(u"tarvel_010142.csv"_s));
    const Start start(*m_folder);
    QVERIFY(!start.ready);
    QVERIFY(start.user.shown[0].contains("tarvel_010142.csv"_L1));
    QVERIFY(QFile::exists(m_folder->file(u"tarvel.csv"_s)));
    QCOMPARE(rows(u"SELECT * FROM COMPANY"_s), QStringList());
}

QTEST_GUILESS_MAIN(tst_start_up)
#include "tst_start_up.moc"

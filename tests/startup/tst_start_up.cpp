// The start-up through the real embedded database: creation, language, superusers, version, seed file.
#include "common/MMain.h"
#include "database/connection.h"
#include "files/whole_file.h"
#include "startup/param_db.h"
#include "startup/start_up.h"
#include "support/program_folder_fixture.h"
#include "support/recorded_prompts.h"
#include "support/rows.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace velmora;

namespace {

/// One start of the program in the folder.
struct Start {
    explicit Start(const ProgramFolderFixture& folder, const QString& systemUser = u"jdoe"_s,
                   const std::optional<QString>& answer = std::nullopt)
        : main(folder.path(), user.prompts())
    {
        user.textAnswer = answer;
        ready = StartUp(main, systemUser);
    }

    RecordedPrompts user;
    MMain main;
    bool ready = false;
};

/// While it lives, this process has no more rights in the folder than any user: to root all files are
/// writable.
class WithoutPower {
public:
    explicit WithoutPower(const QString& folder) : m_before(geteuid())
    {
        if (m_before != 0)
            return;
        for (const QFileInfo& entry : QDir(folder).entryInfoList(QDir::NoDotDot | QDir::AllEntries))
            QCOMPARE(chown(entry.filePath().toLocal8Bit().constData(), anybody, anybody), 0);
        QCOMPARE(setresuid(anybody, anybody, m_before), 0);
    }
    ~WithoutPower() { QCOMPARE(setresuid(m_before, m_before, m_before), 0); }
    WithoutPower(const WithoutPower&) = delete;
    WithoutPower& operator=(const WithoutPower&) = delete;

private:
    static constexpr uid_t anybody = 65534;
    const uid_t m_before;
};

} // namespace

class tst_start_up : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void readsParamDB_data();
    void readsParamDB();
    void createsThenStarts();
    void endsWithoutParamDB();
    void tellsWhichDatabaseFails_data();
    void tellsWhichDatabaseFails();
    void tellsWhatCanNotBeWritten_data();
    void tellsWhatCanNotBeWritten();
    void refusesToCreate_data();
    void refusesToCreate();
    void hasOneOfTwoFirstStartsWait();
    void copiesEveryRow();
    void doesNotTouchADatabaseOfOthers();
    void readsTheLanguage();
    void asksSuperusers_data();
    void asksSuperusers();
    void loadsTheSeedFileOnce();
    void reportsBrokenSeedLines();
    void keepsNothingOfASeedLoadThatIsKilled();
    void keepsTheSeedFileWhereItCanNotBeRenamed();

private:
    void create() { QVERIFY(!Start(*m_folder).ready); }
    void execute(const QString& statement) { run(m_folder->working(), statement); }
    void executeInFactory(const QString& statement) { run(m_folder->embedded(u"factory.db"_s), statement); }
    static void run(const QString& database, const QString& statement);
    QString value(const QString& query);
    QStringList tables();
    static QStringList everyRow(const QString& database);

    std::unique_ptr<ProgramFolderFixture> m_folder;
};

void tst_start_up::init()
{
    m_folder = std::make_unique<ProgramFolderFixture>(QStringLiteral(VELMORA_SHARE));
}

void tst_start_up::run(const QString& database, const QString& statement)
{
    Connection connection;
    connection.open(database);
    connection.execute(statement);
}

QString tst_start_up::value(const QString& query)
{
    Connection connection;
    connection.open(m_folder->working());
    const Recordset rows = connection.select(query);
    return rows.eof() ? QString() : rows.text(0);
}

QStringList tst_start_up::tables()
{
    Connection connection;
    connection.open(m_folder->working());
    return connection.tables();
}

QStringList tst_start_up::everyRow(const QString& database)
{
    Connection connection;
    connection.open(database);
    QStringList rows;
    for (const QString& table : connection.tables()) {
        Cursor cursor = connection.cursor("SELECT * FROM "_L1 + table);
        while (cursor.next()) {
            QStringList fields(table);
            for (int field = 0; field < cursor.fieldCount(); ++field)
                fields << cursor.text(field);
            rows << fields.join(u'|');
        }
    }
    rows.sort();
    return rows;
}

void tst_start_up::readsParamDB_data()
{
    columns<QString, QString, QString>("text", "working", "original");
    row("two lines", "A=$$APPPATH$$/$$APPPATH$$\r\nB=$$APPPATH$$\r\nignored", "A=/f//f", "B=/f");
    row("one line", "A=1", "A=1", QString());
    row("empty second", "A=1\n\nC", "A=1", QString());
    row("empty", QString(), QString(), QString());
}

void tst_start_up::readsParamDB()
{
    QFETCH(QString, text);
    const ParamDB paramDB = parseParamDB(text, u"/f"_s);
    QTEST(paramDB.working, "working");
    QTEST(paramDB.original, "original");
}

void tst_start_up::createsThenStarts()
{
    const Start first(*m_folder);
    QVERIFY(!first.ready);
    QCOMPARE(first.user.shown, QStringList(u"DATABASE CREATED --> RUN PROGRAM AGAIN"_s));
    Start second(*m_folder);
    QVERIFY(second.ready);
    QCOMPARE(second.user.shown, QStringList());
    QCOMPARE(second.main.language, u"EN"_s);
    QCOMPARE(second.main.userName, u"JDOE"_s);
    second.main.connection.execute(u"INSERT INTO EQ_TEMP VALUES('1', '', '', 'E')"_s);
    QCOMPARE(value(u"SELECT count(*) FROM EQ_TEMP"_s), u"0"_s);
}

void tst_start_up::endsWithoutParamDB()
{
    QFile::remove(m_folder->file(u"ParamDB.txt"_s));
    const Start start(*m_folder);
    QVERIFY(!start.ready);
    QCOMPARE(start.user.shown.size(), 1);
    QVERIFY(start.user.shown[0].contains("ParamDB.txt"_L1));
}

void tst_start_up::tellsWhichDatabaseFails_data()
{
    columns<QByteArray, QString, QString>("line", "shown", "details");
    row("unknown provider", QByteArray("Provider=Oracle;Data Source=x"), QString(),
        "Unknown Provider \"Oracle\"");
    row("not a database", QByteArray("Provider=SQLite;Data Source=$$APPPATH$$/ParamDB.txt"), QString(),
        "not a database");
    row("no folder", QByteArray("Provider=SQLite;Data Source=no/x.db"), QString(),
        "unable to open .*/no/x.db$");
    row("empty line", QByteArray(), QString(), "Provider");
    row("a folder in the place of the -wal", QByteArray("Provider=SQLite;Data Source=taken.db"), QString(),
        "disk I/O error: .*/taken.db$");
    const QString masked = u"Provider=MariaDB;Password=...;Port=1"_s;
    row("password", QByteArray("Provider=MariaDB;Password=secret;Port=1"), masked, "lacks");
    row("password in quotes", QByteArray("Provider=MariaDB;Password='s;Port=ecret';Port=1"), masked, "lacks");
    row("password with its own pairs", QByteArray("Provider=MariaDB;Password=a;secret=1;b;Port=1"), masked,
        "no pair of key and value");
    row("password without =", QByteArray("Provider=MariaDB;Password secret;Port=1"),
        "Provider=MariaDB;Password ...;Port=1", "no pair of key and value");
    row("other word", QByteArray("Provider=MariaDB; pass word = secret ;Port=1"),
        "Provider=MariaDB; pass word =...;Port=1", "lacks");
    row("forgotten ;",
        QByteArray("Provider=MariaDB;Data Source=127.0.0.1;Initial Catalog=a;User ID=b;Port=1 PWD=secret"),
        "Provider=MariaDB;Data Source=127.0.0.1;Initial Catalog=a;User ID=b;Port=1 PWD=...",
        "^The Port \"1 PWD=...$");
}

void tst_start_up::tellsWhichDatabaseFails()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, shown);
    QFETCH(QString, details);
    // Longer than a database's heading, so that the engine looks at it.
    m_folder->write(u"ParamDB.txt"_s, line + "\n\n" + QByteArray(200, 'x'));
    QVERIFY(QDir(m_folder->path()).mkdir(u"taken.db-wal"_s));
    const Start start(*m_folder);
    QVERIFY(!start.ready);
    const QString string = QString::fromUtf8(line).replace("$$APPPATH$$"_L1, m_folder->path());
    QCOMPARE(start.user.shown,
             QStringList("Open Database Failed : "_L1 + (shown.isEmpty() ? string : shown)));
    QVERIFY2(start.user.details[0].contains(QRegularExpression(details)), qPrintable(start.user.details[0]));
    QVERIFY(!start.user.details[0].contains("ecret"_L1));
    QVERIFY(!QFile::exists(m_folder->file(u"taken.db"_s)));
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
    if (onServer())
        QSKIP("no files");
    QFETCH(QString, name);
    create();
    if (!QFile::exists(m_folder->file(name)))
        m_folder->write(name, "x"); // the engine gives an empty one the permissions of the database
    const WithoutPower user(m_folder->path());
    const auto permissions = QFile::permissions(m_folder->file(name));
    QVERIFY(
        QFile::setPermissions(m_folder->file(name), permissions & ~(QFile::WriteUser | QFile::WriteOwner)));
    const Start start(*m_folder);
    QVERIFY(QFile::setPermissions(m_folder->file(name), permissions));
    QVERIFY(!start.ready);
    const QString told = start.user.shown[0] + start.user.details[0];
    QVERIFY2(told.contains(QDir::cleanPath(m_folder->file(name)) + " can't be written"_L1), qPrintable(told));
}

void tst_start_up::refusesToCreate_data()
{
    const QString factory = u"Provider=SQLite;Data Source=factory.db"_s;
    columns<QString, QStringList, QString, QString, int>("original", "inFactory", "shown", "details",
                                                         "tables");
    row("no earlier database", "", QStringList(),
        "DATABASE CREATION\nOriginal Database Not Specified : see Manual (ParamDB.txt )", "^$", 0);
    row("unreadable", "Provider=SQLite;Data Source=none.db;Password=secret", QStringList(),
        "Open Original Database Failed : Provider=SQLite;Data Source=none.db;Password=...",
        "unable to open .*/none.db\nCorrect line 2 of ParamDB.txt, ", 13);
    row("another version", factory,
        QStringList(u"UPDATE SYSTEM_PARAMETERS SET SY_VALUE = '010141' WHERE SY_CODE = '$$BASEVER'"_s),
        u"The Original Database MUST be Version : 010142\n"
        "Run this program version on the old database to convert"_s,
        "Correct line 2 of ParamDB.txt, ", 13);
    row("phones without a model", factory,
        QStringList({u"INSERT INTO COMPANY VALUES('C1', 'x')"_s, u"INSERT INTO RANGES VALUES('C1', '1')"_s,
                     u"INSERT INTO PHONES VALUES('C1', '1', NULL, 'phone', 'mac')"_s}),
        u"The Original Database holds phones without a model : C1 1\n"
        "Give them one, then run this program again"_s,
        "^$", 0);
    row("refused row", factory, QStringList(u"INSERT INTO COMPANY VALUES('TOO LONG', 'x')"_s), QString(),
        "^INSERT INTO COMPANY VALUES\\('TOO LONG', 'x'\\)$", onServer() ? 13 : 0);
}

/// Both lines name their files as seen from the program folder. Once line 2 is right, the next start creates.
void tst_start_up::refusesToCreate()
{
    QFETCH(QString, original);
    QFETCH(QStringList, inFactory);
    QFETCH(QString, shown);
    QFETCH(QString, details);
    QFETCH(int, tables);
    for (const QString& statement : inFactory)
        executeInFactory(statement);
    const QString working = m_folder->working().remove(m_folder->path() + u'/');
    m_folder->write(u"ParamDB.txt"_s, QString(working + u'\n' + original).toUtf8());
    const Start start(*m_folder);
    QVERIFY(!start.ready);
    QVERIFY2(start.user.shown == QStringList(shown) || shown.isEmpty(),
             qPrintable(start.user.shown.join(u'\n')));
    QVERIFY2(start.user.details[0].contains(QRegularExpression(details)), qPrintable(start.user.details[0]));
    if (tables == 0)
        QCOMPARE(QDir(m_folder->path()).entryList({u"velmora.db*"_s}), QStringList());
    QCOMPARE(this->tables().size(), tables);
    QVERIFY(!QFile::exists(m_folder->file(u"none.db"_s)));

    m_folder->write(u"factory.db"_s, readWholeFile(QStringLiteral(VELMORA_SHARE "/factory.db")));
    m_folder->write(u"ParamDB.txt"_s,
                    QString(working + "\nProvider=SQLite;Data Source=factory.db"_L1).toUtf8());
    QCOMPARE(Start(*m_folder).user.shown, QStringList(u"DATABASE CREATED --> RUN PROGRAM AGAIN"_s));
    QCOMPARE(everyRow(m_folder->working()), everyRow(m_folder->embedded(u"factory.db"_s)));
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
    QCOMPARE(everyRow(m_folder->working()), everyRow(m_folder->embedded(u"factory.db"_s)));
}

/// The working database is left for another one and comes back, row for row: the way to a server, or from it.
void tst_start_up::copiesEveryRow()
{
    executeInFactory(u"INSERT INTO COMPANY VALUES('O''X', 'L''Étoile; \"a\\b\" \U0001F600')"_s);
    executeInFactory(u"INSERT INTO COMPANY VALUES('o''x', 'blank at the end ')"_s);
    executeInFactory(u"INSERT INTO EQ_TEMP VALUES('left', 'over', '', 'E')"_s);
    create();
    m_folder->write(u"tarvel.csv"_s, readWholeFile(QStringLiteral(VELMORA_SHARE "/demo.csv")));
    QVERIFY(Start(*m_folder).ready);
    const QStringList working = everyRow(m_folder->working());
    QVERIFY(working.size() > 1500);
    for (const QString& row : everyRow(m_folder->embedded(u"factory.db"_s)))
        QVERIFY2(working.contains(row) || row.startsWith("EQ_TEMP"_L1), qPrintable(row));

    const EmptyDatabase back(m_folder->file(u"back.db"_s));
    m_folder->write(u"ParamDB.txt"_s,
                    QString(back.connectionString() + u'\n' + m_folder->working()).toUtf8());
    QVERIFY(!Start(*m_folder).ready);
    QCOMPARE(everyRow(back.connectionString()), working);
    m_folder->write(u"ParamDB.txt"_s,
                    QString(m_folder->embedded(u"file.db"_s) + u'\n' + back.connectionString()).toUtf8());
    QVERIFY(!Start(*m_folder).ready);
    QCOMPARE(everyRow(m_folder->embedded(u"file.db"_s)), working);
}

void tst_start_up::doesNotTouchADatabaseOfOthers()
{
    execute(u"CREATE TABLE THEIRS (A text)"_s);
    execute(u"CREATE TABLE COMPANY (CO_CODE text)"_s);
    const Start start(*m_folder);
    QVERIFY(!start.ready);
    QVERIFY2(start.user.shown[0].contains("SYSTEM_PARAMETERS"_L1), qPrintable(start.user.shown[0]));
    QCOMPARE(tables(), QStringList({u"COMPANY"_s, u"THEIRS"_s}));
}

void tst_start_up::readsTheLanguage()
{
    create();
    execute(u"UPDATE SYSTEM_PARAMETERS SET SY_VALUE = 'FR' WHERE SY_CODE = '$$LNG'"_s);
    QCOMPARE(Start(*m_folder).main.language, u"FR"_s);
    execute(u"DELETE FROM SYSTEM_PARAMETERS WHERE SY_CODE = '$$LNG'"_s);
    QCOMPARE(Start(*m_folder).main.language, u"EN"_s);
}

void tst_start_up::asksSuperusers_data()
{
    columns<QString, std::optional<QString>, QString, int>("superuser", "answer", "userName", "questions");
    using Answer = std::optional<QString>;
    row("nobody", "USERNAME", Answer(u"other"_s), "JDOE", 0);
    row("acts as another", "JDOE", Answer(u"other"_s), "OTHER", 1);
    row("clears the box", "JDOE", Answer(u""_s), "JDOE", 1);
    row("cancels", "JDOE", Answer(), "JDOE", 1);
}

void tst_start_up::asksSuperusers()
{
    create();
    QFETCH(QString, superuser);
    QFETCH(std::optional<QString>, answer);
    execute("UPDATE SYSTEM_PARAMETERS SET SY_SUBCODE = '"_L1 + superuser +
            "' WHERE SY_CODE = '$$SUPERUSER'"_L1);
    const Start start(*m_folder, u"jdoe"_s, answer);
    QVERIFY(start.ready);
    QTEST(start.main.userName, "userName");
    QTEST(static_cast<int>(start.user.questions.size()), "questions");
    QVERIFY(start.user.proposals.isEmpty() || start.user.proposals == QStringList(u"JDOE"_s));
    QVERIFY(start.user.shown.isEmpty());
}

void tst_start_up::loadsTheSeedFileOnce()
{
    create();
    const QByteArray seed = "010142V;COMPANY;C1;L'\xC9toile\r\n" // Windows-1252
                            "All;COMPANY;C2;two;a field too many\r\n"
                            "All;COMPANY;C2;again\r\n"
                            "010130V;COMPANY;C3;another version\r\n"
                            "\r\n"
                            "all;COMPANY;C4;another tag\r\n"
                            "010142V;COMPANY;C5;last line without an end";
    m_folder->write(u"tarvel.csv"_s, seed);
    m_folder->write(u"tarvel_010142.csv"_s, "an earlier one");
    const Start start(*m_folder);
    QVERIFY(start.ready);
    QCOMPARE(start.user.shown, QStringList());
    QCOMPARE(everyRow(m_folder->working()).filter(QRegularExpression(u"^COMPANY\\|"_s)),
             QStringList(
                 {u"COMPANY|C1|L'Étoile"_s, u"COMPANY|C2|two"_s, u"COMPANY|C5|last line without an end"_s}));
    QVERIFY(!QFile::exists(m_folder->file(u"tarvel.csv"_s)));
    QCOMPARE(readWholeFile(m_folder->file(u"tarvel_010142.csv"_s)), seed);
}

void tst_start_up::reportsBrokenSeedLines()
{
    create();
    m_folder->write(u"tarvel.csv"_s, "010142V;COMPANY;C1\n"
                                     "All;COMPANY;C2\n"
                                     "010142V;COMPANY;TOOLONG;x\n"
                                     "010142V;NOWHERE;a;b\n"
                                     "010142V\n"
                                     "010142V;PHONES;C9;1;PAP2;x;y\n"
                                     "010142V;COMPANY;C3;good\n");
    const Start start(*m_folder);
    QVERIFY(start.ready);
    QCOMPARE(start.user.details, QStringList(u"Rows of the seed file refused: 5"_s));
    const QStringList refused = start.user.shown[0].split(u'\n');
    QCOMPARE(refused.size(), 5);
    QVERIFY(refused[0].startsWith("Error : INSERT INTO COMPANY VALUES('C1', ' The line holds 1 values"_L1));
    QVERIFY(refused[1].startsWith("Error : INSERT INTO COMPANY VALUES('TOOLONG', 'x') "_L1));
    QVERIFY(refused[1].contains("CO_CODE"_L1));
    QVERIFY(refused[2].startsWith("Error : INSERT INTO NOWHERE VALUE) "_L1));
    QVERIFY(refused[4].contains("FOREIGN KEY"_L1, Qt::CaseInsensitive));
    QCOMPARE(value(u"SELECT MAX(CO_CODE) || COUNT(*) FROM COMPANY"_s), u"C31"_s);
}

void tst_start_up::keepsNothingOfASeedLoadThatIsKilled()
{
    create();
    QByteArray seed;
    for (int row = 0; row < 60000; ++row)
        seed += "010142V;SYSTEM_PARAMETERS;SEED;" + QByteArray::number(row) + ";some value\n";
    m_folder->write(u"tarvel.csv"_s, seed);
    QProcess program;
    program.start(QStringLiteral(VELMORA_CLI), {u"--program-dir"_s, m_folder->path(), u"start"_s});
    QVERIFY(program.waitForStarted());
    QVERIFY(!program.waitForFinished(150));
    program.kill();
    QVERIFY(program.waitForFinished());
    QVERIFY(QFile::exists(m_folder->file(u"tarvel.csv"_s)));
    const QString rows = u"SELECT count(*) FROM SYSTEM_PARAMETERS WHERE SY_CODE = 'SEED'"_s;
    QCOMPARE(value(rows), u"0"_s);
    QVERIFY(Start(*m_folder).ready);
    QCOMPARE(value(rows), u"60000"_s);
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
    QCOMPARE(value(u"SELECT count(*) FROM COMPANY"_s), u"0"_s);
}

QTEST_GUILESS_MAIN(tst_start_up)
#include "tst_start_up.moc"

// The start-up through the real embedded database: creation, language, superusers, version, seed file.
#include "database/connection.h"
#include "files/whole_file.h"
#include "startup/MMain.h"
#include "startup/param_db.h"
#include "startup/start_up.h"
#include "support/program_folder_fixture.h"
#include "support/recorded_prompts.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTest>

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
    void endsWithoutAnEarlierDatabase();
    void leavesTheTablesOfAnUnreadableEarlierDatabase();
    void refusesAnEarlierDatabaseOfAnotherVersion();
    void copiesEveryRow();
    void keepsNothingOfARefusedCopy();
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
    void execute(const QString& database, const QString& statement);
    QString value(const QString& query, const QString& database = u"velmora.db"_s);

    std::unique_ptr<ProgramFolderFixture> m_folder;
};

void tst_start_up::init()
{
    m_folder = std::make_unique<ProgramFolderFixture>(QStringLiteral(VELMORA_SHARE));
}

void tst_start_up::execute(const QString& database, const QString& statement)
{
    Connection connection;
    connection.open("Provider=SQLite;Data Source="_L1 + m_folder->file(database));
    connection.execute(statement);
}

QString tst_start_up::value(const QString& query, const QString& database)
{
    Connection connection;
    connection.open("Provider=SQLite;Data Source="_L1 + m_folder->file(database));
    const Recordset rows = connection.select(query);
    return rows.eof() ? QString() : rows.text(0);
}

void tst_start_up::readsParamDB_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("working");
    QTest::addColumn<QString>("original");
    QTest::newRow("two lines") << u"A=$$APPPATH$$/$$APPPATH$$\r\nB=$$APPPATH$$\r\nignored"_s << u"A=/f//f"_s
                               << u"B=/f"_s;
    QTest::newRow("one line") << u"A=1"_s << u"A=1"_s << QString();
    QTest::newRow("empty second") << u"A=1\n\nC"_s << u"A=1"_s << QString();
    QTest::newRow("empty") << QString() << QString() << QString();
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
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("details");
    QTest::newRow("unknown provider")
        << QByteArray("Provider=Oracle;Data Source=x") << u"Unknown Provider \"Oracle\""_s;
    QTest::newRow("not a database") << QByteArray("Provider=SQLite;Data Source=$$APPPATH$$/ParamDB.txt")
                                    << u"not a database"_s;
    QTest::newRow("no folder") << QByteArray("Provider=SQLite;Data Source=$$APPPATH$$/no/x.db")
                               << u"unable to open"_s;
    QTest::newRow("empty line") << QByteArray() << u"Provider"_s;
}

void tst_start_up::tellsWhichDatabaseFails()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, details);
    // Longer than a database's heading, so that the engine looks at it.
    m_folder->write(u"ParamDB.txt"_s, line + "\n\n" + QByteArray(200, 'x'));
    const Start start(*m_folder);
    QVERIFY(!start.ready);
    const QString string = QString::fromUtf8(line).replace("$$APPPATH$$"_L1, m_folder->path());
    QCOMPARE(start.user.shown, QStringList("Open Database Failed : "_L1 + string));
    QVERIFY2(start.user.details[0].contains(details), qPrintable(start.user.details[0]));
}

void tst_start_up::endsWithoutAnEarlierDatabase()
{
    m_folder->write(u"ParamDB.txt"_s, "Provider=SQLite;Data Source=$$APPPATH$$/velmora.db\n");
    const Start start(*m_folder);
    QVERIFY(!start.ready);
    QCOMPARE(
        start.user.shown,
        QStringList(u"DATABASE CREATION\nOriginal Database Not Specified : see Manual (ParamDB.txt )"_s));
    QCOMPARE(value(u"SELECT count(*) FROM sqlite_master"_s), u"0"_s);
}

void tst_start_up::leavesTheTablesOfAnUnreadableEarlierDatabase()
{
    QFile::remove(m_folder->file(u"factory.db"_s));
    const Start start(*m_folder);
    QVERIFY(!start.ready);
    QCOMPARE(start.user.shown, QStringList("Open Original Database Failed : Provider=SQLite;Data Source="_L1 +
                                           m_folder->file(u"factory.db"_s)));
    QCOMPARE(value(u"SELECT count(*) FROM sqlite_master WHERE type = 'table'"_s), u"13"_s);
    QVERIFY(!QFile::exists(m_folder->file(u"factory.db"_s)));
}

void tst_start_up::refusesAnEarlierDatabaseOfAnotherVersion()
{
    execute(u"factory.db"_s,
            u"UPDATE SYSTEM_PARAMETERS SET SY_VALUE = '010141' WHERE SY_CODE = '$$BASEVER'"_s);
    const Start start(*m_folder);
    QVERIFY(!start.ready);
    QCOMPARE(start.user.shown, QStringList(u"The Original Database MUST be Version : 010142\n"
                                           "Run this program version on the old database to convert"_s));
    QCOMPARE(value(u"SELECT count(*) FROM SYSTEM_PARAMETERS"_s), u"0"_s);
}

void tst_start_up::copiesEveryRow()
{
    execute(u"factory.db"_s, u"INSERT INTO COMPANY VALUES('O''X', 'L''Étoile; \"a\\b\"')"_s);
    execute(u"factory.db"_s, u"INSERT INTO RANGES VALUES('O''X', '1')"_s);
    execute(u"factory.db"_s, u"INSERT INTO PHONES VALUES('O''X', '1', 'PAP2', 'phone', 'mac')"_s);
    execute(u"factory.db"_s, u"INSERT INTO EQ_TEMP VALUES('left', 'over', '', 'E')"_s);
    create();
    Connection both;
    both.open("Provider=SQLite;Data Source="_L1 + m_folder->file(u"velmora.db"_s));
    both.execute(u"ATTACH ? AS factory"_s, {m_folder->file(u"factory.db"_s)});
    for (const QString& table : both.tables()) {
        const QString difference = u"SELECT count(*) FROM (SELECT * FROM %1.%3 EXCEPT SELECT * FROM %2.%3)"_s;
        QCOMPARE(both.select(difference.arg(u"main"_s, u"factory"_s, table)).text(0), u"0"_s);
        QCOMPARE(both.select(difference.arg(u"factory"_s, u"main"_s, table)).text(0),
                 table == "EQ_TEMP"_L1 ? u"1"_s : u"0"_s);
    }
}

void tst_start_up::keepsNothingOfARefusedCopy()
{
    // A phone without a model: its NULL would become an empty text, which names no model.
    execute(u"factory.db"_s, u"INSERT INTO COMPANY VALUES('C1', 'x')"_s);
    execute(u"factory.db"_s, u"INSERT INTO RANGES VALUES('C1', '1')"_s);
    execute(u"factory.db"_s, u"INSERT INTO PHONES VALUES('C1', '1', NULL, 'phone', 'mac')"_s);
    const Start start(*m_folder);
    QVERIFY(!start.ready);
    QVERIFY2(start.user.details[0].startsWith("INSERT INTO PHONES VALUES('C1', '1', '', 'phone'"_L1),
             qPrintable(start.user.details[0]));
    QCOMPARE(value(u"SELECT count(*) FROM sqlite_master"_s), u"0"_s);
}

void tst_start_up::doesNotTouchADatabaseOfOthers()
{
    execute(u"velmora.db"_s, u"CREATE TABLE THEIRS (A text)"_s);
    const Start start(*m_folder);
    QVERIFY(!start.ready);
    QVERIFY2(start.user.shown[0].contains("SYSTEM_PARAMETERS"_L1), qPrintable(start.user.shown[0]));
    QCOMPARE(value(u"SELECT count(*) FROM sqlite_master"_s), u"1"_s);
}

void tst_start_up::readsTheLanguage()
{
    create();
    execute(u"velmora.db"_s, u"UPDATE SYSTEM_PARAMETERS SET SY_VALUE = 'FR' WHERE SY_CODE = '$$LNG'"_s);
    QCOMPARE(Start(*m_folder).main.language, u"FR"_s);
    execute(u"velmora.db"_s, u"DELETE FROM SYSTEM_PARAMETERS WHERE SY_CODE = '$$LNG'"_s);
    QCOMPARE(Start(*m_folder).main.language, u"EN"_s);
}

void tst_start_up::asksSuperusers_data()
{
    QTest::addColumn<QString>("superuser");
    QTest::addColumn<std::optional<QString>>("answer");
    QTest::addColumn<QString>("userName");
    QTest::addColumn<int>("questions");
    using Answer = std::optional<QString>;
    QTest::newRow("nobody") << u"USERNAME"_s << Answer(u"other"_s) << u"JDOE"_s << 0;
    QTest::newRow("acts as another") << u"JDOE"_s << Answer(u"other"_s) << u"OTHER"_s << 1;
    QTest::newRow("clears the box") << u"JDOE"_s << Answer(u""_s) << u"JDOE"_s << 1;
    QTest::newRow("cancels") << u"JDOE"_s << Answer() << u"JDOE"_s << 1;
}

void tst_start_up::asksSuperusers()
{
    create();
    QFETCH(QString, superuser);
    QFETCH(std::optional<QString>, answer);
    execute(u"velmora.db"_s,
            "INSERT OR IGNORE INTO SYSTEM_PARAMETERS VALUES('$$SUPERUSER', '"_L1 + superuser + "', '')"_L1);
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
    QCOMPARE(value(u"SELECT group_concat(CO_CODE || '=' || CO_DESC, '|') FROM COMPANY"_s),
             u"C1=L'Étoile|C2=two|C5=last line without an end"_s);
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
    QCOMPARE(start.user.shown.size(), 5);
    QVERIFY(start.user.shown[0].startsWith(
        "Error : INSERT INTO COMPANY VALUES('C1', ' The line holds 1 values"_L1));
    QCOMPARE(
        start.user.shown[1],
        u"Error : INSERT INTO COMPANY VALUES('TOOLONG', 'x') COMPANY.CO_CODE holds at most 5 characters"_s);
    QVERIFY(start.user.shown[2].startsWith("Error : INSERT INTO NOWHERE VALUE) "_L1));
    QVERIFY(start.user.shown[4].contains("FOREIGN KEY"_L1));
    QCOMPARE(value(u"SELECT group_concat(CO_CODE) FROM COMPANY"_s), u"C3"_s);
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

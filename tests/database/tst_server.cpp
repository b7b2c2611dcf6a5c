// A server of this test's own: its session, its loss and return, and two installers at once.
#include "database/schema_lock.h"
#include "database/transaction.h"
#include "files/whole_file.h"
#include "generation/generate.h"
#include "schema/tables.h"
#include "support/program_folder_fixture.h"
#include "support/rows.h"
#include "support/test_database.h"

#include <QDir>
#include <QProcess>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;
using namespace velmora;

class tst_server : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void preparesItsSession();
    void takesOneStatementOnly_data();
    void takesOneStatementOnly();
    void connectsAnewAfterALoss();
    void keepsNothingOfALostTransaction();
    void goesOnAfterTheServerIsBack();
    void finishesACreationThatWasCutOff();
    void servesTwoInstallersAtOnce();

private:
    int control(const QString& action) const
    {
        return QProcess::execute(QStringLiteral(VELMORA_SOURCE "/tests/support/mariadb-server"),
                                 {action, m_server->path()});
    }
    /// Ends the server as a power cut does.
    void killServer() const;
    /// What does so at the given call, and starts the server again.
    std::function<void()> killAt(int call) const;
    /// Ends the sessions of all other connections.
    static void killSessions(TestDatabase& database);

    std::unique_ptr<QTemporaryDir> m_server;
};

void tst_server::initTestCase()
{
#ifdef Q_OS_WIN
    QSKIP("The script that starts the server is for Debian");
#endif
    // In memory where that is possible; the folder must be open to the account that the server runs under.
    m_server = std::make_unique<QTemporaryDir>(
        (QDir(u"/dev/shm"_s).exists() ? u"/dev/shm"_s : QDir::tempPath()) + u"/velmora-server-XXXXXX"_s);
    const int status = control(u"start"_s);
    if (status == 77)
        QSKIP("No MariaDB server is installed");
    QCOMPARE(status, 0);
    qputenv("VELMORA_TEST_SERVER", m_server->filePath(u"connection"_s).toUtf8());
}

void tst_server::cleanupTestCase()
{
    if (!m_server)
        return;
    control(u"stop"_s);
}

void tst_server::killServer() const
{
#ifndef Q_OS_WIN
    const int process = readWholeFile(m_server->filePath(u"pid"_s)).trimmed().toInt();
    QCOMPARE(::kill(process, SIGKILL), 0);
    QTRY_VERIFY(::kill(process, 0) != 0 || readWholeFile(u"/proc/%1/stat"_s.arg(process)).contains(") Z "));
#endif
}

std::function<void()> tst_server::killAt(int call) const
{
    return [this, call, calls = 0]() mutable {
        if (++calls != call)
            return;
        killServer();
        QCOMPARE(control(u"resume"_s), 0);
    };
}

void tst_server::killSessions(TestDatabase& database)
{
    const QString own = database.connectionString();
    const QString others =
        u"SELECT ID FROM information_schema.PROCESSLIST WHERE ID <> CONNECTION_ID() AND DB = DATABASE()"_s;
    for (const QString& session : rowsOf(own, others))
        execute(own, "KILL "_L1 + session);
}

void tst_server::preparesItsSession()
{
    TestDatabase database;
    const QString settings =
        u"SELECT FLOOR(@@max_statement_time), @@innodb_lock_wait_timeout, @@tx_isolation"_s;
    const Recordset session = database.main.connection.select(settings);
    QCOMPARE(session.text(0), u"180"_s);
    QCOMPARE(session.text(1), u"30"_s);
    QCOMPARE(session.text(2), u"READ-COMMITTED"_s);
    Connection reader;
    reader.open(database.connectionString(), OpenMode::ReadOnly);
    QVERIFY_THROWS_EXCEPTION(DatabaseError, reader.execute(u"INSERT INTO TYPES VALUES('X', 'x')"_s));
    try {
        reader.open(database.connectionString().replace("Password="_L1, "password = wrong"_L1));
        QFAIL("opened");
    } catch (const DatabaseError& error) {
        QVERIFY2(error.statement().contains("password =..."_L1), qPrintable(error.statement()));
    }
}

void tst_server::takesOneStatementOnly_data()
{
    columns<QString, QStringList>("statement", "values");
    row("a second one", "UPDATE TYPES SET TY_DESC = 'y'; DROP TABLE COMPANY", QStringList());
    row("a second one behind values", "UPDATE TYPES SET TY_DESC = ?; DROP TABLE COMPANY",
        QStringList(u"y"_s));
    const QString load =
        u"LOAD DATA LOCAL INFILE '%1' INTO TABLE COMPANY"_s.arg(QCoreApplication::applicationFilePath());
    row("a file of this computer", load, QStringList());
    row("such a file, prepared", load + " SET CO_DESC = ?"_L1, QStringList(u"x"_s));
}

void tst_server::takesOneStatementOnly()
{
    QFETCH(QString, statement);
    QFETCH(QStringList, values);
    TestDatabase database;
    QCOMPARE(database.value(u"SELECT @@local_infile"_s), u"1"_s);
    database.run(u"INSERT INTO COMPANY VALUES('C;1', ';')"_s);
    const auto refuses = [&] {
        try {
            database.main.connection.execute(statement, values);
            return false;
        } catch (const DatabaseError& error) {
            return error.description().contains("syntax"_L1) || error.description().contains("forbidden"_L1);
        }
    };
    QVERIFY(refuses());
    killSessions(database);
    QVERIFY_THROWS_EXCEPTION(DatabaseError, database.value(u"SELECT 1"_s));
    QVERIFY(refuses());
    QCOMPARE(database.value(u"SELECT CO_CODE FROM COMPANY"_s), u"C;1"_s);
    QCOMPARE(database.value(u"SELECT TY_DESC FROM TYPES"_s), u"x"_s);
}

void tst_server::connectsAnewAfterALoss()
{
    TestDatabase database;
    Cursor reading = database.main.connection.cursor(u"SELECT LE_CODE FROM LEVELS"_s);
    QVERIFY(reading.next());
    killSessions(database);
    try {
        database.value(u"SELECT 1"_s);
        QFAIL("not noticed");
    } catch (const DatabaseError& error) {
        QCOMPARE(error.reason(), DatabaseError::Reason::ConnectionLost);
    }
    QCOMPARE(database.value(u"SELECT @@tx_isolation"_s), u"READ-COMMITTED"_s);
    // The staging table is again the session's own.
    database.run(u"INSERT INTO EQ_TEMP VALUES('1', '', '', 'E')"_s);
    QCOMPARE(rowsOf(database.connectionString(), u"SELECT * FROM EQ_TEMP"_s), QStringList());

    // What the lost session was still to read does not end as if it were whole.
    QVERIFY_THROWS_EXCEPTION(DatabaseError, reading.next());
}

void tst_server::keepsNothingOfALostTransaction()
{
    TestDatabase database;
    {
        Transaction transaction(database.main.connection);
        database.run(u"INSERT INTO COMPANY VALUES('C1', 'before')"_s);
        killSessions(database);
        QVERIFY_THROWS_EXCEPTION(DatabaseError, database.run(u"INSERT INTO COMPANY VALUES('C2', 'at')"_s));
        QVERIFY_THROWS_EXCEPTION(DatabaseError, database.run(u"INSERT INTO COMPANY VALUES('C3', 'after')"_s));
        QVERIFY_THROWS_EXCEPTION(DatabaseError, transaction.commit());
    }
    QCOMPARE(database.value(u"SELECT COUNT(*) FROM COMPANY"_s), u"0"_s);
}

void tst_server::goesOnAfterTheServerIsBack()
{
    TestDatabase database;
    constexpr int phones = 250; // more than are read at once
    for (int phone = 101; phone <= 100 + phones; ++phone)
        database.addPhone(u"C1"_s, u"GXP2000"_s, QString::number(phone), u"phone"_s,
                          u"000000000%1"_s.arg(phone));
    database.addParameter(u"GXP2000"_s, u"2"_s, u"E"_s, u"x"_s);
    const QDir folder(database.folder());
    const auto generate = [&](const std::function<void()>& onProgress) {
        return Generate(database.main, {u"C1"_s, u"GXP2000"_s, u"101"_s, u"999"_s, {}, false, folder.path()},
                        {[](const QString&) {}, [&](qsizetype, qsizetype) { onProgress(); }});
    };
    const auto files = [&folder] { return folder.entryList({u"cfg*"_s}, QDir::Files).size(); };
    QVERIFY_THROWS_EXCEPTION(DatabaseError, generate(killAt(2)));
    QVERIFY(files() > 0 && files() < phones);
    QVERIFY(generate([] {}));
    QCOMPARE(files(), phones);

    // While it is away, every try fails at once and clearly.
    killServer();
    for (int attempt = 0; attempt < 3; ++attempt)
        QVERIFY_THROWS_EXCEPTION(DatabaseError, generate([] {}));
    QCOMPARE(control(u"resume"_s), 0);
    QVERIFY(generate([] {}));
}

/// In its tables, then in its rows.
void tst_server::finishesACreationThatWasCutOff()
{
    const ProgramFolderFixture folder(QStringLiteral(VELMORA_SHARE));
    Connection working;
    working.open(folder.working());
    for (const QString& statement : creationStatements().first(5))
        working.executePortable(statement);
    const QString lost = Start(folder, {}, killAt(4)).user.shown.value(0);
    QVERIFY2(lost.startsWith("Velmora can't start"_L1), qPrintable(lost));
    working.open(folder.working());
    {
        // As if the session that was lost were not cleared up, or another start at work.
        const SchemaLock other(working);
        const QString waits = Start(folder).user.shown.value(0);
        QVERIFY2(waits.contains("WAIT"_L1), qPrintable(waits));
    }
    QCOMPARE(Start(folder).user.shown, QStringList(u"DATABASE CREATED --> RUN PROGRAM AGAIN"_s));
    QCOMPARE(everyRow(folder.working()), everyRow(folder.embedded(u"factory.db"_s)));
}

/// Two processes generate and a third connection edits: every file is the one that a process alone writes.
void tst_server::servesTwoInstallersAtOnce()
{
    const ProgramFolderFixture folder(QStringLiteral(VELMORA_SHARE));
    QVERIFY(!Start(folder).ready);
    folder.write(u"tarvel.csv"_s, readWholeFile(QStringLiteral(VELMORA_SHARE "/demo.csv")));
    QVERIFY(Start(folder).ready);

    const auto generate = [&folder](QProcess& program, const QString& company, const QString& into) {
        QDir(folder.path()).mkpath(into);
        program.start(QStringLiteral(VELMORA_CLI),
                      {u"--program-dir"_s, folder.path(), u"generate"_s, u"--company"_s, company,
                       u"--equipment"_s, u"GXP2000"_s, u"--source"_s, u"--folder"_s, folder.file(into)});
    };
    const auto content = [&folder](const QString& name) {
        QByteArray all;
        const QDir files(folder.file(name));
        for (const QString& file : files.entryList(QDir::Files, QDir::Name))
            all += file.toUtf8() + '\n' + readWholeFile(files.filePath(file));
        return all;
    };
    QProcess first;
    QProcess second;
    for (const QString& company : {u"LUNA"_s, u"NORD"_s}) {
        generate(first, company, company + " alone"_L1);
        QVERIFY(first.waitForFinished(60000));
        QVERIFY(content(company + " alone"_L1).size() > 10000);
    }

    Connection editor;
    editor.open(folder.working());
    for (int round = 1; round <= 5; ++round) {
        generate(first, u"LUNA"_s, u"LUNA %1"_s.arg(round));
        generate(second, u"NORD"_s, u"NORD %1"_s.arg(round));
        do {
            editor.execute(
                u"UPDATE COMPANY_PARAMETERS SET PA_VALUE = CONCAT(PA_VALUE, '') WHERE EQ_CODE = 'GXP2000'"_s);
            editor.execute(u"UPDATE PHONES_PARAMETERS SET PA_VALUE = 'edited' WHERE EQ_CODE = 'F1000'"_s);
            editor.execute(u"INSERT INTO PHONE_BOOK VALUES('LUNA', 'new', 'n', 'V', '', '', '', '')"_s);
            editor.execute(u"DELETE FROM PHONE_BOOK WHERE BK_NUM = 'new'"_s);
            first.waitForFinished(1);
            second.waitForFinished(1);
        } while (first.state() != QProcess::NotRunning || second.state() != QProcess::NotRunning);
        QCOMPARE(first.exitCode(), 0);
        QCOMPARE(second.exitCode(), 0);
        for (const QString& company : {u"LUNA"_s, u"NORD"_s})
            QVERIFY(content(company + u" %1"_s.arg(round)) == content(company + " alone"_L1));
    }
}

QTEST_GUILESS_MAIN(tst_server)
#include "tst_server.moc"

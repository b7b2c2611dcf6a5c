// velmora-cli as it is run: output, messages, exit status.
#include "database/connection.h"
#include "files/whole_file.h"
#include "platform/user_name.h"
#include "support/device_double.h"
#include "support/program_folder_fixture.h"
#include "support/rows.h"

#include <QDir>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace velmora;

class tst_cli : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void answers_data();
    void answers();
    void generatesWhatIsRemembered();
    void restartsPhones();
    void keepsPhoneBooks();
    void treatsRanges_data();
    void treatsRanges();
    void endsWithAMessageWhenAFileFails_data();
    void endsWithAMessageWhenAFileFails();
    void tellsThatOutputIsLost_data();
    void tellsThatOutputIsLost();
    void undoesAKilledImport();
    void obeysMenuRights();

private:
    struct Result {
        int status = 0;
        QString out;
        QString err;
    };
    Result run(const QStringList& arguments);
    void execute(const QString& statement);

    std::unique_ptr<ProgramFolderFixture> m_folder;
};

tst_cli::Result tst_cli::run(const QStringList& arguments)
{
    QProcess program;
    program.start(QStringLiteral(VELMORA_CLI), arguments + QStringList{u"--program-dir"_s, m_folder->path()});
    // Not waitForFinished(): devices of the test's own answer meanwhile.
    QSignalSpy(&program, &QProcess::finished).wait(60'000);
    return {program.exitCode(), QString::fromUtf8(program.readAllStandardOutput()),
            QString::fromUtf8(program.readAllStandardError())};
}

void tst_cli::execute(const QString& statement)
{
    Connection connection;
    connection.open("Provider=SQLite;Data Source="_L1 + m_folder->file(u"velmora.db"_s));
    connection.execute(statement);
}

/// Creates the database and loads the demo, the way a user's own seed file is loaded.
void tst_cli::initTestCase()
{
    m_folder = std::make_unique<ProgramFolderFixture>(QStringLiteral(VELMORA_SHARE));
    const Result first = run({u"start"_s});
    QCOMPARE(first.status, 3);
    QCOMPARE(first.err, u"DATABASE CREATED --> RUN PROGRAM AGAIN\n"_s);
    const QByteArray demo = readWholeFile(QStringLiteral(VELMORA_SHARE "/demo.csv"));
    m_folder->write(u"tarvel.csv"_s, QByteArray(demo).replace("@OUTPUT@", m_folder->path().toUtf8()));
    const Result second = run({u"start"_s});
    QCOMPARE(second.status, 0);
    QCOMPARE(second.err, QString());

    // Lines tagged "All" fail in silence, so the rows are counted.
    Connection connection;
    connection.open("Provider=SQLite;Data Source="_L1 + m_folder->file(u"velmora.db"_s));
    for (const QString& table : {u"COMPANY"_s, u"RANGES"_s, u"PHONES"_s, u"COMPANY_PARAMETERS"_s,
                                 u"PHONES_PARAMETERS"_s, u"PHONE_BOOK"_s})
        QCOMPARE(connection.select("SELECT count(*) FROM "_L1 + table).text(0).toInt(),
                 demo.count(QByteArray("All;" + table.toUtf8() + ';')));
}

void tst_cli::answers_data()
{
    columns<QStringList, int, QString, QString>("arguments", "status", "out", "err");
    row("companies", QStringList({u"list"_s, u"companies"_s}), 0,
        "LUNA\tLuna Bakeries\nNORD\tNordhafen Logistics\n", QString());
    row("models", QStringList({u"list"_s, u"models"_s, u"--company"_s, u"NORD"_s}), 0,
        u"F1000\tF1000 wireless handset\nGXP2000\tGrandstream GXP2000 desk phone\n"
        "PAP2\tPAP2 adapter for two analogue phones\n"_s,
        QString());
    row("phones of a model",
        QStringList({u"list"_s, u"phones"_s, u"--company"_s, u"LUNA"_s, u"--equipment"_s, u"F1000"_s}), 0,
        "117\tRounds foreman\n118\tDriver 1\n119\tDriver 2\n120\tCleaning\n", QString());
    row("no such company", QStringList({u"list"_s, u"phones"_s, u"--company"_s, u"X"_s}), 0, QString(),
        QString());
    row("nothing selected", QStringList({u"generate"_s, u"--company"_s, u"LUNA"_s, u"--equipment"_s, u"X"_s}),
        1, QString(), "No phone matches the selection.\n");
    row("no such folder",
        QStringList({u"generate"_s, u"--company"_s, u"LUNA"_s, u"--equipment"_s, u"PAP2"_s, u"--folder"_s,
                     u"/no/such"_s}),
        1, QString(), "The folder /no/such does not exist.\n");
    row("a code that breaks the statement", QStringList({u"list"_s, u"phones"_s, u"--company"_s, u"O'X"_s}),
        1, QString(),
        u"unrecognized token: \"X' ORDER BY PH_CODE\"\nSELECT PH_CODE, PH_DESC FROM PHONES WHERE CO_CODE "
        u"= 'O'X' "
        "ORDER BY PH_CODE\n"_s);
    row("ranges for no company",
        QStringList({u"ranges"_s, u"add"_s, u"--yes"_s, u"--company"_s, u"LUMA"_s, u"--from"_s, u"1"_s,
                     u"--to"_s, u"2"_s}),
        1, QString(), "There is no company LUMA.\n");
    row("ranges with six digits",
        QStringList({u"ranges"_s, u"delete"_s, u"--yes"_s, u"--company"_s, u"LUNA"_s, u"--from"_s, u"1"_s,
                     u"--to"_s, u"100000"_s}),
        1, QString(), "The code 100000 has too many digits. Nothing was changed.\n");
    row("as another user", QStringList({u"list"_s, u"companies"_s, u"--as"_s, u"boss"_s}), 2, QString(),
        "User "_L1 + systemUserName().toUpper() + " is no superuser and can't act as another user.\n"_L1);
    row("no command", QStringList(), 2, QString(),
        "A subcommand is required\nRun with --help for more information.\n");
    row("unknown command", QStringList(u"lists"_s), 2, QString(),
        "The following argument was not expected: lists\nRun with --help for more information.\n");
    row("unknown option", QStringList({u"generate"_s, u"--compani=LUNA"_s}), 2, QString(),
        "The following argument was not expected: --compani=LUNA\nRun with --help for more information.\n");
    row("version", QStringList(u"--version"_s), 0, "velmora-cli 1.1.42\n", QString());
    row("unknown level",
        QStringList({u"generate"_s, u"--company"_s, u"LUNA"_s, u"--equipment"_s, u"PAP2"_s, u"--levels"_s,
                     u"device"_s}),
        2, QString(),
        "--levels: device not in {phone,company,equipment}\nRun with --help for more information.\n");
}

void tst_cli::answers()
{
    QFETCH(QStringList, arguments);
    const Result result = run(arguments);
    QTEST(result.out, "out");
    QTEST(result.err, "err");
    QTEST(result.status, "status");
}

void tst_cli::generatesWhatIsRemembered()
{
    const QDir output(m_folder->path());
    QVERIFY(output.mkdir(u"LUNA"_s));
    const QStringList generate = {u"generate"_s, u"--company"_s, u"LUNA"_s, u"--equipment"_s, u"PAP2"_s};
    const Result all = run(generate);
    QCOMPARE(all.status, 0);
    QCOMPARE(
        all.out,
        u"113 - 0200A002000D.TXT - Shop Market Square\n   Done\n114 - 0200A002000E.TXT - Shop Station\n   "
        u"Done\n"
        "115 - 0200A002000F.TXT - Shop Harbour\n   Done\n116 - 0200A0020010.TXT - Fax and door\n   Done\n"
        "Generation finished\n"_s);
    const QDir written(output.filePath(u"LUNA"_s));
    QCOMPARE(written.entryList(QDir::Files), QStringList({u"0200A002000D.txt"_s, u"0200A002000E.txt"_s,
                                                          u"0200A002000F.txt"_s, u"0200A0020010.txt"_s}));
    const QByteArray profile = readWholeFile(written.filePath(u"0200A002000E.txt"_s));
    QVERIFY(profile.contains("\r\n<User_ID_1_>114</User_ID_1_>\r\n"));
    QVERIFY(profile.contains("\r\n<GPP_A>Shop Station</GPP_A>\r\n<GPP_B>1</GPP_B>\r\n"));
    QVERIFY(profile.contains("\r\n<Max_Forward>70</Max_Forward>\r\n"));

    const QString other = output.filePath(u"other"_s);
    QVERIFY(output.mkdir(u"other"_s));
    const Result part = run(generate + QStringList{u"--from"_s, u"114"_s, u"--to"_s, u"115"_s, u"--source"_s,
                                                   u"--levels"_s, u"phone,company"_s, u"--folder"_s, other});
    QCOMPARE(part.status, 0);
    QCOMPARE(QDir(other).entryList(QDir::Files).size(), 4);
    QVERIFY(!readWholeFile(other + "/0200A002000E.txt"_L1).contains("Max_Forward"));
}

void tst_cli::restartsPhones()
{
    execute(u"UPDATE PHONES_PARAMETERS SET PA_VALUE = '127.0.0.1' WHERE PA_CODE = 'Static_IP'"_s);
    execute(
        u"UPDATE PHONES_PARAMETERS SET PA_VALUE = '127.0.0.2' WHERE PA_CODE = 'Static_IP' AND PH_CODE = '115'"_s);
    const DeviceDouble device(pap2Device("demo-luna"));
    const DeviceDouble other(pap2Device("another password"), u"127.0.0.2"_s, device.port());
    const QStringList reboot = {u"reboot"_s,
                                u"--company"_s,
                                u"LUNA"_s,
                                u"--equipment"_s,
                                u"PAP2"_s,
                                u"--port"_s,
                                QString::number(device.port())};
    const Result part = run(reboot + QStringList{u"--to"_s, u"114"_s});
    QCOMPARE(part.out,
             u"PAP2 127.0.0.1 - 113 - Shop Market Square\n   Done\nPAP2 127.0.0.1 - 114 - Shop Station\n   "
             "Done\n2 restarted, 0 refused, 0 unreachable\n"_s);
    QCOMPARE(part.status, 0);
    const Result all = run(reboot);
    QVERIFY2(all.out.endsWith("3 restarted, 1 refused, 0 unreachable\n"_L1), qPrintable(all.out));
    QCOMPARE(all.status, 1);
    QCOMPARE(run({u"reboot"_s, u"--company"_s, u"LUNA"_s, u"--equipment"_s, u"X"_s}).err,
             u"No phone matches the selection.\n"_s);
}

void tst_cli::keepsPhoneBooks()
{
    const QString folder = m_folder->file(u"books"_s);
    QVERIFY(QDir().mkdir(folder));
    const QStringList luna = {u"--company"_s, u"LUNA"_s, u"--folder"_s, folder};
    const QStringList model = {u"--equipment"_s, u"GXP2000"_s};
    m_folder->write(u"books/confUsers.ini"_s,
                    "[Users]\r\n[User1]\r\nName=New\r\nSurname=One\r\nExtension=999\r\n\r\n");
    const Result imported = run(QStringList{u"phonebook"_s, u"import"_s} + luna + model);
    QVERIFY2(imported.out.startsWith("999 - New One  - Added\n1 added, 0 updated, 0 ignored, 0 refused, "_L1),
             qPrintable(imported.out));
    QCOMPARE(imported.err, u"Import finished\n"_s);
    QCOMPARE(imported.status, 0);
    m_folder->write(u"books/confUsers.ini"_s,
                    "[User]\nName=x', BK_FLAG='H' WHERE 1=1 -- \nSurname=\nExtension=999\n");
    QCOMPARE(run(QStringList{u"phonebook"_s, u"import"_s} + luna + model).status, 1);
    const Result generated = run(QStringList{u"phonebook"_s, u"generate"_s} + luna + model);
    QVERIFY2(generated.out.contains("999 - New One \n"_L1), qPrintable(generated.out));
    QVERIFY(readWholeFile(folder + "/gs_phonebook.xml"_L1).contains("<phonenumber>999</phonenumber>"));

    const QStringList exporting = QStringList{u"phonebook"_s, u"export"_s} + luna;
    QCOMPARE(run(exporting).status, 0);
    QVERIFY(readWholeFile(folder + "/Phone_Book.csv"_L1).contains("\r\nLUNA;999;New One ;V;;;;\r\n"));
    const Result declined = run(exporting); // nobody is there to say yes
    QVERIFY(declined.err.endsWith("? answered no; --yes answers yes\n0 entries exported\n"_L1));
    QCOMPARE(declined.status, 1);
    QVERIFY(run(QStringList{u"--yes"_s} + exporting).out.endsWith(" entries exported\n"_L1));
    QCOMPARE(run(exporting + QStringList{u"--xlsx"_s}).status, 0);
    QVERIFY(QFile::exists(folder + "/Phone_Book.xlsx"_L1));
    const Result other =
        run(QStringList{u"phonebook"_s, u"generate"_s} + luna + QStringList{u"--equipment"_s, u"PAP2"_s});
    QCOMPARE(other.err, u"This is not possible for the model PAP2.\n"_s);
    QCOMPARE(other.status, 1);
}

void tst_cli::treatsRanges_data()
{
    columns<QString, QString, QString, bool, int, QString>("kind", "from", "to", "yes", "status", "end");
    row("add", "add", "901", "903", true, 0, "   Added to the range\n");
    row("again", "add", "901", "903", true, 0, "   Not added: used by a phone or already in the range\n");
    row("delete", "delete", "901", "903", true, 0, "   Removed from the range\n");
    row("nobody to say yes", "add", "901", "903", false, 1, "");
    row("no digits", "add", "12a", "123", true, 2, "");
}

void tst_cli::treatsRanges()
{
    QFETCH(QString, kind);
    QFETCH(QString, from);
    QFETCH(QString, to);
    QFETCH(bool, yes);
    QFETCH(QString, end);
    QStringList arguments = {u"ranges"_s, kind, u"--company"_s, u"LUNA"_s, u"--from"_s, from, u"--to"_s, to};
    if (yes)
        arguments << u"--yes"_s;
    const Result result = run(arguments);
    QTEST(result.status, "status");
    QVERIFY2(end.isEmpty() ? result.out.isEmpty() : result.out.endsWith(end), qPrintable(result.out));
}

void tst_cli::endsWithAMessageWhenAFileFails_data()
{
    columns<QStringList, QString>("arguments", "taken");
    row("generate", QStringList({u"generate"_s, u"--equipment"_s, u"GXP2000"_s}), "gs_phonebook.xml");
    row("export", QStringList({u"export"_s, u"--yes"_s}), "Phone_Book.csv");
    row("workbook", QStringList({u"export"_s, u"--xlsx"_s}), "Phone_Book.xlsx.part");
}

void tst_cli::endsWithAMessageWhenAFileFails()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, taken);
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(taken));
    const Result result = run(QStringList(u"phonebook"_s) + arguments +
                              QStringList({u"--company"_s, u"LUNA"_s, u"--folder"_s, folder.path()}));
    QCOMPARE(result.status, 1);
    QVERIFY2(result.err.contains(folder.path()), qPrintable(result.err));
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList());
}

void tst_cli::tellsThatOutputIsLost_data()
{
    columns<QStringList>("arguments");
    row("help", QStringList({u"--help"_s}));
    row("list", QStringList({u"list"_s, u"companies"_s}));
    row("generate", QStringList({u"generate"_s, u"--company"_s, u"LUNA"_s, u"--equipment"_s, u"PAP2"_s}));
}

void tst_cli::tellsThatOutputIsLost()
{
    if (!QFileInfo::exists(u"/dev/full"_s))
        QSKIP("Needs a full device");
    QFETCH(QStringList, arguments);
    QProcess program;
    program.setStandardOutputFile(u"/dev/full"_s);
    program.start(QStringLiteral(VELMORA_CLI), arguments + QStringList{u"--program-dir"_s, m_folder->path()});
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.readAllStandardError(), "The output could not be written to its end.\n");
    QCOMPARE(program.exitCode(), 1);
}

void tst_cli::undoesAKilledImport()
{
    const auto book = [this] {
        Connection connection;
        connection.open("Provider=SQLite;Data Source="_L1 + m_folder->file(u"velmora.db"_s));
        QStringList rows;
        for (Recordset all = connection.select(
                 u"SELECT CO_CODE || BK_NUM || BK_NAME || BK_FLAG FROM PHONE_BOOK ORDER BY 1"_s);
             !all.eof(); all.moveNext())
            rows << all.text(0);
        return rows;
    };
    const QStringList before = book();
    QVERIFY(before.size() > 10);
    QByteArray users = "[Users]\n";
    for (int number = 10'000; number < 99'999; ++number)
        users += "[User]\nName=A\nSurname=B\nExtension=" + QByteArray::number(number) + '\n';
    m_folder->write(u"confUsers.ini"_s, users);
    QProcess program;
    program.start(QStringLiteral(VELMORA_CLI),
                  {u"phonebook"_s, u"import"_s, u"--company"_s, u"LUNA"_s, u"--equipment"_s, u"GXP2000"_s,
                   u"--folder"_s, m_folder->path(), u"--program-dir"_s, m_folder->path()});
    // Until a part of it has reached the file.
    QTRY_VERIFY(QFileInfo(m_folder->file(u"velmora.db-wal"_s)).size() > 0);
    program.kill();
    program.waitForFinished();
    QCOMPARE(program.exitStatus(), QProcess::CrashExit);
    QCOMPARE(book(), before);
}

void tst_cli::obeysMenuRights()
{
    const QString user = systemUserName().toUpper();
    const QStringList generate = {u"generate"_s, u"--company"_s, u"LUNA"_s, u"--equipment"_s, u"PAP2"_s};
    execute(u"DELETE FROM SYSTEM_PARAMETERS WHERE SY_CODE = 'AUTHM'"_s);
    const Result refused = run(generate);
    QCOMPARE(refused.status, 1);
    QCOMPARE(refused.err, u"User %1 has no right to this\n"_s.arg(user));
    QCOMPARE(run({u"list"_s, u"companies"_s}).status, 0);
    QCOMPARE(run({u"reboot"_s, u"--company"_s, u"LUNA"_s, u"--equipment"_s, u"PAP2"_s}).err, refused.err);
    QCOMPARE(
        run({u"ranges"_s, u"add"_s, u"--company"_s, u"LUNA"_s, u"--from"_s, u"1"_s, u"--to"_s, u"2"_s}).err,
        refused.err);
    for (const QString& kind : {u"generate"_s, u"import"_s})
        QCOMPARE(run({u"phonebook"_s, kind, u"--company"_s, u"LUNA"_s, u"--equipment"_s, u"GXP2000"_s}).err,
                 refused.err);
    QCOMPARE(run({u"phonebook"_s, u"export"_s, u"--company"_s, u"LUNA"_s}).err, refused.err);

    execute(u"INSERT INTO SYSTEM_PARAMETERS VALUES('AUTHM', 'BOSS', '*')"_s);
    execute(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$SUPERUSER', '%1', '*')"_s.arg(user));
    QCOMPARE(run(QStringList{u"--as"_s, u"boss"_s} + generate).status, 0);
    QCOMPARE(run(generate).status, 1);
}

QTEST_GUILESS_MAIN(tst_cli)
#include "tst_cli.moc"

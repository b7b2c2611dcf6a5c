// velmora-cli as it is run: output, messages, exit status.
#include "files/whole_file.h"
#include "platform/user_name.h"
#include "support/device_double.h"
#include "support/program_folder_fixture.h"
#include "support/query.h"
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
    void endsWithAMessageWhenAFileFails();
    void tellsThatOutputIsLost();
    void undoesAKilledImport_data();
    void undoesAKilledImport();
    void transfersTables();
    void asksForTheTablesPassword();
    void carriesOutTheLinesOfTheManual();
    void obeysMenuRights();
    void changesTheLanguage_data();
    void changesTheLanguage();

private:
    struct Result {
        int status = 0;
        QString out;
        QString err;
    };
    /// Starts the program with arguments that are separated by blanks.
    void start(QProcess& program, const QString& arguments) const;
    Result run(const QString& arguments) const;
    /// The same with the password of a table in the environment.
    Result runWithPassword(const QString& password, const QString& arguments) const;
    QStringList inDatabase(const QString& query) const;
    void execute(const QString& statement) const;

    std::unique_ptr<ProgramFolderFixture> m_folder;
};

namespace {

const auto generatePap2 = u"generate --company LUNA --equipment PAP2"_s;

} // namespace

void tst_cli::start(QProcess& program, const QString& arguments) const
{
    program.start(QStringLiteral(VELMORA_CLI), arguments.split(u' ', Qt::SkipEmptyParts)
                                                   << u"--program-dir"_s << m_folder->path());
}

tst_cli::Result tst_cli::run(const QString& arguments) const
{
    QProcess program;
    start(program, arguments);
    // Not waitForFinished(): devices of the test's own answer meanwhile.
    QSignalSpy(&program, &QProcess::finished).wait(60'000);
    return {program.exitCode(), QString::fromUtf8(program.readAllStandardOutput()),
            QString::fromUtf8(program.readAllStandardError())};
}

QStringList tst_cli::inDatabase(const QString& query) const
{
    Connection connection;
    connection.open(m_folder->embedded(u"velmora.db"_s));
    return firstFields(connection, query);
}

void tst_cli::execute(const QString& statement) const
{
    Connection connection;
    connection.open(m_folder->embedded(u"velmora.db"_s));
    connection.execute(statement);
}

/// Creates the database and loads the demo, the way a user's own seed file is loaded.
void tst_cli::initTestCase()
{
    m_folder = std::make_unique<ProgramFolderFixture>(QStringLiteral(VELMORA_SHARE));
    const Result first = run(u"start"_s);
    QCOMPARE(first.status, 3);
    QCOMPARE(first.err, u"DATABASE CREATED --> RUN PROGRAM AGAIN\n"_s);
    QByteArray demo = readWholeFile(QStringLiteral(VELMORA_SHARE "/demo.csv"));
    m_folder->write(u"tarvel.csv"_s, demo.replace("@OUTPUT@", m_folder->path().toUtf8()));
    const Result second = run(u"start"_s);
    QCOMPARE(second.status, 0);
    QCOMPARE(second.err, QString());
    // Lines tagged "All" fail in silence, so the rows are counted.
    for (const char* table :
         {"COMPANY", "RANGES", "PHONES", "COMPANY_PARAMETERS", "PHONES_PARAMETERS", "PHONE_BOOK"})
        QCOMPARE(inDatabase("SELECT 1 FROM "_L1 + QLatin1StringView(table)).size(),
                 demo.count("All;" + QByteArray(table) + ';'));
}

void tst_cli::answers_data()
{
    columns<QString, int, QString, QString>("arguments", "status", "out", "err");
    const auto help = "\nRun with --help for more information.\n"_L1;
    row("companies", "list companies", 0, "LUNA\tLuna Bakeries\nNORD\tNordhafen Logistics\n", "");
    row("models", "list models --company LUNA", 0,
        "F1000\tF1000 wireless handset\nGXP2000\tGrandstream GXP2000 desk phone\n"
        "PAP2\tPAP2 adapter for two analogue phones\n",
        "");
    row("phones of a model", "list phones --company LUNA --equipment F1000", 0,
        "117\tRounds foreman\n118\tDriver 1\n119\tDriver 2\n120\tCleaning\n", "");
    row("nothing selected", "generate --company LUNA --equipment X", 1, "",
        "No phone matches the selection.\n");
    row("a code that breaks the statement", "list phones --company O'X", 1, "",
        "unrecognized token: \"X' ORDER BY PH_CODE\"\nSELECT PH_CODE, PH_DESC FROM PHONES WHERE CO_CODE = "
        "'O'X' ORDER BY PH_CODE\n");
    row("as another user", "list companies --as boss", 2, "",
        "User "_L1 + systemUserName().toUpper() + " is no superuser and can't act as another user.\n"_L1);
    row("a range", "ranges add --company LUNA --from 901 --to 901 --yes", 0,
        "Code 901\n   Added to the range\n", "");
    row("deleted", "ranges delete --company LUNA --from 901 --to 901 --yes", 0,
        "Code 901\n   Removed from the range\n", "");
    row("nobody to say yes", "ranges add --company LUNA --from 901 --to 901", 1, "",
        "Add codes to the range of LUNA - Luna Bakeries: 1 (from 901 to 901). Continue? "
        "answered no; --yes answers yes\n");
    row("no digits", "ranges add --company LUNA --from 901 --to 9o2", 2, "",
        "--to: up to nine digits are needed, not 9o2"_L1 + help);
    row("a table", "table export levels", 0,
        "LE_CODE,LE_DESC\r\nC,Company: set for a company and model\r\nD,Device: set on the device itself\r\n"
        "E,Equipment: the default of the catalogue\r\nP,Phone: set for each phone\r\n",
        "4 records\n");
    row("a table for a spreadsheet", "table export COMPANY --separator ;", 0,
        "CO_CODE;CO_DESC\r\nLUNA;Luna Bakeries\r\nNORD;Nordhafen Logistics\r\n", "2 records\n");
    row("no separator", "table export COMPANY --separator x", 2, "",
        "--separator: one character or \"tab\" is needed, not x"_L1 + help);
    row("no command", "", 2, "", "A subcommand is required"_L1 + help);
    row("unknown command", "lists", 2, "", "The following argument was not expected: lists"_L1 + help);
    row("version", "--version", 0, "velmora-cli 1.1.42\n", "");
    row("unknown level", generatePap2 + " --levels device"_L1, 2, "",
        "--levels: device not in {phone,company,equipment}"_L1 + help);
}

void tst_cli::answers()
{
    QFETCH(QString, arguments);
    const Result result = run(arguments);
    QTEST(result.out, "out");
    QTEST(result.err, "err");
    QTEST(result.status, "status");
}

void tst_cli::generatesWhatIsRemembered()
{
    const QDir output(m_folder->path());
    QVERIFY(output.mkdir(u"LUNA"_s));
    const Result all = run(generatePap2);
    QCOMPARE(all.status, 0);
    QCOMPARE(all.out, u"113 - 0200A002000D.TXT - Shop Market Square\n   Done\n114 - 0200A002000E.TXT - Shop "
                      "Station\n   Done\n115 - 0200A002000F.TXT - Shop Harbour\n   Done\n"
                      "116 - 0200A0020010.TXT - Fax and door\n   Done\nGeneration finished\n"_s);
    const QByteArray profile = readWholeFile(output.filePath(u"LUNA/0200A002000E.txt"_s));
    QVERIFY(profile.contains("\r\n<User_ID_1_>114</User_ID_1_>\r\n"));
    QVERIFY(profile.contains("\r\n<GPP_A>Shop Station</GPP_A>\r\n<GPP_B>1</GPP_B>\r\n"));
    QVERIFY(profile.contains("\r\n<Max_Forward>70</Max_Forward>\r\n"));

    const QString other = output.filePath(u"other"_s);
    QVERIFY(output.mkdir(other));
    QCOMPARE(run(generatePap2 + " --from 114 --to 115 --source --levels phone,company --folder "_L1 + other)
                 .status,
             0);
    QCOMPARE(QDir(other).entryList(QDir::Files).size(), 4);
    QVERIFY(!readWholeFile(other + "/0200A002000E.txt"_L1).contains("Max_Forward"));
}

void tst_cli::restartsPhones()
{
    const auto address = u"UPDATE PHONES_PARAMETERS SET PA_VALUE = '%1' WHERE PA_CODE = 'Static_IP'"_s;
    execute(address.arg("127.0.0.1"_L1));
    execute(address.arg("127.0.0.2"_L1) + " AND PH_CODE = '115'"_L1);
    const DeviceDouble device(pap2Device("demo-luna"));
    const DeviceDouble other(pap2Device("another password"), u"127.0.0.2"_s, device.port());
    const QString reboot = u"reboot --company LUNA --equipment PAP2 --port %1"_s.arg(device.port());
    const Result part = run(reboot + " --to 114"_L1);
    QCOMPARE(part.out, u"PAP2 127.0.0.1 - 113 - Shop Market Square\n   Done\nPAP2 127.0.0.1 - 114 - Shop "
                       "Station\n   Done\n2 restarted, 0 refused, 0 unreachable\n"_s);
    QCOMPARE(part.status, 0);
    const Result all = run(reboot);
    QVERIFY2(all.out.endsWith("3 restarted, 1 refused, 0 unreachable\n"_L1), qPrintable(all.out));
    QCOMPARE(all.status, 1);

    // Those that failed, once more: through a file, and beforehand without a connection.
    const QString failed = m_folder->file(u"failed.txt"_s);
    QCOMPARE(run(reboot + " --at-once 8 --failed-to "_L1 + failed).status, 1);
    QCOMPARE(readWholeFile(failed), "115\n"_ba);
    const Result plan = run(reboot + " --dry-run --phones @"_L1 + failed);
    QCOMPARE(plan.out, u"115\t127.0.0.2\tPAP2\tPAP2\t\n"_s);
    QCOMPARE(plan.status, 0);
    QCOMPARE(run(reboot + " --phones 999"_L1).status, 1);
    const qsizetype before = device.received().size();
    QCOMPARE(run(reboot + " --failed-to "_L1 + m_folder->file(u"nowhere/failed.txt"_s)).status, 1);
    QCOMPARE(device.received().size(), before); // nobody is restarted whose outcome could not be written
    QCOMPARE(run(reboot + " --at-once 65"_L1).status, 2);

#ifndef Q_OS_WIN // there nothing but a console ends a program of it
    // The phone stays up; who does not wait for that is told what is not known.
    QProcess watching;
    start(watching, reboot + " --to 113 --confirm"_L1);
    QByteArray out;
    QTRY_VERIFY((out += watching.readAllStandardOutput()).contains("   Done\n"));
    watching.terminate();
    QVERIFY(QSignalSpy(&watching, &QProcess::finished).wait());
    out += watching.readAllStandardOutput();
    QVERIFY2(out.endsWith("113 - Shop Market Square - not known whether it restarted: the watch was stopped\n"
                          "0 restarted, 0 refused, 0 unreachable, 0 not confirmed, 1 unknown\n"),
             out.constData());
    QCOMPARE(watching.exitCode(), 1);
#endif
}

void tst_cli::keepsPhoneBooks()
{
    const QString folder = m_folder->file(u"books"_s);
    QVERIFY(QDir().mkdir(folder));
    const QString luna = " --company LUNA --folder "_L1 + folder;
    const QString import = "phonebook import --equipment GXP2000"_L1 + luna;
    m_folder->write(u"books/confUsers.ini"_s,
                    "[Users]\r\n[User1]\r\nName=New\r\nSurname=One\r\nExtension=999\r\n\r\n");
    const Result imported = run(import);
    QVERIFY2(imported.out.startsWith("999 - New One  - Added\n1 added, 0 updated, 0 ignored, 0 refused, "_L1),
             qPrintable(imported.out));
    QCOMPARE(imported.err, u"Import finished\n"_s);
    QCOMPARE(imported.status, 0);
    m_folder->write(u"books/confUsers.ini"_s,
                    "[User]\nName=x', BK_FLAG='H' WHERE 1=1 -- \nSurname=\nExtension=999\n");
    QCOMPARE(run(import).status, 1);
    const Result generated = run("phonebook generate --equipment GXP2000"_L1 + luna);
    QVERIFY2(generated.out.contains("999 - New One \n"_L1), qPrintable(generated.out));
    QVERIFY(readWholeFile(folder + "/gs_phonebook.xml"_L1).contains("<phonenumber>999</phonenumber>"));

    const QString exporting = "phonebook export"_L1 + luna;
    QCOMPARE(run(exporting).status, 0);
    QVERIFY(readWholeFile(folder + "/Phone_Book.csv"_L1).contains("\r\nLUNA;999;New One ;V;;;;\r\n"));
    const Result declined = run(exporting); // nobody is there to say yes
    QVERIFY(declined.err.endsWith("? answered no; --yes answers yes\n0 entries exported\n"_L1));
    QCOMPARE(declined.status, 1);
    QVERIFY(run("--yes "_L1 + exporting).out.endsWith(" entries exported\n"_L1));
    QCOMPARE(run(exporting + " --xlsx"_L1).status, 0);
    QVERIFY(QFile::exists(folder + "/Phone_Book.xlsx"_L1));
}

void tst_cli::endsWithAMessageWhenAFileFails()
{
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(u"gs_phonebook.xml"_s));
    const Result result =
        run("phonebook generate --company LUNA --equipment GXP2000 --folder "_L1 + folder.path());
    QCOMPARE(result.status, 1);
    QVERIFY2(result.err.contains(QDir::toNativeSeparators(folder.path())), qPrintable(result.err));
}

void tst_cli::tellsThatOutputIsLost()
{
#ifdef Q_OS_WIN
    const bool fullDevice = false; // Wine shows it, but does not refuse what is written
#else
    const bool fullDevice = QFileInfo::exists(u"/dev/full"_s);
#endif
    if (!fullDevice)
        QSKIP("Needs a full device");
    for (const QString& arguments : {u"--help"_s, u"list companies"_s}) {
        QProcess program;
        program.setStandardOutputFile(u"/dev/full"_s);
        start(program, arguments);
        QVERIFY(program.waitForFinished());
        QCOMPARE(program.readAllStandardError(), "The output could not be written to its end.\n");
        QCOMPARE(program.exitCode(), 1);
    }
}

void tst_cli::undoesAKilledImport_data()
{
    // each: a line of the file for the entry of a number
    columns<QString, QByteArray, QByteArray, QString>("file", "head", "each", "command");
    row("phone book", "confUsers.ini", QByteArray("[Users]\n"),
        QByteArray("[User]\nName=A\nSurname=B\nExtension=%\n"),
        "phonebook import --company LUNA --equipment GXP2000 --folder ");
    row("table", "book.csv", QByteArray("CO_CODE,BK_NUM,BK_FLAG\n"), QByteArray("LUNA,%,V\n"),
        "table import PHONE_BOOK --file ");
}

void tst_cli::undoesAKilledImport()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, head);
    QFETCH(QByteArray, each);
    QFETCH(QString, command);
    const auto book = u"SELECT CO_CODE || BK_NUM || BK_NAME || BK_FLAG FROM PHONE_BOOK ORDER BY 1"_s;
    const QStringList before = inDatabase(book);
    QVERIFY(before.size() > 10);
    QByteArray entries = head;
    for (int number = 10'000; number < 99'999; ++number)
        entries += QByteArray(each).replace('%', QByteArray::number(number));
    m_folder->write(file, entries);
    QProcess program;
    start(program, command + (command.endsWith("--file "_L1) ? m_folder->file(file) : m_folder->path()));
    // Until a part of it has reached the file.
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(m_folder->file(u"velmora.db-wal"_s)).size() > 0, 60000);
    program.kill();
    program.waitForFinished();
    QCOMPARE(program.exitStatus(), QProcess::CrashExit);
    QCOMPARE(inDatabase(book), before);
}

void tst_cli::transfersTables()
{
    const QString list = run(u"table list"_s).out;
    QVERIFY2(list.startsWith("COMPANY\tCompany\nRANGES\tRanges\n"_L1) && list.count(u'\n') == 12,
             qPrintable(list));
    const QString file = m_folder->file(u"phones.csv"_s);
    QCOMPARE(run("table export PHONES --separator tab --file "_L1 + file).err, u"42 records\n"_s);
    QCOMPARE(readWholeFile(file).count('\t'), 43 * 4);
    const QString import = "table import PHONES --file "_L1 + file;
    QCOMPARE(run(import).err, u"0 new, 0 changed, 42 same, 0 refused\n"_s);

    m_folder->write(u"phones.csv"_s,
                    "CO_CODE;PH_CODE;PH_DESC;Notes\r\nLUNA;101;\"Front\tdesk\";x\r\nLUNA;990;New;\r\n");
    const QString changed = u"2\tchanged\tLUNA, 101\tPH_DESC: \"Reception\" -> \"Front\\tdesk\"\n"_s;
    const QString refused = u"3\trefused\tLUNA, 990\tThe code is not in its company's range.\n"_s;
    const QString added =
        u"3\tnew\tLUNA, 990\tThe code is added to its company's range. The phone has no MAC address.\n"_s;
    const QString further = u"Columns passed over, since the table has none of that name: Notes\n"_s;
    const auto names = [this] {
        return inDatabase(
            u"SELECT PH_DESC FROM PHONES WHERE CO_CODE = 'LUNA' AND PH_CODE IN ('101', '990')"_s);
    };
    const auto check = [&](const QString& options, int status, const QString& out, const QString& err) {
        const Result result = run(import + options);
        QCOMPARE(result.out, out);
        QCOMPARE(result.err, further + err);
        QCOMPARE(result.status, status);
    };
    check({}, 1, changed + refused, u"0 new, 1 changed, 0 same, 1 refused\nNothing was written.\n"_s);
    check(u" --add-ranges --dry-run"_s, 0, changed + added,
          u"1 new, 1 changed, 0 same, 0 refused\nNothing was written.\n"_s);
    QCOMPARE(names(), QStringList(u"Reception"_s));
    check(u" --skip-refused"_s, 0, changed + refused, u"0 new, 1 changed, 0 same, 1 refused\n"_s);
    QCOMPARE(names(), QStringList(u"Front\tdesk"_s));
    check(u" --add-ranges"_s, 0, u"2\tsame\tLUNA, 101\t\n"_s + added,
          u"1 new, 0 changed, 1 same, 0 refused\n"_s);
    QCOMPARE(names(), QStringList({u"Front\tdesk"_s, u"New"_s}));
    execute(u"DELETE FROM PHONES WHERE PH_CODE = '990'"_s);

#ifndef Q_OS_WIN
    const Result noFile = run(u"table import PHONES --file /dev/zero"_s);
    QCOMPARE(noFile.err, u"/dev/zero: The file is larger than 64 MB.\n"_s);
    QCOMPARE(noFile.status, 1);
#endif
}

tst_cli::Result tst_cli::runWithPassword(const QString& password, const QString& arguments) const
{
    qputenv("VELMORA_TABLE_PASSWORD", password.toUtf8());
    const Result result = run(arguments);
    qunsetenv("VELMORA_TABLE_PASSWORD");
    return result;
}

void tst_cli::asksForTheTablesPassword()
{
    execute(u"INSERT INTO SYSTEM_PARAMETERS VALUES('SYSTEM_PARAMETERS', '$$PWD', 'one'), "
            "('$$SYSTEM_PARAMETERS', '$$PWD2', 'two')"_s);
    const auto exporting = u"table export SYSTEM_PARAMETERS"_s;
    QVERIFY(run(exporting).err.startsWith(
        "The table is protected by a password. Put it into the variable VELMORA_TABLE_PASSWORD"_L1));
    QCOMPARE(runWithPassword(u"three"_s, exporting).err, u"The password is not right.\n"_s);
    const Result rows = runWithPassword(u"one"_s, exporting);
    QVERIFY(rows.out.contains("AUTHC,*,*\r\n"_L1) && !rows.out.contains("\n$$"_L1));
    const Result systemRows = runWithPassword(u"two"_s, exporting);
    QVERIFY(systemRows.out.contains("\n$$LNG,$,EN\r\n"_L1) && !systemRows.out.contains("\nAUTHC"_L1));
    execute(u"DELETE FROM SYSTEM_PARAMETERS WHERE SY_SUBCODE IN ('$$PWD', '$$PWD2')"_s);
}

/// What the manual tells to type, as it stands there.
void tst_cli::carriesOutTheLinesOfTheManual()
{
#ifdef Q_OS_WIN
    QSKIP("The lines are those of a shell");
#endif
    for (const QString& language : {u"en"_s, u"fr"_s}) {
        const QString page =
            QString::fromUtf8(readWholeFile(u"" VELMORA_SHARE "/manual/"_s + language + ".htm"_L1));
        const QString chapter = page.section(u"name=\"tenlines\""_s, 1);
        const auto block = [&](int number) {
            const QString text = chapter.section(u"<pre>\n"_s, number, number).section(u"</pre>"_s, 0, 0);
            return QString(text)
                .replace("&lt;"_L1, "<"_L1)
                .replace("&gt;"_L1, ">"_L1)
                .replace("&amp;"_L1, "&"_L1);
        };
        QVERIFY(block(2).count(u'\n') <= 11);
        m_folder->write(u"list.csv"_s, block(1).replace(u'\n', "\r\n"_L1).toUtf8());
        QProcess shell;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"PATH"_s, QFileInfo(QStringLiteral(VELMORA_CLI)).path() + u':' +
                                          environment.value(u"PATH"_s));
        environment.insert(u"VELMORA_HOME"_s, m_folder->path());
        shell.setProcessEnvironment(environment);
        shell.setWorkingDirectory(m_folder->path());
        shell.start(u"sh"_s, {u"-e"_s, u"-c"_s, block(2)});
        QVERIFY(shell.waitForFinished());
        QVERIFY2(shell.exitCode() == 0, shell.readAllStandardError().constData());
        const QByteArray written = readWholeFile(m_folder->file(u"cfg0200A0030001"_s));
        QVERIFY(written.contains("&P34=pw-101&") && written.contains("&P35=101&"));
        for (const QString& table : {u"PHONES_PARAMETERS"_s, u"PHONES"_s, u"RANGES"_s, u"COMPANY"_s})
            execute("DELETE FROM "_L1 + table + " WHERE CO_CODE = 'SOLE'"_L1);
    }
}

void tst_cli::obeysMenuRights()
{
    const QString user = systemUserName().toUpper();
    execute(u"DELETE FROM SYSTEM_PARAMETERS WHERE SY_CODE = 'AUTHM'"_s);
    for (const QString& command :
         {u"generate --equipment PAP2"_s, u"reboot --equipment PAP2"_s, u"ranges add --from 1 --to 2"_s,
          u"phonebook generate --equipment GXP2000"_s, u"phonebook import --equipment GXP2000"_s,
          u"phonebook export"_s}) {
        const Result refused = run(command + " --company LUNA"_L1);
        QCOMPARE(refused.err, u"User %1 has no right to this\n"_s.arg(user));
        QCOMPARE(refused.status, 1);
    }
    QCOMPARE(run(u"list companies"_s).status, 0);

    execute(u"INSERT INTO SYSTEM_PARAMETERS VALUES('AUTHM', 'BOSS', '*')"_s);
    execute(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$SUPERUSER', '%1', '*')"_s.arg(user));
    QCOMPARE(run("--as boss "_L1 + generatePap2).status, 0);
    QCOMPARE(run(generatePap2).status, 1);
}

void tst_cli::changesTheLanguage_data()
{
    // The rights to tables, the sub-codes of the stored rows, the answer, and what is stored in the end.
    columns<QString, QStringList, QString, int, QString, QString>("rights", "rows", "language", "status",
                                                                  "answer", "after");
    const QStringList usual(u"$"_s);
    row("change", "*", usual, "fr", 0, "The language is FR from the next start on.\n", "$=FR");
    row("none is stored", "NNNNNNNNNNNY", QStringList(), "FR", 0,
        "The language is FR from the next start on.\n", "$=FR");
    row("several are stored", "*", QStringList({u"$"_s, u"A"_s}), "FR", 0,
        "The language is FR from the next start on.\n", "$=FR A=FR");
    row("no texts", "*", usual, "DE", 1, "There are no texts in this language. There are: EN, FR\n", "$=EN");
    row("another table", "YYYNNNNNNNNN", usual, "FR", 1, "User %1 has no right to this\n", "$=EN");
    // Such a user gets the tab of the settings, behind its passwords.
    row("no table", "N", usual, "FR", 1, "User %1 has no right to this\n", "$=EN");
}

void tst_cli::changesTheLanguage()
{
    QFETCH(QString, rights);
    QFETCH(QStringList, rows);
    QFETCH(QString, language);
    QFETCH(QString, answer);
    const QString settings = u"SYSTEM_PARAMETERS WHERE SY_CODE = '$$LNG'"_s;
    execute("DELETE FROM "_L1 + settings);
    for (const QString& subcode : rows)
        execute(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$LNG', '%1', 'EN')"_s.arg(subcode));
    execute(u"UPDATE SYSTEM_PARAMETERS SET SY_VALUE = '%1' WHERE SY_CODE = 'AUTHC'"_s.arg(rights));
    QCOMPARE(run(u"language"_s).out, u"* EN\n  FR\n"_s);
    const Result result = run("language "_L1 + language);
    const QString user = systemUserName().toUpper();
    QCOMPARE(result.out + result.err, answer.contains("%1"_L1) ? answer.arg(user) : answer);
    QTEST(result.status, "status");
    QCOMPARE(run(u"language"_s).out.contains("* FR"_L1), result.status == 0);
    QStringList after;
    {
        Connection connection;
        connection.open(m_folder->working());
        for (Recordset row =
                 connection.select("SELECT SY_SUBCODE, SY_VALUE FROM "_L1 + settings + " ORDER BY 1"_L1);
             !row.eof(); row.moveNext())
            after << row.text(0) + u'=' + row.text(1);
    }
    QTEST(after.join(u' '), "after");
    execute("UPDATE SYSTEM_PARAMETERS SET SY_VALUE = 'EN' WHERE SY_CODE = '$$LNG'"_L1);
}

QTEST_GUILESS_MAIN(tst_cli)
#include "tst_cli.moc"

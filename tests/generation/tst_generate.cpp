// Whole runs: from the database to the files in a folder, the lines and the messages.
#include "files/whole_file.h"
#include "generation/generate.h"
#include "generation/run_rows.h"
#include "support/rows.h"
#include "support/test_database.h"

#include <QDir>
#include <QDirIterator>

#ifndef Q_OS_WIN
#include <sys/resource.h>
#endif

#include <csignal>
#include <random>

using namespace Qt::StringLiterals;

namespace velmora {

class tst_generate : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void golden_data();
    void golden();
    void lines();
    void goesThrough_data();
    void goesThrough();
    void endsEarly_data();
    void endsEarly();
    void refusesFoldersElsewhere();
    void cancel();
    void fullDiskKeepsOlderFile();
    void manyPhones();
    void bothWays();

private:
    /// A model, a company and four phones of random parameters, and the request that writes their files.
    GenerationRequest randomPhones(int number);
    /// What the run of m_request says and shows, and its files.
    QStringList traces();
    /// Runs m_request, with `onProgress` told how many phones are done. Lines are kept in m_lines.
    std::optional<qsizetype> run(const std::function<void(qsizetype)>& onProgress = [](qsizetype) {});
    /// Runs statements that are separated by ";".
    void execute(const QString& statements);
    /// The sorted names of all files below the output folder.
    QStringList files() const;
    QByteArray content(const QString& name) const { return readWholeFile(m_out->filePath(name)); }

    std::optional<TestDatabase> m_database;
    std::optional<QTemporaryDir> m_out;
    /// All levels and no source copy, for the phones 101 to 103 of ACME.
    GenerationRequest m_request;
    QStringList m_lines;
    std::mt19937 m_random{1};
};

namespace {

const auto noParameters =
    "DELETE FROM PHONES_PARAMETERS; DELETE FROM COMPANY_PARAMETERS; DELETE FROM EQUIPMENT_PARAMETERS";
/// Statements that give the phone 102 more parameters than an image holds.
const auto tooMuchFor102 =
    "INSERT INTO EQUIPMENT_PARAMETERS WITH RECURSIVE N(I) AS (SELECT 1 UNION ALL SELECT I + 1 FROM N WHERE "
    "I < 130) SELECT 'GXP2000', 'big' || I, 'd', 'P', replace('aaaaaaaaaaaaaaa', 'a', '00000000000000000'), "
    "'T', '' FROM N;"
    "INSERT INTO PHONES_PARAMETERS SELECT 'ACME', EQ_CODE, '102', PA_CODE, PA_DEFAULT FROM "
    "EQUIPMENT_PARAMETERS WHERE PA_CODE LIKE 'big%'";

QByteArray goldenFile(const QString& name)
{
    return readWholeFile(QStringLiteral(VELMORA_SOURCE "/tests/generation/golden/") + name);
}

} // namespace

void tst_generate::init()
{
    m_database.emplace();
    m_out.emplace();
    m_request = {u"ACME"_s, u"GXP2000"_s, u"101"_s, u"103"_s, {}, false, m_out->path()};
    for (const QString& code : {u"M267"_s, u"M268"_s, u"M269"_s, u"M290"_s})
        m_database->run(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$DESC_EN', '%1', '%1: $$')"_s.arg(code));
    m_database->addPhone(u"ACME"_s, u"GXP2000"_s, u"103"_s, u"Cy"_s, u"000B82000103"_s);
    m_database->addPhone(u"ACME"_s, u"GXP2000"_s, u"101"_s, u"Ann"_s, u"000B82000101"_s);
    m_database->addPhone(u"ACME"_s, u"GXP2000"_s, u"102"_s, u"Bob"_s, u"000B82000102"_s);
    m_database->addPhone(u"ACME"_s, u"PAP2"_s, u"1025"_s, u"Fax"_s, u"000E08000104"_s);
    m_database->addPhone(u"ZETA"_s, u"GXP2000"_s, u"102"_s, u"Eve"_s, u"000B82999102"_s);
    m_database->addParameter(u"GXP2000"_s, u"1"_s, u"E"_s, u"for $$P"_s);
    m_database->addParameter(u"GXP2000"_s, u"2"_s, u"C"_s, u"default"_s);
    m_database->addParameter(u"GXP2000"_s, u"3"_s, u"P"_s, u"default"_s);
    execute(u"INSERT INTO COMPANY_PARAMETERS VALUES('ACME', 'GXP2000', '2', 'c');"
            "INSERT INTO PHONES_PARAMETERS VALUES('ACME', 'GXP2000', '103', '3', 'p')"_s);
}

/// However a run ends, nothing stays staged.
void tst_generate::cleanup()
{
    QCOMPARE(m_database->value(u"SELECT COUNT(*) FROM EQ_TEMP"_s), u"0"_s);
}

std::optional<qsizetype> tst_generate::run(const std::function<void(qsizetype)>& onProgress)
{
    m_lines.clear();
    return Generate(m_database->main, m_request,
                    {[this](const QString& line) { m_lines << line; },
                     [&](qsizetype done, qsizetype) { onProgress(done); }});
}

void tst_generate::execute(const QString& statements)
{
    for (const QString& statement : statements.split(u';', Qt::SkipEmptyParts))
        m_database->run(statement);
}

QStringList tst_generate::files() const
{
    QStringList names;
    for (QDirIterator all(m_out->path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
         all.hasNext();)
        names << QDir(m_out->path()).relativeFilePath(all.next());
    names.sort();
    return names;
}

void tst_generate::golden_data()
{
    columns<QString, QString>("model", "device");
    row("GXP2000", "GXP2000", "cfg000B82A1b2C3");
    row("PAP2", "PAP2", "000B82A1b2C3.txt");
    row("F1000", "F1000", "ut000B82A1b2C3.ini");
}

/// Both files are, byte for byte, what golden/make_golden.py wrote. The parameters come out of order and
/// from all levels.
void tst_generate::golden()
{
    QFETCH(QString, model);
    QFETCH(QString, device);
    m_database->addPhone(u"GOLD"_s, model, u"7"_s, u"Zoé"_s, u"000B82A1b2C3"_s);
    execute(QString::fromUtf8(noParameters));
    QStringList rows = QString::fromUtf8(goldenFile(u"parameters.tsv"_s)).split(u'\n', Qt::SkipEmptyParts);
    for (int level = 0; !rows.isEmpty(); level = (level + 1) % 3) {
        const QStringList row = rows.takeLast().split(u'\t');
        m_database->addParameter(model, row[0], QString(u"CPE"[level]), row[2], row[1]);
    }
    execute(u"INSERT INTO COMPANY_PARAMETERS SELECT 'GOLD', EQ_CODE, PA_CODE, PA_DEFAULT FROM "
            "EQUIPMENT_PARAMETERS WHERE LE_CODE = 'C';"
            "INSERT INTO PHONES_PARAMETERS SELECT 'GOLD', EQ_CODE, '7', PA_CODE, PA_DEFAULT FROM "
            "EQUIPMENT_PARAMETERS WHERE LE_CODE = 'P'"_s);
    m_request = {u"GOLD"_s, model, u"7"_s, u"7"_s, {}, true, m_out->path()};
    QVERIFY(run());
    QCOMPARE(content(device).toHex(' '), goldenFile(model.toLower() + ".device"_L1).toHex(' '));
    QCOMPARE(content(u"7 - 000B82A1b2C3.TXT"_s), goldenFile(model.toLower() + ".source"_L1));
    QCOMPARE(m_lines.join(u'\n'), u"M13: 7 - 000B82A1b2C3.TXT - Zoé\nM202: 3\nM15: \nM12: \nM290: 1 / 1"_s);
}

void tst_generate::lines()
{
    execute(u"UPDATE COMPANY_PARAMETERS SET PA_VALUE = '$$N';"
            "INSERT INTO COMPANY_PARAMETERS VALUES('ACME', 'GXP2000', '1', 'refused');"
            "UPDATE PHONES SET PH_MAC = '00:1', PH_DESC = 'Ωtto $$P' WHERE PH_CODE = '102'"_s);
    m_request.phoneTo = u"102"_s;
    m_database->main.stopFlag = true; // left from a run before
    QCOMPARE(run(), 2);
#ifdef Q_OS_WIN
    const QString second = u"   No file: Windows does not allow this name: cfg00:1\n"_s;
#else
    const QString second = u"M11: : - 00:1\nM202: 2\nM15: \n"_s;
#endif
    QCOMPARE(m_lines.join(u'\n'), "M13: 101 - 000B82000101.TXT - Ann\nM200: 1\nM15: \n"
                                  "M13: 102 - 00:1.TXT - "_L1 +
                                      u"Ωtto"_s + " $$P\nM200: 1\nM206: 00:1\n"_L1 + second +
                                      "M12: \nM290: 2 / 2"_L1);
    QCOMPARE(m_database->user.shown, QStringList());
}

void tst_generate::goesThrough_data()
{
    // phones: a range, or for templates "company" or "model"
    // names: the file of the last phone comes last
    columns<QString, QString, QString, QByteArray, QString>("phones", "statements", "names", "holds",
                                                            "codes");
    const auto three = "M13 M15 M13 M15 M13 M15 M12";
    row("all", "101-103", "", "cfg000B82000101, cfg000B82000102, cfg000B82000103",
        "\r\n\r\nP3=p&P2=c&P1=for 103&"_ba, three);
    row("range", "1011-102", "", "cfg000B82000102", "\r\n\r\nP2=c&P1=for 102&"_ba, "M13 M15 M12");
    row("same address", "101-103", "UPDATE PHONES SET PH_MAC = '000B82000103' WHERE PH_CODE > '101'",
        "cfg000B82000101, cfg000B82000103", "P1=for 103&"_ba, "M13 M15 M13 M15 M13 M267 M15 M12 M290");
    const auto others = "101 - 000B82000101.TXT, cfg000B82000101, 103 - 000B82000103.TXT, cfg000B82000103";
    const auto refused = "M13 M15 M13 M268 M13 M15 M12 M290";
    row("slash in code", "101-103 with source", "UPDATE RANGES SET PH_CODE = '101/2' WHERE PH_CODE = '102'",
        others, ""_ba, refused);
    row("slash in address", "101-103 with source",
        "UPDATE PHONES SET PH_MAC = '../../2' WHERE PH_CODE = '102'", others, ""_ba,
        "M13 M15 M13 M206 M268 M13 M15 M12 M290");
    row("no module", "101-103", "UPDATE EQUIPMENT SET EQ_MODULE = 'NONE'", "", ""_ba, "M12");
    row("no parameters", "101-103", noParameters, "", ""_ba, "M13 M14 M13 M14 M13 M14 M12 M290");
    const auto pap2 = "UPDATE EQUIPMENT SET EQ_MODULE = 'PAP2'";
    const auto f1000 = "UPDATE EQUIPMENT SET EQ_MODULE = 'F1000'";
    row("GXP2000, company", "company", "", "GXP2000 - ACME.txt", "\x01\x03\r\n\r\nP2=c&P1=for 103&"_ba,
        three);
    row("GXP2000, model", "model", "", "GXP2000.txt", "\x01\x03\r\n\r\nP1=for 103&"_ba, three);
    row("PAP2, company", "company", pap2, "GXP2000 - ACME.txt", "\n<1>for 103</1>\r\n<2>c</2>\r\n</f"_ba,
        three);
    row("F1000, company", "company", f1000, "GXP2000 - ACME.txt, GXP2000 - ACME.ini",
        "1=for 103\r\n2=c\r\n"_ba, three);
}

/// Templates are made with source copies, but only the one of the F1000 has a name of its own.
void tst_generate::goesThrough()
{
    QFETCH(QString, phones);
    QFETCH(QString, statements);
    QFETCH(QString, names);
    QFETCH(QByteArray, holds);
    execute(statements);
    m_request.levels = {phones.contains(u'-'), phones != "model"_L1, true};
    m_request.withSource = !m_request.levels.phone || phones.endsWith("with source"_L1);
    m_request.phoneFrom = phones.section(u'-', 0, 0);
    m_request.phoneTo = phones.section(u'-', 1).section(u' ', 0, 0);
    QVERIFY(QDir(m_out->path()).mkdir(u"101"_s)); // into which no name may lead
    const auto withRemarks = run();
    QVERIFY(withRemarks);
    QStringList expected = names.split(u", "_s, Qt::SkipEmptyParts);
    if (!expected.isEmpty())
        QVERIFY2(content(expected.last()).contains(holds), content(expected.last()).toHex(' '));
    expected.sort();
    QCOMPARE(files(), expected);
    for (QString& line : m_lines)
        line = line.section(u':', 0, 0);
    QTEST(m_lines.join(u' '), "codes");
    QCOMPARE(*withRemarks > 0, m_lines.contains(u"M290"_s));
    QCOMPARE(m_database->user.shown, QStringList());
}

void tst_generate::endsEarly_data()
{
    // shown: what the messages begin with, "@" being the output folder
    columns<QString, QString, QString, QString>("statements", "folder", "shown", "names");
    row("no phone", "UPDATE PHONES SET EQ_CODE = 'PAP2'", "@", "M8: ", "");
    row("no folder", "", "@/none", "M7: @/none", "");
    row("empty folder", "UPDATE EQUIPMENT SET EQ_MODULE = 'NONE'", "", "M7: ", "");
    row("macro in folder", "", "@/$$X", "M6: $$X", "");
    row("no model", "PRAGMA foreign_keys = OFF; DELETE FROM EQUIPMENT", "@", "M9: GXP2000", "");
    row("unknown module", "UPDATE EQUIPMENT SET EQ_MODULE = 'pap2'", "@", "M10: GXP2000 - pap2", "");
    row("one phone's folder", "", "@/$$P", "M7: @/102", "101/101 - 000B82000101.TXT, 101/cfg000B82000101");
    row("unknown macro", "UPDATE EQUIPMENT_PARAMETERS SET PA_DEFAULT = '$$X'", "@", "M6: $$X", "");
    const auto first = "101 - 000B82000101.TXT, cfg000B82000101";
    row("too large", tooMuchFor102, "@", "M203: 102 - Bob", first);
}

/// The run ends with a message, and without the files of the phone that it is about.
void tst_generate::endsEarly()
{
    QFETCH(QString, statements);
    QFETCH(QString, folder);
    QFETCH(QString, shown);
    if (onServer())
        statements.replace("PRAGMA foreign_keys = OFF"_L1, "SET SESSION foreign_key_checks = 0"_L1);
    execute(statements);
    QVERIFY(QDir(m_out->path()).mkdir(u"101"_s));
    m_request.folder = folder.replace(u'@', m_out->path());
    m_request.withSource = true;
    QVERIFY(!run());
    QCOMPARE(m_lines.filter(u"M12"_s), QStringList());
    const QString messages = m_database->user.shown.join(u'\n');
    if (shown.contains(u'@'))
        shown = QDir::toNativeSeparators(shown.replace(u'@', m_out->path()));
    QVERIFY2(messages.startsWith(shown), qPrintable(messages));
    QVERIFY(!messages.contains(u'\n'));
    QTEST(files().join(u", "_s), "names");
}

/// What stands for the macro names one folder: a phone whose text would lead elsewhere is refused alone.
void tst_generate::refusesFoldersElsewhere()
{
    for (const QString& made : {u"101"_s, u"Ann"_s, u"Cy"_s})
        QVERIFY(QDir(m_out->path()).mkdir(made));
    m_request.folder += "/$$N"_L1;
    for (const QString& name : {u".."_s, u"../101"_s, u"..\\101"_s}) {
        m_database->main.connection.execute(u"UPDATE PHONES SET PH_DESC = ? WHERE PH_CODE = '102'"_s, {name});
        QCOMPARE(run(), 1);
        QCOMPARE(files().join(u' '), u"Ann/cfg000B82000101 Cy/cfg000B82000103"_s);
        QCOMPARE(m_lines.sliced(2, 2).join(u'\n'),
                 "M269: 102 - "_L1 + name + "\nM13: 103 - 000B82000103.TXT - Cy"_L1);
    }
}

void tst_generate::cancel()
{
    for (const qsizetype after : {0, 2, 3}) {
        QList<qsizetype> told;
        const auto stopAfter = [&](qsizetype done) {
            told << done;
            m_database->main.stopFlag = done == after;
        };
        QCOMPARE(run(stopAfter).has_value(), after == 3);
        QCOMPARE(m_lines.last(), after == 3 ? u"M12: "_s : u"M205: %1 / 3"_s.arg(after));
        QCOMPARE(told, (QList<qsizetype>{0, 1, 2, 3}.first(after + 1)));
        QCOMPARE(files().size(), after);
    }
}

/// A limit for the size of files stands in for the full disk. The source copy, which has the same name, would
/// still fit.
void tst_generate::fullDiskKeepsOlderFile()
{
#ifdef Q_OS_WIN
    QSKIP("Windows has no such limit");
#else
    m_request.levels = {false, false, true};
    m_request.withSource = true;
    writeWholeFile(m_out->filePath(u"GXP2000.txt"_s), "older");
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before = {};
    QCOMPARE(getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit tight = {30, before.rlim_max};
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &tight), 0);
    const bool through = run().has_value();
    setrlimit(RLIMIT_FSIZE, &before);
    QCOMPARE(content(u"GXP2000.txt"_s), "older");
    QCOMPARE(files().size(), 1);
    QVERIFY(!through);
    QVERIFY(m_database->user.shown.constFirst().startsWith("M204: 101 - Ann - "_L1));
#endif
}

/// More than are read at once, and a database that fails meanwhile.
void tst_generate::manyPhones()
{
    for (int code = 200; code < 400; ++code)
        m_database->addPhone(u"ACME"_s, u"GXP2000"_s, QString::number(code), u"more"_s,
                             u"000B82000%1"_s.arg(code));
    execute(
        u"INSERT INTO PHONES_PARAMETERS SELECT CO_CODE, EQ_CODE, PH_CODE, '3', 'of ' || PH_CODE FROM PHONES "
        "WHERE EQ_CODE = 'GXP2000' AND CO_CODE = 'ACME' AND PH_CODE >= '200'"_s);
    m_request.phoneTo = u"399"_s;
    QVERIFY(run());
    for (int code = 200; code < 400; ++code)
        QVERIFY(
            content(u"cfg000B82000%1"_s.arg(code)).contains("\nP3=of " + QByteArray::number(code) + "&P2"));

    qsizetype written = 0;
    const auto dropTable = [&](qsizetype done) {
        written = done;
        if (done == 1)
            execute(u"DROP TABLE PHONES_PARAMETERS"_s);
    };
    QVERIFY_THROWS_EXCEPTION(DatabaseError, run(dropTable));
    QVERIFY(written > 0 && written < 203);
}

GenerationRequest tst_generate::randomPhones(int number)
{
    const auto chance = [this](unsigned percent) { return m_random() % 100 < percent; };
    const auto oneOf = [this](const QStringList& texts) {
        return texts[static_cast<qsizetype>(m_random() % static_cast<unsigned>(texts.size()))];
    };
    const auto text = [&] {
        return chance(97) ? oneOf({u""_s, u"v"_s, u"$$P"_s, u"of $$P"_s, u"$$P,2,2"_s, u"it's $$N's"_s,
                                   u"'"_s, u"$$N'$$P"_s, u"\u03A9 \u00DF"_s, QString(251, u'v') + "$$P"_L1})
                          : oneOf({u"$$N,1"_s, u"$$X"_s, u"$$P or"_s, QString(240, u'v') + "$$N"_L1});
    };
    const auto add = [this](const QString& table, const QStringList& row) {
        m_database->main.connection.execute("INSERT INTO "_L1 + table + " VALUES("_L1 +
                                                QStringList(row.size(), u"?"_s).join(u',') + u')',
                                            row);
    };
    const QString company = u"C%1"_s.arg(number);
    const QString own = u"OWN%1"_s.arg(number);
    const QString other = u"AAA%1"_s.arg(number);
    const QStringList phones = {u"1"_s, u"12"_s, u"123"_s, u"2"_s};
    m_database->addPhone(company, other, u"other"_s, u"x"_s, u"0"_s);
    for (const QString& phone : phones)
        m_database->addPhone(company, own, phone, oneOf({u"Ann"_s, u"O'Neil"_s, u"$$N"_s, QString(50, u'n')}),
                             "00000000"_L1 + QString::number(1000 + phone.toInt()));
    m_database->main.connection.execute(u"UPDATE EQUIPMENT SET EQ_MODULE = ? WHERE EQ_CODE = ?"_s,
                                        {oneOf({u"GRANDSTREAM"_s, u"PAP2"_s, u"F1000"_s}), own});
    m_database->addParameter(own, u"shown to none"_s, u"E"_s, u""_s);
    for (const QString& code : {u"1"_s, u"10"_s, u"2"_s, u"b'c"_s, u"\u00C9"_s, u"\U0001F600"_s, u"\uFB01"_s,
                                chance(5) ? u"$$P"_s : u"p"_s}) {
        const QString level = oneOf({u"E"_s, u"C"_s, u"P"_s});
        m_database->addParameter(own, code, level, text(), text());
        m_database->addParameter(other, code, u"P"_s, text(), text());
        if (chance(level == "C"_L1 ? 90 : 2))
            add(u"COMPANY_PARAMETERS"_s, {company, own, code, text()});
        for (const QString& phone : phones) {
            if (chance(level == "P"_L1 ? 80 : 2))
                add(u"PHONES_PARAMETERS"_s, {company, own, phone, code, text()});
            if (chance(3))
                add(u"PHONES_PARAMETERS"_s, {company, other, phone, code, text()});
        }
    }
    return {company, own, u"1"_s, u"2"_s, {chance(80), chance(90), true}, false, m_out->path()};
}

QStringList tst_generate::traces()
{
    for (const QString& name : files())
        QFile::remove(m_out->filePath(name));
    m_database->user.shown.clear();
    const auto remarks = run();
    QStringList all = {remarks ? QString::number(*remarks) : u"ended"_s};
    all << m_lines << m_database->user.shown;
    for (const QString& name : files())
        all << name + u' ' + QString::fromLatin1(content(name).toHex());
    return all;
}

/// Random sets lead to the same files and lines where all of them are merged in the table: a description of
/// which only the table tells that it fits leads them there.
void tst_generate::bothWays()
{
    int inMemory = 0;
    int inTable = 0;
    for (int number = 0; number < 40; ++number) {
        m_request = randomPhones(number);
        const QStringList one = traces();
        m_database->selectPhones(m_request.company);
        RunRows rows(m_database->main, m_request.levels);
        for (Recordset& phones = m_database->main.phones; !phones.eof(); phones.moveNext()) {
            const Phone phone = m_database->main.currentPhone();
            ++(merge(rows.of(phone), phone).doubtful.isEmpty() ? inMemory : inTable);
        }
        m_database->main.connection.execute(
            u"UPDATE EQUIPMENT_PARAMETERS SET PA_DESC = ? WHERE PA_CODE = 'shown to none'"_s,
            {u"\U0001F600"_s.repeated(200)});
        QCOMPARE(traces().join(u'\n'), one.join(u'\n'));
    }
    QVERIFY2(inMemory > 40 && inTable > 40, qPrintable(u"%1, %2"_s.arg(inMemory).arg(inTable)));
}

} // namespace velmora

QTEST_GUILESS_MAIN(velmora::tst_generate)
#include "tst_generate.moc"

// Tables out of and into files of separated values.
#include "editor/transfer/mac_address.h"
#include "editor/transfer/table_export.h"
#include "editor/transfer/table_import.h"
#include "editor/transfer/verdict_texts.h"
#include "files/whole_file.h"
#include "schema/tables.h"
#include "support/program_folder_fixture.h"
#include "support/query.h"
#include "support/rows.h"
#include "support/test_database.h"

#include <QRandomGenerator>

using namespace Qt::StringLiterals;
using namespace velmora;

namespace {

const TransferProgress goOn = [](qsizetype, qsizetype) { return true; };

OpenTable opened(MMain& main, const QString& table, Access access = Access::True)
{
    return {describeTable(main, table), access};
}

QByteArray exported(MMain& main, const OpenTable& table)
{
    return exportTable(main, table, ',', [](qsizetype) { return true; })->bytes;
}

/// What became of each line: its number, the verdict's first letter, then the changes and the notes.
QString told(const CheckedLines& lines)
{
    QStringList told;
    for (const CheckedLine& line : lines) {
        QStringList parts = {QString::number(line.number) + u"ncsr"_s[static_cast<int>(line.verdict)]};
        for (int column = 0; column < line.values.size(); ++column)
            if (line.changes(column))
                parts << line.before[column] + u'>' + line.values[column];
        for (const Note& note : line.notes)
            parts << note.code + (note.about.isEmpty() ? QString() : u'(' + note.about.join(u'|') + u')');
        told << parts.join(u' ');
    }
    return told.join("; "_L1);
}

/// A text of up to `most` characters that makes trouble wherever it can.
QString hostileText(QRandomGenerator& random, int most)
{
    static const QStringList pieces = {
        u"\""_s,   u","_s,       u";"_s,  u"\t"_s,   u"\r\n"_s, u"\n"_s,         u"\r"_s,     u" "_s,
        u"'"_s,    u"\\"_s,      u"$$"_s, u"é"_s,    u"ł"_s,    u"\U0001F600"_s, u"\u00A0"_s, u"%1"_s,
        u"NULL"_s, u"b\uFEFF"_s, u"\0"_s, u"=1+1"_s, u"a"_s,    u"B"_s};
    QString text;
    for (int left = random.bounded(most + 1); left > 0; --left)
        text += pieces[random.bounded(static_cast<int>(pieces.size()))];
    return QString::fromStdU32String(text.toStdU32String().substr(0, static_cast<size_t>(most)));
}

} // namespace

class tst_transfer : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_database.reset(); }
    void readsFiles_data();
    void readsFiles();
    void readsWhatIsPasted();
    void judgesLines_data();
    void judgesLines();
    void writesAllOrNothing_data();
    void writesAllOrNothing();
    void obeysTheEngine();
    void writesOnlyWhatWasShown();
    void separatesSystemRows();
    void givesBackTheDemo();
    void givesBackHostileTexts();

private:
    TableFile file(const OpenTable& table, const QByteArray& text) const
    {
        return readTableFile(text, table.description);
    }

    std::unique_ptr<TestDatabase> m_database;
};

/// Phones LUNA 1 (GXP2000), 2 (no model) and NORD 1; the code 3 of LUNA is free.
void tst_transfer::init()
{
    m_database = std::make_unique<TestDatabase>();
    m_database->addPhone(u"LUNA"_s, u"GXP2000"_s, u"1"_s, u"One"_s, u"0200A0010001"_s);
    m_database->addPhone(u"LUNA"_s, u"GXP2000"_s, u"2"_s, u""_s, u"odd"_s);
    m_database->run(u"UPDATE PHONES SET EQ_CODE = NULL WHERE PH_CODE = '2'"_s);
    m_database->addPhone(u"NORD"_s, u"PAP2"_s, u"1"_s, u"Nord"_s, u""_s);
    m_database->run(u"INSERT INTO RANGES VALUES('LUNA', '3')"_s);
}

void tst_transfer::readsFiles_data()
{
    // table: what each line has for each column of PHONES, "-" for nothing, or the message about the file
    columns<QByteArray, QString>("file", "table");
    const auto head = QByteArray("CO_CODE,PH_CODE,EQ_CODE,PH_DESC,PH_MAC\n");
    row("as exported", head + "A,1,,\"\",\" x \"\r\nA,2,\"a\"\"b\",\"c\r\nd\",e\r\n",
        "2[A][1][-][][ x ] 3[A][2][a\"b][c\r\nd][e]");
    row("semicolons, a mark, other order, further column",
        QByteArray("\xEF\xBB\xBFPH_CODE;note, more;co_code\r\n1;x;\xC3\xA9"), "2[é][1][-][-][-] +note, more");
    row("tabs, captions, Windows-1252",
        QByteArray("Company\tPhone\tName of the phone\n\xE9\t1\t\"\t\x80\"\n"), "2[é][1][-][\t€][-]");
    row("line numbers", head + "\n\"a\nb\",1,,,\r\n,,,,\r\rc,2,,,\n", "3[a\nb][1][-][-][-] 7[c][2][-][-][-]");
    row("mark within",
        QByteArray("CO_CODE,PH_CODE\nA,\xEF\xBB\xBF"
                   "1\n"),
        "2[A][\uFEFF1][-][-][-]");
    row("too few and too many", head + "A,1\nA,2,,,,\n", "2/2 3/6");
    row("empty", QByteArray(), "M325(CO_CODE, PH_CODE)");
    row("no heading", QByteArray("LUNA,1,x\n"), "M325(CO_CODE, PH_CODE)");
    row("no key", QByteArray("CO_CODE\n"), "M325(PH_CODE)");
    row("twice", QByteArray("CO_CODE,PH_CODE,company\n"), "M326(CO_CODE)");
    row("open quote", head + "A,\"1\nA,2,,,\n", "M321(2)");
    row("endless field", head + "A," + QByteArray(70'000, 'x'), "M321(2)");
    row("quote in the middle", head + "A,1,,,\nA,2\",,,\n", "M322(3)");
    row("text after a quote", head + "\"A\"B,2,,,\n", "M322(2)");
    row("many columns", head + QByteArray(1000, ','), "M323(2|1000)");
    row("many lines", head + QByteArray("a,,,,\n").repeated(500'001), "M324(500000)");
    row("two bytes a character", QByteArray("C\0O\0\n", 5), "M319");
    row("large", QByteArray((64 << 20) + 1, 'x'), "M320(64)");
}

void tst_transfer::readsFiles()
{
    QFETCH(QByteArray, file);
    MMain& main = m_database->main;
    m_database->run(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$DESC_EN', 'CO_CODE', 'Company')"_s);
    m_database->run(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$DESC_EN', 'PH_CODE', 'Phone')"_s);
    m_database->run(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$DESC_EN', 'PH_DESC', 'Name of the phone')"_s);
    QStringList read;
    try {
        const TableFile table = readTableFile(file, describeTable(main, u"PHONES"_s));
        for (const TableLine& line : table.lines) {
            QString text = QString::number(line.number);
            if (line.values.isEmpty())
                text += u'/' + QString::number(line.fields);
            for (const QString& value : line.values)
                text += u'[' + (value.isNull() ? u"-"_s : value) + u']';
            read << text;
        }
        for (const QString& further : table.further)
            read << u'+' + further;
    } catch (const TableFileError& error) {
        const QStringList& about = error.why().about;
        read = {error.why().code + (about.isEmpty() ? QString() : u'(' + about.join(u'|') + u')')};
    }
    QTEST(read.join(u' '), "table");
}

void tst_transfer::readsWhatIsPasted()
{
    QCOMPARE(pastedTableBytes(u"A\tB 3\" x\t\"q\n\"\"t\t\"\t\t1\"\r\nc\t\"d\"e\"f\n2\""_s),
             QByteArray("A\t\"B 3\"\" x\"\t\"q\n\"\"t\t\"\t\t\"1\"\"\"\r\nc\t\"d\"e\"f\n\"2\"\"\""));
}

void tst_transfer::judgesLines_data()
{
    columns<QString, QString, QString>("lines", "verdicts", "withRanges");
    const auto all = u"CO_CODE,PH_CODE,EQ_CODE,PH_DESC,PH_MAC\n"_s;
    const auto each = [](const char* title, const QString& lines, const QString& verdicts,
                         const QString& withRanges = {}) {
        row(title, lines, verdicts, withRanges.isNull() ? verdicts : withRanges);
    };
    each("new, changed, same",
         all + u"LUNA,3,PAP2,x,02-00.A0 01:00ff\nLUNA,1,GXP2000,I,0200A0010001\n"
               "NORD,1,PAP2,Nord,\n"_s,
         u"2n; 3c One>I; 4s"_s);
    each("missing and empty", all + u"LUNA,2,,,odd\nLUNA,1,,One,0200A0010001\nNORD,1,\"\",\"\",\"\"\n"_s,
         u"2s; 3c GXP2000>; 4r M224(EQUIPMENT|EQ_CODE )"_s);
    each("only what the file holds", u"PH_CODE,CO_CODE,PH_DESC\n1,LUNA,I\n3,LUNA,x\n2,LUNA,\n"_s,
         u"2c One>I; 3n M331; 4s"_s);
    each("addresses",
         all +
             u"LUNA,3,,x,0200a0010001\nNORD,1,PAP2,Nord,0200A00100F\nLUNA,2,,y,odd\nLUNA,1,GXP2000,One,\n"_s,
         u"2n; 3r M330(0200A00100F); 4c >y; 5c 0200A0010001> M331"_s);
    each("an address that stays elsewhere",
         u"CO_CODE,PH_CODE,PH_MAC\nLUNA,3,02:00:A0:01:00:01\nNORD,1,0200A0010001\n"_s,
         u"2n M332(LUNA, 1); 3c >0200A0010001 M332(LUNA, 1)"_s);
    each("an address twice in the file", all + u"LUNA,3,,x,0200A00100AA\nNORD,1,PAP2,Nord,0200a00100aa\n"_s,
         u"2n; 3c >0200a00100aa M332(LUNA, 3)"_s);
    each("ranges", all + u"LUNA,9,PAP2,x,0200A00100AA\nMARS,1,PAP2,x,\nLUNA,8,X,x,\n"_s,
         u"2r M333; 3r M224(COMPANY|CO_CODE MARS); 4r M224(EQUIPMENT|EQ_CODE X)"_s,
         u"2n M334; 3r M224(COMPANY|CO_CODE MARS); 4r M224(EQUIPMENT|EQ_CODE X)"_s);
    each("keys", all + u"LUNA,3,,x,\nLUNA,3,,y,\n,3,,x,\nLUNA\n$$LUN,1,,x,\n"_s,
         u"2n M331; 3r M329(2); 4r M226(CO_CODE); 5r M328(1|5); 6r M335($$)"_s);
    each("widths",
         all + u"LUNA,3,,"_s + QString(50, u'é') + u",\nLUNA,1,,"_s + u"\U0001F600"_s.repeated(50) +
             u",0200A0010001\nNORD,1,PAP2,"_s + QString(51, u'x') + u",\n"_s,
         u"2n M331; 3c GXP2000> One>"_s + u"\U0001F600"_s.repeated(50) + u"; 4r M225(PH_DESC|50)"_s);
}

void tst_transfer::judgesLines()
{
    QFETCH(QString, lines);
    MMain& main = m_database->main;
    const OpenTable phones = opened(main, u"PHONES"_s);
    const TableFile read = file(phones, lines.toUtf8());
    const QByteArray before = exported(main, phones);
    QTEST(told(*checkLines(main, phones, read, false, goOn)), "verdicts");
    QTEST(told(*checkLines(main, phones, read, true, goOn)), "withRanges");
    QCOMPARE(exported(main, phones), before);

    // What the check promises is what the engine takes: all that is written is the same the next time.
    const auto written = importLines(main, phones, read, {true, true}, goOn);
    QTEST(told(written->lines), "withRanges");
    const auto refused = count(written->lines, Verdict::Refused);
    const CheckedLines again = *checkLines(main, phones, read, false, goOn);
    QCOMPARE(count(again, Verdict::Refused), refused);
    QCOMPARE(count(again, Verdict::Same), static_cast<qsizetype>(again.size()) - refused);
}

void tst_transfer::writesAllOrNothing_data()
{
    // stopAt: the call of the progress that ends it; changed: whether anything is
    columns<bool, bool, int, bool>("skipRefused", "refusedLine", "stopAt", "changed");
    row("all", false, false, 0, true);
    row("one is refused", false, true, 0, false);
    row("left out", true, true, 0, true);
    row("stopped while checking", false, false, 2, false);
    row("stopped while writing", false, false, 5, false);
    row("stopped at the end", false, false, 13, false);
}

void tst_transfer::writesAllOrNothing()
{
    QFETCH(bool, skipRefused);
    QFETCH(bool, refusedLine);
    QFETCH(int, stopAt);
    QFETCH(bool, changed);
    MMain& main = m_database->main;
    const OpenTable phones = opened(main, u"PHONES"_s);
    const OpenTable ranges = opened(main, u"RANGES"_s);
    const QByteArray before = exported(main, phones) + exported(main, ranges);
    QByteArray text = "CO_CODE,PH_CODE,EQ_CODE,PH_DESC,PH_MAC\nLUNA,1,GXP2000,I,\n";
    if (refusedLine)
        text += "LUNA,2,X,x,\n";
    for (int code = 1000; code < 2000; ++code)
        text += "LUNA," + QByteArray::number(code) + (code % 2 == 0 ? ",PAP2,x,\n" : ",,x,\n");
    int calls = 0;
    const auto progress = [&](qsizetype, qsizetype) { return ++calls != stopAt; };
    const auto import = importLines(main, phones, file(phones, text), {skipRefused, true}, progress);
    QCOMPARE(import.has_value(), stopAt == 0);
    QCOMPARE(import && import->written, changed);
    if (!changed) {
        QCOMPARE(exported(main, phones) + exported(main, ranges), before);
        return;
    }
    QCOMPARE(count(import->lines, Verdict::New), 1000);
    QCOMPARE(m_database->value(u"SELECT COUNT(*) FROM PHONES"_s), u"1003"_s);
    QCOMPARE(m_database->value(u"SELECT COUNT(*) FROM PHONES WHERE EQ_CODE IS NULL"_s), u"501"_s);
    QCOMPARE(m_database->value(u"SELECT COUNT(*) FROM RANGES"_s), u"1004"_s);
    QCOMPARE(m_database->value(u"SELECT PH_DESC FROM PHONES WHERE CO_CODE = 'LUNA' AND PH_CODE = '1'"_s),
             u"I"_s);
}

/// A rule that only the engine knows refuses a line among others that are written together.
void tst_transfer::obeysTheEngine()
{
    MMain& main = m_database->main;
    m_database->run(
        u"CREATE TABLE OWN (K VARCHAR(9) NOT NULL, V VARCHAR(9) NOT NULL UNIQUE, PRIMARY KEY (K))"_s);
    const OpenTable own = opened(main, u"OWN"_s);
    QByteArray text = "K,V\n";
    for (int line = 0; line < 150; ++line)
        text += QByteArray::number(line) + ',' + QByteArray::number(line == 70 ? 3 : line) + '\n';
    const TableFile read = file(own, text);
    QCOMPARE(count(*checkLines(main, own, read, false, goOn), Verdict::Refused), 0);
    for (const bool skip : {false, true}) {
        const auto import = importLines(main, own, read, {skip, false}, goOn);
        QCOMPARE(import->written, skip);
        QCOMPARE(count(import->lines, Verdict::Refused), 1);
        QCOMPARE(VerdictTexts(main, {}).details(import->lines[70]),
                 u"A record with this key exists already."_s);
        QCOMPARE(m_database->value(u"SELECT COUNT(*) FROM OWN"_s), skip ? u"149"_s : u"0"_s);
    }
}

void tst_transfer::writesOnlyWhatWasShown()
{
    MMain& main = m_database->main;
    const OpenTable phones = opened(main, u"PHONES"_s);
    const TableFile read = file(phones, "CO_CODE,PH_CODE,PH_DESC\nLUNA,1,I\n");
    const CheckedLines shown = *checkLines(main, phones, read, false, goOn);
    m_database->run(u"UPDATE PHONES SET PH_DESC = 'Uno' WHERE PH_CODE = '1'"_s);
    const auto stale = importLines(main, phones, read, {}, goOn, shown);
    QVERIFY(!stale->written);
    QCOMPARE(told(stale->lines), u"2c Uno>I"_s);
    QVERIFY(importLines(main, phones, read, {}, goOn, stale->lines)->written);
}

void tst_transfer::separatesSystemRows()
{
    MMain& main = m_database->main;
    m_database->run(u"DELETE FROM SYSTEM_PARAMETERS"_s);
    m_database->run(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$A', 'x', '1'), ('B', '$$y', '2')"_s);
    const QString table = u"SYSTEM_PARAMETERS"_s;
    for (const auto& [access, rows, verdicts] :
         {std::tuple(Access::True, QByteArray("B,$$y,2\r\n"), u"2s; 3r M335($$)"_s),
          std::tuple(Access::Admin, QByteArray("$$A,x,1\r\n"), u"2r M335($$); 3s"_s)}) {
        const OpenTable system = opened(main, table, access);
        QCOMPARE(exported(main, system), "SY_CODE,SY_SUBCODE,SY_VALUE\r\n" + rows);
        const TableFile both = file(system, "SY_CODE,SY_SUBCODE,SY_VALUE\nB,$$y,2\n$$A,x,1\n");
        QCOMPARE(told(*checkLines(main, system, both, false, goOn)), verdicts);
    }
}

/// Every table of the demo, out of one database and into another, empty one.
void tst_transfer::givesBackTheDemo()
{
    const ProgramFolderFixture folder(QStringLiteral(VELMORA_SHARE));
    QVERIFY(!Start(folder).ready);
    folder.write(u"tarvel.csv"_s, readWholeFile(QStringLiteral(VELMORA_SHARE "/demo.csv")));
    Start demo(folder);
    QVERIFY(demo.ready);
    MMain& target = m_database->main;
    QStringList tables = copiedTables();
    for (auto table = tables.rbegin(); table != tables.rend(); ++table)
        m_database->run("DELETE FROM "_L1 + *table);
    QCOMPARE(tables.size(), 12);
    for (const QString& table : tables)
        for (const Access access : {Access::True, Access::Admin}) {
            const QByteArray bytes = exported(demo.main, opened(demo.main, table, access));
            const OpenTable empty = opened(target, table, access);
            const TableFile read = file(empty, bytes);
            QVERIFY(importLines(target, empty, read, {}, goOn)->written);
            QCOMPARE(exported(target, empty), bytes);
            QCOMPARE(count(*checkLines(target, empty, read, false, goOn), Verdict::Same),
                     static_cast<qsizetype>(read.lines.size()));
        }
    QStringList rows = everyRow(folder.working());
    QVERIFY(rows.size() > 1000);
    QCOMPARE(everyRow(m_database->connectionString()), rows);
}

void tst_transfer::givesBackHostileTexts()
{
    MMain& main = m_database->main;
    QRandomGenerator random(42);
    const QList<Column> columns = main.connection.columns(u"PHONE_BOOK"_s);
    m_database->run(u"INSERT INTO CREATION_FLAGS VALUES('V', 'x', 'Y')"_s);
    const QString insert = u"INSERT INTO PHONE_BOOK VALUES(?, ?, ?, ?, ?, ?, ?, ?)"_s;
    QSet<QStringList> keys;
    main.connection.execute(u"BEGIN"_s);
    while (keys.size() < 10'000) {
        QStringList record;
        for (const Column& column : columns)
            record << (column.name == "BK_FLAG"_L1 ? u"V"_s : hostileText(random, column.width));
        if (record[0].startsWith("$$"_L1) || keys.contains(record.first(2)))
            continue;
        keys << record.first(2);
        main.connection.execute(insert, record);
    }
    main.connection.execute(u"COMMIT"_s);
    const QStringList rows = everyRow(m_database->connectionString());
    const OpenTable book = opened(main, u"PHONE_BOOK"_s);
    for (const char separator : {',', ';', '\t'}) {
        const QByteArray bytes = exportTable(main, book, separator, [](qsizetype) { return true; })->bytes;
        const TableFile read = file(book, bytes);
        QCOMPARE(count(*checkLines(main, book, read, false, goOn), Verdict::Same), 10'000);
        m_database->run(u"DELETE FROM PHONE_BOOK"_s);
        QVERIFY(importLines(main, book, read, {}, goOn)->written);
        QCOMPARE(everyRow(m_database->connectionString()), rows);
    }
}

QTEST_GUILESS_MAIN(tst_transfer)
#include "tst_transfer.moc"

// What stands in the staging table for one phone, through the embedded database.
#include "generation/staging.h"
#include "support/rows.h"
#include "support/test_database.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace velmora {

class tst_merge : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void partition();
    void valuesOfOtherModels();
    void macros_data();
    void macros();
    void refusedMacros();
    void collisions();
    void grownTooLong();
    void nextPhone_data();
    void nextPhone();

private:
    /// Puts a parameter into the catalogue of the GXP2000 and, at level "C" or "P", its value beside it.
    void set(const QString& level, const QString& code, const QString& value,
             const QString& description = u"d"_s);
    /// Adds a row to a table of values: the values of all columns, as they stand in a statement.
    void addRow(const char* table, const char* values);
    /// Stages the levels that the letters name for the first phone of ACME; the lines that this gives.
    QString stage(const QString& levels);
    /// The rows of the staging table, a line "code|description|value|level" each.
    QString staged();

    std::optional<TestDatabase> m_database;
    std::optional<Staging> m_staging;
    std::optional<QList<Parameter>> m_merged;
};

/// Besides the phone of the tests, others whose values are none of its business.
void tst_merge::init()
{
    m_staging.reset();
    m_database.emplace();
    m_database->addPhone(u"ACME"_s, u"GXP2000"_s, u"1234"_s, u"Ann"_s, u"1"_s);
    m_database->addPhone(u"ACME"_s, u"GXP2000"_s, u"2000"_s, u"Bob"_s, u"2"_s);
    m_database->addPhone(u"ZETA"_s, u"PAP2"_s, u"1234"_s, u"Eve"_s, u"3"_s);
}

void tst_merge::set(const QString& level, const QString& code, const QString& value,
                    const QString& description)
{
    Connection& connection = m_database->main.connection;
    m_database->addParameter(u"GXP2000"_s, code, level, level == "E"_L1 ? value : u"default"_s, description);
    if (level == "C"_L1)
        connection.execute(u"INSERT INTO COMPANY_PARAMETERS VALUES('ACME', 'GXP2000', ?, ?)"_s,
                           {code, value});
    else if (level == "P"_L1)
        connection.execute(u"INSERT INTO PHONES_PARAMETERS VALUES('ACME', 'GXP2000', '1234', ?, ?)"_s,
                           {code, value});
}

void tst_merge::addRow(const char* table, const char* values)
{
    m_database->run(u"INSERT INTO %1 VALUES(%2)"_s.arg(QString::fromUtf8(table), QString::fromUtf8(values)));
}

QString tst_merge::stage(const QString& levels)
{
    QStringList lines;
    m_database->selectPhones(u"ACME"_s);
    m_staging.emplace(m_database->main,
                      Levels{levels.contains(u'P'), levels.contains(u'C'), levels.contains(u'E')});
    m_merged = m_staging->merge([&lines](const QString& text) { lines << text; });
    return lines.join(u'\n');
}

QString tst_merge::staged()
{
    QStringList rows;
    Cursor cursor = m_database->main.connection.cursor(
        u"SELECT PA_CODE || '|' || PA_DESC || '|' || PA_VALUE || '|' || LE_CODE FROM EQ_TEMP ORDER BY PA_CODE"_s);
    while (cursor.next())
        rows << cursor.text(0);
    if (m_merged) {
        QStringList merged;
        for (const Parameter& parameter : *m_merged)
            merged << parameter.code + u'|' + parameter.description + u'|' + parameter.value;
        if (QString(rows.join(u'\n'))
                .remove(QRegularExpression(u"\\|[ECP]$"_s, QRegularExpression::MultilineOption)) !=
            merged.join(u'\n'))
            return "The merge gave something else: "_L1 + merged.join(u'\n');
    }
    return rows.join(u'\n');
}

/// Values and defaults of other companies, phones, models and levels don't step in.
void tst_merge::partition()
{
    set(u"E"_s, u"10"_s, u"e"_s, u"ten"_s);
    set(u"E"_s, u"1"_s, u"e"_s, u"one"_s);
    set(u"C"_s, u"2"_s, u"c"_s, u"two"_s);
    set(u"P"_s, u"4"_s, u"p"_s, u"four"_s);
    for (const QString& level : {u"C"_s, u"P"_s, u"D"_s})
        m_database->addParameter(u"GXP2000"_s, "no "_L1 + level, level, u"default"_s);
    m_database->addParameter(u"PAP2"_s, u"x"_s, u"E"_s, u"default"_s);
    addRow("COMPANY_PARAMETERS", "'ACME', 'PAP2', 'x', 'of another model'");
    addRow("COMPANY_PARAMETERS", "'ZETA', 'GXP2000', 'no C', 'of another company'");
    addRow("PHONES_PARAMETERS", "'ZETA', 'GXP2000', '1234', 'no P', 'of another company'");
    addRow("PHONES_PARAMETERS", "'ACME', 'GXP2000', '2000', 'no P', 'of another phone'");
    QCOMPARE(stage(u"ECP"_s), QString());
    QCOMPARE(staged(), u"1|one|e|E\n10|ten|e|E\n2|two|c|C\n4|four|p|P"_s);
    QCOMPARE(m_database->user.shown, QStringList());
}

/// Phone values count whatever model they were entered for; the phone's own model describes them, and its
/// value wins, even where a macro stands in it. Of others, the first one does.
void tst_merge::valuesOfOtherModels()
{
    m_database->addParameter(u"GXP2000"_s, u"4"_s, u"P"_s, u"default"_s, u"own"_s);
    set(u"P"_s, u"5"_s, u"of $$P"_s, u"own"_s);
    set(u"P"_s, u"6"_s, u"plain"_s, u"own"_s);
    m_database->addPhone(u"ZETA"_s, u"AAA"_s, u"77"_s, u"Another model"_s, u"4"_s);
    for (const QString& model : {u"PAP2"_s, u"AAA"_s})
        for (const QString& code : {u"4"_s, u"5"_s, u"6"_s, u"Host"_s})
            m_database->addParameter(model, code, u"P"_s, u"v"_s, u"foreign"_s);
    for (const QString& code : {u"4"_s, u"5"_s, u"6"_s, u"Host"_s})
        addRow("PHONES_PARAMETERS", qPrintable("'ACME', 'PAP2', '1234', '"_L1 + code + "', 'v of $$P'"_L1));
    addRow("PHONES_PARAMETERS", "'ACME', 'AAA', '1234', 'Host', 'first'");
    m_database->run(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$DESC_EN', 'M266', 'M266: $$')"_s);
    QCOMPARE(stage(u"P"_s), u"M266: PAP2 - 5\nM266: PAP2 - 6\nM200: Host"_s);
    QCOMPARE(staged(), u"4|own|v of 1234|P\n5|own|of 1234|P\n6|own|plain|P\nHost||first|P"_s);
}

void tst_merge::macros_data()
{
    columns<QString, QString, QString, QString>("name", "description", "value", "row");
    row("none", "O'Neil", "the user's $", "''d'Arc''s' $P", "the user's $|''d'Arc''s' $P");
    row("code", "Ann", "d", "ext$$P", "d|ext1234");
    row("everywhere", "Ann", "of $$P", "$$P'$$P", "of 1234|1234'1234");
    row("cut", "Ann", "d", "$$P,2,2", "d|23");
    row("other macro stays", "Ann", "$$P", "$$N", "1234|$$N");
    row("no placeholder", "Ann", "?1", "a\\? :x %1 $$P", "?1|a\\? :x %1 1234");
    row("name", "O'Neil", "d", "$$N", "d|O'Neil");
    row("name cut at", "O'Neil", "d", "$$N,1,2", "d|O'");
    row("name quoted", "O'Neil", "d", "'$$N'", "d|'O'Neil'");
    row("all apostrophes", "O'Neil's", "my $$N's", "it's $$N's", "my O'Neil's's|it's O'Neil's's");
    row("name holds $$", "5 $$ 's", "d", "$$N", "d|5 $$ 's");
    row("name holds the macro", "$$N $$P", "d", "<$$N", "d|<$$N $$P");
}

void tst_merge::macros()
{
    QFETCH(QString, name);
    QFETCH(QString, description);
    QFETCH(QString, value);
    QFETCH(QString, row);
    m_database->main.connection.execute(u"UPDATE PHONES SET PH_DESC = ?"_s, {name});
    set(u"C"_s, u"c"_s, value, description);
    set(u"E"_s, u"e"_s, value, description);
    set(u"E"_s, u"in code $$P"_s, u""_s);
    set(u"P"_s, u"p"_s, value, description);
    QCOMPARE(stage(u"ECP"_s), QString());
    QCOMPARE(staged(), u"c|%1|C\ne|%1|E\nin code 1234|d||E\np|%1|P"_s.replace("%1"_L1, row));
    QCOMPARE(m_database->user.shown, QStringList());
    QVERIFY(!m_database->main.stopFlag);
}

/// A refused macro stays as it is; the rest of its level is staged all the same.
void tst_merge::refusedMacros()
{
    set(u"E"_s, u"1"_s, u"$$N,1"_s);
    set(u"E"_s, u"2"_s, u"$$N,0,x"_s);
    set(u"E"_s, u"3"_s, u"$$P"_s);
    QCOMPARE(stage(u"E"_s), QString());
    QCOMPARE(staged(), u"1|d|$$N,1|E\n2|d|$$N,0,x|E\n3|d|1234|E"_s);
    QVERIFY(!m_database->main.stopFlag);
    set(u"C"_s, u"4"_s, u"$$X"_s);
    set(u"C"_s, u"5"_s, u"$$P and more"_s);
    set(u"C"_s, u"6"_s, u"$$X,1"_s);
    set(u"C"_s, u"7"_s, u"$$P"_s);
    QCOMPARE(stage(u"C"_s), QString());
    QCOMPARE(staged(), u"4|d|$$X|C\n5|d|$$P and more|C\n6|d|$$X,1|C\n7|d|1234|C"_s);
    QVERIFY(m_database->main.stopFlag);
    QCOMPARE(m_database->user.shown.join(u'\n'),
             u"M6: $$N,1\nM6: $$N,0,x\nM6: $$X\nM6: $$P and more\nM6: $$X,1"_s);
}

void tst_merge::collisions()
{
    for (const QString& code : {u"1"_s, u"2"_s, u"3"_s})
        set(u"E"_s, code, u"e"_s);
    set(u"C"_s, u"4"_s, u"c"_s);
    set(u"C"_s, u"5"_s, u"c"_s);
    set(u"P"_s, u"6"_s, u"p"_s);
    addRow("COMPANY_PARAMETERS", "'ACME', 'GXP2000', '1', 'refused'");
    addRow("COMPANY_PARAMETERS", "'ACME', 'GXP2000', '3', '$$P'");
    addRow("PHONES_PARAMETERS", "'ACME', 'GXP2000', '1234', '2', 'refused'");
    addRow("PHONES_PARAMETERS", "'ACME', 'GXP2000', '1234', '4', 'refused'");
    QCOMPARE(stage(u"ECP"_s), u"M200: 1\nM200: 3\nM200: 2\nM200: 4"_s);
    QCOMPARE(staged(), u"1|d|e|E\n2|d|e|E\n3|d|e|E\n4|d|c|C\n5|d|c|C\n6|d|p|P"_s);
}

/// 205 characters and a name of 50 just fit.
void tst_merge::grownTooLong()
{
    m_database->main.connection.execute(u"UPDATE PHONES SET PH_DESC = ?"_s, {QString(50, u'n')});
    set(u"E"_s, u"1 fits"_s, QString(205, u'v') + "$$N"_L1);
    set(u"E"_s, u"2 value"_s, QString(206, u'v') + "$$N"_L1);
    set(u"E"_s, u"3 description"_s, u"v"_s, QString(206, u'd') + "$$N"_L1);
    set(u"E"_s, u"4 $$N"_s, u"v"_s);
    set(u"E"_s, u"5"_s, u"v"_s);
    QStringList refused = stage(u"E"_s).split(u'\n');
    for (QString& line : refused)
        line = line.section(" - "_L1, 0, 0); // what follows are the engine's words
    QCOMPARE(refused.join(u'\n'), u"M201: 2 value\nM201: 3 description\nM201: 4 $$N"_s);
    QCOMPARE(staged(), "1 fits|d|"_L1 + QString(205, u'v') + QString(50, u'n') + "|E\n5|d|v|E"_L1);
}

void tst_merge::nextPhone_data()
{
    columns<QString, QString, QString, QString>("preset", "companyValue", "lines", "second");
    row("all the same", "e", "c", "", "1=e 2=c 4=Bob");
    row("macro in the company's value", "e", "$$P", "", "1=e 2=2000 4=Bob");
    row("macro in the default", "$$P", "c", "", "1=2000 2=c 4=Bob");
    row("collision", "e", "collides", "M200: 1", "1=e 2=c 4=Bob");
}

/// The phones of a run, one after the other: what they share, what is their own, and what only the first one
/// has.
void tst_merge::nextPhone()
{
    QFETCH(QString, preset);
    QFETCH(QString, companyValue);
    set(u"E"_s, u"1"_s, preset);
    set(u"C"_s, u"2"_s, companyValue == "collides"_L1 ? u"c"_s : companyValue);
    if (companyValue == "collides"_L1)
        addRow("COMPANY_PARAMETERS", "'ACME', 'GXP2000', '1', 'second'");
    set(u"P"_s, u"3"_s, u"first phone only"_s);
    set(u"P"_s, u"4"_s, u"$$N"_s);
    addRow("PHONES_PARAMETERS", "'ACME', 'GXP2000', '2000', '4', '$$N'");
    stage(u"ECP"_s);
    QCOMPARE(m_merged->size(), 4);

    m_database->main.phones.moveNext();
    QStringList lines;
    QStringList second;
    m_merged = m_staging->merge([&lines](const QString& text) { lines << text; });
    for (const Parameter& parameter : *m_merged)
        second << parameter.code + u'=' + parameter.value;
    QTEST(second.join(u' '), "second");
    QTEST(lines.join(u' '), "lines");
    QCOMPARE(staged().count(u'\n') + 1, 3);
}

} // namespace velmora

QTEST_GUILESS_MAIN(velmora::tst_merge)
#include "tst_merge.moc"

// What a phone gets from the rows of the database: in the staging table, and in memory wherever that can be
// done.
#include "generation/run_rows.h"
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
    void grownTooLong();
    void nextPhone_data();
    void nextPhone();
    void inMemory_data();
    void inMemory();

private:
    /// Puts a parameter into the catalogue of the GXP2000 and, at level "C" or "P", its value beside it.
    void set(const QString& level, const QString& code, const QString& value,
             const QString& description = u"d"_s);
    /// Adds a row to a table of values: the values of all columns, as they stand in a statement.
    void addRow(const QString& table, const QString& values);
    /// Merges the levels that the letters name for the first phone of ACME; the lines that this gives.
    QString stage(const QString& levels);
    /// Merges for the current phone in the table and, where that can be done, in memory; the lines that this
    /// gives.
    QString merge();
    /// What the merge gave, a line "code|description|value" each.
    QString merged() const { return textOf(*m_merged); }
    static QString textOf(const QList<MergedParameter>& parameters);

    std::optional<TestDatabase> m_database;
    Levels m_levels;
    std::optional<QList<MergedParameter>> m_merged;
    bool m_isDoubtful = false;
};

/// Besides the phone of the tests, others whose values are none of its business.
void tst_merge::init()
{
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

void tst_merge::addRow(const QString& table, const QString& values)
{
    m_database->run(u"INSERT INTO %1 VALUES(%2)"_s.arg(table, values));
}

QString tst_merge::stage(const QString& levels)
{
    m_database->selectPhones(u"ACME"_s);
    m_levels = {levels.contains(u'P'), levels.contains(u'C'), levels.contains(u'E')};
    return merge();
}

QString tst_merge::merge()
{
    QStringList lines;
    m_merged = mergeInTable(
        m_database->main, m_levels,
        {[&](const QString& text) { lines << text; },
         [this](const MacroExpansion& expansion) { m_database->main.showRefusedMacro(expansion); }});
    QTest::qCompare(m_database->value(u"SELECT COUNT(*) FROM EQ_TEMP"_s), u"0"_s, "", "", __FILE__, __LINE__);
    const Phone phone = m_database->main.currentPhone();
    RunRows rows(m_database->main, m_levels);
    const Merge inMemory = velmora::merge(rows.of(phone), phone);
    m_isDoubtful = !inMemory.doubtful.isEmpty();
    if (!m_isDoubtful)
        QTest::qCompare(textOf(inMemory.parameters), m_merged ? merged() : u"ended"_s, "", "", __FILE__,
                        __LINE__);
    return lines.join(u'\n');
}

QString tst_merge::textOf(const QList<MergedParameter>& parameters)
{
    QStringList rows;
    for (const MergedParameter& one : parameters)
        rows << one.parameter().code + u'|' + one.parameter().description + u'|' + one.parameter().value;
    return rows.join(u'\n');
}

/// Values and defaults of other companies, phones, models and levels don't step in; of levels, the first one
/// that sets a parameter wins.
void tst_merge::partition()
{
    set(u"E"_s, u"10"_s, u"e"_s, u"ten"_s);
    set(u"E"_s, u"1"_s, u"e"_s, u"one"_s);
    set(u"C"_s, u"2"_s, u"c"_s, u"two"_s);
    set(u"P"_s, u"4"_s, u"p"_s, u"four"_s);
    for (const QString& level : {u"C"_s, u"P"_s, u"D"_s})
        m_database->addParameter(u"GXP2000"_s, "no "_L1 + level, level, u"default"_s);
    m_database->addParameter(u"PAP2"_s, u"x"_s, u"E"_s, u"default"_s);
    addRow(u"COMPANY_PARAMETERS"_s, u"'ACME', 'PAP2', 'x', 'of another model'"_s);
    addRow(u"COMPANY_PARAMETERS"_s, u"'ZETA', 'GXP2000', 'no C', 'of another company'"_s);
    addRow(u"PHONES_PARAMETERS"_s, u"'ZETA', 'GXP2000', '1234', 'no P', 'of another company'"_s);
    addRow(u"PHONES_PARAMETERS"_s, u"'ACME', 'GXP2000', '2000', 'no P', 'of another phone'"_s);
    addRow(u"COMPANY_PARAMETERS"_s, u"'ACME', 'GXP2000', '10', '$$P'"_s);
    addRow(u"COMPANY_PARAMETERS"_s, u"'ACME', 'GXP2000', '1', 'refused'"_s);
    addRow(u"PHONES_PARAMETERS"_s, u"'ACME', 'GXP2000', '1234', '1', 'refused'"_s);
    addRow(u"PHONES_PARAMETERS"_s, u"'ACME', 'GXP2000', '1234', '2', 'refused'"_s);
    QCOMPARE(stage(u"ECP"_s), u"M200: 1\nM200: 10\nM200: 1\nM200: 2"_s);
    QCOMPARE(merged(), u"1|one|e\n10|ten|e\n2|two|c\n4|four|p"_s);
}

/// Phone values count whatever model they were entered for; the phone's own model describes them, and its
/// value wins, even where a macro stands in it. Of others, the first one does.
void tst_merge::valuesOfOtherModels()
{
    m_database->addParameter(u"GXP2000"_s, u"4"_s, u"P"_s, u"default"_s, u"own"_s);
    set(u"P"_s, u"5"_s, u"of $$P"_s, u"own"_s);
    m_database->addPhone(u"ZETA"_s, u"AAA"_s, u"77"_s, u"Another model"_s, u"4"_s);
    for (const QString& code : {u"4"_s, u"5"_s, u"Host"_s}) {
        m_database->addParameter(u"PAP2"_s, code, u"P"_s, u"v"_s, u"foreign"_s);
        m_database->addParameter(u"AAA"_s, code, u"P"_s, u"v"_s, u"foreign"_s);
        addRow(u"PHONES_PARAMETERS"_s, u"'ACME', 'PAP2', '1234', '%1', 'v of $$P'"_s.arg(code));
    }
    addRow(u"PHONES_PARAMETERS"_s, u"'ACME', 'AAA', '1234', 'Host', 'first'"_s);
    addRow(u"SYSTEM_PARAMETERS"_s, u"'$$DESC_EN', 'M266', 'M266: $$'"_s);
    QCOMPARE(stage(u"P"_s), u"M266: PAP2 - 5\nM200: Host"_s);
    QCOMPARE(merged(), u"4|own|v of 1234\n5|own|of 1234\nHost||first"_s);
}

void tst_merge::macros_data()
{
    columns<QString, QString, QString, QString>("name", "description", "value", "row");
    row("none", "O'Neil", "the user's $", "''d'Arc''s' $P", "the user's $|''d'Arc''s' $P");
    row("everywhere", "Ann", "of $$P", "$$P'$$P", "of 1234|1234'1234");
    row("no placeholder", "Ann", "?1", "a\\? :x %1 $$P", "?1|a\\? :x %1 1234");
    row("all apostrophes", "O'Neil's", "my $$N's", "it's $$N's", "my O'Neil's's|it's O'Neil's's");
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
    QCOMPARE(merged(), u"c|%1\ne|%1\nin code 1234|d|\np|%1"_s.replace("%1"_L1, row));
    QCOMPARE(m_database->user.shown, QStringList());
}

/// A refused macro stays as it is; the rest of its level is staged all the same.
void tst_merge::refusedMacros()
{
    set(u"E"_s, u"1"_s, u"$$N,1"_s);
    set(u"E"_s, u"2"_s, u"$$P"_s);
    stage(u"E"_s);
    QCOMPARE(merged(), u"1|d|$$N,1\n2|d|1234"_s);
    set(u"C"_s, u"3"_s, u"$$X"_s);
    set(u"C"_s, u"4"_s, u"$$P and more"_s);
    set(u"C"_s, u"5"_s, u"$$P"_s);
    stage(u"C"_s);
    QVERIFY(!m_merged);
    QCOMPARE(m_database->user.shown.join(u'\n'), u"M6: $$N,1\nM6: $$X\nM6: $$P and more"_s);
}

/// 205 characters and a name of 50 just fit.
void tst_merge::grownTooLong()
{
    m_database->main.connection.execute(u"UPDATE PHONES SET PH_DESC = ?"_s, {QString(50, u'n')});
    set(u"E"_s, u"1 fits"_s, QString(205, u'v') + "$$N"_L1);
    set(u"E"_s, u"2 value"_s, QString(206, u'v') + "$$N"_L1);
    set(u"E"_s, u"3 $$N"_s, u"v"_s);
    set(u"E"_s, u"4"_s, u"v"_s);
    // What follows "-" are the engine's words.
    const QString lines = stage(u"E"_s);
    QCOMPARE(QString(lines).remove(QRegularExpression(u" - .*"_s)), u"M201: 2 value\nM201: 3 $$N"_s);
    QCOMPARE(merged(), "1 fits|d|"_L1 + QString(205, u'v') + QString(50, u'n') + "\n4|d|v"_L1);
}

void tst_merge::nextPhone_data()
{
    columns<QString, QString, QString, QString>("preset", "companyCode", "companyValue", "second");
    row("all the same", "e", "2", "c", "1|d|e\n2|d|c\n4|d|Bob");
    row("macro in the company's value", "e", "2", "$$P", "1|d|e\n2|d|2000\n4|d|Bob");
    row("macro in the default", "$$P", "2", "c", "1|d|2000\n2|d|c\n4|d|Bob");
    row("collision", "e", "1", "c", "1|d|e\n4|d|Bob");
}

/// The phones of a run, one after the other: what they share, what is their own, and what only the first one
/// has.
void tst_merge::nextPhone()
{
    QFETCH(QString, preset);
    QFETCH(QString, companyCode);
    QFETCH(QString, companyValue);
    set(u"E"_s, u"1"_s, preset);
    if (companyCode == "2"_L1)
        m_database->addParameter(u"GXP2000"_s, u"2"_s, u"C"_s, u"default"_s, u"d"_s);
    addRow(u"COMPANY_PARAMETERS"_s, u"'ACME', 'GXP2000', '%1', '%2'"_s.arg(companyCode, companyValue));
    set(u"P"_s, u"3"_s, u"first phone only"_s);
    set(u"P"_s, u"4"_s, u"$$N"_s);
    addRow(u"PHONES_PARAMETERS"_s, u"'ACME', 'GXP2000', '2000', '4', '$$N'"_s);
    const QString lines = stage(u"ECP"_s);
    m_database->main.phones.moveNext();
    QCOMPARE(merge(), lines);
    QCOMPARE(lines, companyCode == "1"_L1 ? u"M200: 1"_s : QString());
    QTEST(merged(), "second");
}

void tst_merge::inMemory_data()
{
    // rows: "level code=value", joined with ";"
    columns<QString, bool>("rows", "isDoubtful");
    row("plain", "E 1=e;C 2=$$P;P 3=$$N", false);
    row("macro with an apostrophe", "P 1=it's $$N's", false);
    // The engines sort by code points, and the halves of one beyond 16 bits are smaller than some others.
    row("order of codes", "E \U0001F600=e;C \uFB01=c;P z=p", false);
    row("code with a macro", "E 1=e;E $$P=e", true);
    row("refused macro", "E 1=$$N,1", true);
    row("macro before a blank", "E 1=$$P or", true);
    row("two values", "E 1=e;C 1=c", true);
    row("just fits", "P 1="_L1 + QString(251, u'v') + "$$P"_L1, false);
    row("too long", "P 1="_L1 + QString(252, u'v') + "$$P"_L1, true);
}

/// What is merged in memory, and what is left to the table.
void tst_merge::inMemory()
{
    QFETCH(QString, rows);
    for (const QString& one : rows.split(u';')) {
        const QString code = one.section(u'=', 0, 0).mid(2);
        const QString value = one.section(u'=', 1);
        if (one.startsWith(u'C') && rows.contains("E "_L1 + code))
            addRow(u"COMPANY_PARAMETERS"_s, u"'ACME', 'GXP2000', '%1', '%2'"_s.arg(code, value));
        else
            set(one.first(1), code, value);
    }
    stage(u"ECP"_s);
    QTEST(m_isDoubtful, "isDoubtful");
}

} // namespace velmora

QTEST_GUILESS_MAIN(velmora::tst_merge)
#include "tst_merge.moc"

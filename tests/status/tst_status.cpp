// How the files of phones stand to what would be written now, and where values come from.
#include "files/whole_file.h"
#include "generation/model_requests.h"
#include "status/allowed_values.h"
#include "status/status_lines.h"
#include "support/rows.h"
#include "support/test_database.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace velmora {

class tst_status : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void states_data();
    void states();
    void stops();
    void explains_data();
    void explains();
    void allowedValues_data();
    void allowedValues();

private:
    QString path(const QString& name) const { return m_out->filePath(name); }
    /// Does what the words say: to a file ("rm", "cut", "mv", "write"), or to the database.
    void change(const QString& change);
    /// What is told of all phones of ACME but that a file is current; fields apart by "|".
    QString told(const PhoneChoice& choice = {u"ACME"_s});

    std::optional<TestDatabase> m_database;
    std::optional<QTemporaryDir> m_out;
};

/// Four phones whose files have just been written, and one that loads none.
void tst_status::init()
{
    m_database.emplace();
    m_out.emplace();
    m_database->addPhone(u"ACME"_s, u"PAP2"_s, u"101"_s, u"Ann"_s, u"000B82000001"_s);
    m_database->addPhone(u"ACME"_s, u"PAP2"_s, u"102"_s, u"Bob"_s, u"000B82000002"_s);
    m_database->addPhone(u"ACME"_s, u"GXP2000"_s, u"201"_s, u"Cid"_s, u"000B82000003"_s);
    m_database->addPhone(u"ACME"_s, u"F1000"_s, u"301"_s, u"Dot"_s, u"000B82000004"_s);
    m_database->addPhone(u"ACME"_s, u"NONE"_s, u"401"_s, u"Eve"_s, u""_s);
    m_database->addPhone(u"ZETA"_s, u"PAP2"_s, u"101"_s, u"Zoe"_s, u"000B82000009"_s);
    m_database->run(u"INSERT INTO TYPES VALUES('N', 'x')"_s);
    for (const QString& model : {u"PAP2"_s, u"GXP2000"_s, u"F1000"_s}) {
        m_database->addParameter(model, u"1"_s, u"E"_s, u"one"_s);
        m_database->addParameter(model, u"2"_s, u"C"_s, u""_s);
        m_database->run("INSERT INTO COMPANY_PARAMETERS VALUES('ACME', '"_L1 + model + "', '2', 'x$$P')"_L1);
        for (const QString& company : {u"ACME"_s, u"ZETA"_s})
            m_database->run("INSERT INTO SYSTEM_PARAMETERS VALUES('"_L1 + company + model +
                            "', '$$GENPATH', '"_L1 + m_out->path() + "')"_L1);
    }
    for (const GenerationRequest& request :
         requestsFor(m_database->main, {u"ACME"_s}) + requestsFor(m_database->main, {u"ZETA"_s}))
        Generate(m_database->main, request, {[](const QString&) {}, [](qsizetype, qsizetype) {}});
    m_database->user.shown.clear(); // there is no folder for the phone that loads no file
}

void tst_status::change(const QString& change)
{
    const QStringList words = change.split(u' ');
    if (words[0] == "rm"_L1)
        QVERIFY(QFile::remove(path(words[1])));
    else if (words[0] == "cut"_L1)
        QVERIFY(QFile::resize(path(words[1]), words[2].toInt()));
    else if (words[0] == "mv"_L1)
        QVERIFY(QFile::rename(path(words[1]), path(words[2])));
    else if (words[0] == "mkdir"_L1)
        QVERIFY(QDir().mkdir(path(words[1])));
    else if (words[0] == "write"_L1)
        writeWholeFile(path(words[1]), words[2].toUtf8());
    else if (!change.isEmpty())
        m_database->run(change);
}

QString tst_status::told(const PhoneChoice& choice)
{
    QStringList lines;
    const auto each = [&lines](const PhoneStatus& status, const QList<Difference>& differences) {
        if (status.state == FileState::Current && status.lastRestart.isEmpty())
            return;
        lines << lineOf(status) + (status.remark.isEmpty() ? QString() : " "_L1 + status.remark.trimmed());
        for (const Difference& difference : differences)
            lines << lineOf(difference);
    };
    if (!comparePhones(m_database->main, requestsFor(m_database->main, choice), each,
                       [](qsizetype, qsizetype) {}))
        lines << u"stopped"_s;
    return lines.join(u'\n').replace(u'\t', u'|');
}

void tst_status::states_data()
{
    columns<QString, QString>("changes", "expected");
    row("nothing", "", "");
    row("company value", "UPDATE COMPANY_PARAMETERS SET PA_VALUE = 'y' WHERE EQ_CODE = 'PAP2'",
        "101|PAP2|000B82000001.txt|different|1|\n|2|x101|y\n102|PAP2|000B82000002.txt|different|1|\n|2|x102|"
        "y");
    row("value taken away", "DELETE FROM COMPANY_PARAMETERS WHERE EQ_CODE = 'F1000'",
        "301|F1000|ut000B82000004.ini|different|1|\n|2|x301|(absent)");
    row("value added",
        "INSERT INTO EQUIPMENT_PARAMETERS VALUES('PAP2', '3', 'd', 'P', '', 'T', '');"
        "INSERT INTO PHONES_PARAMETERS VALUES('ACME', 'PAP2', '102', '3', 'a	b')",
        "102|PAP2|000B82000002.txt|different|1|\n|3|(absent)|a\\tb");
    row("deleted", "rm 000B82000001.txt", "101|PAP2|000B82000001.txt|missing|0|");
    row("cut off", "cut ut000B82000004.ini 9",
        "301|F1000|ut000B82000004.ini|unreadable|0| The file is cut off.");
    row("foreign", "write 000B82000001.txt <html>",
        "101|PAP2|000B82000001.txt|unreadable|0| This is not a configuration file of the phone's model.");
    row("no file", "rm cfg000B82000003;mkdir cfg000B82000003",
        "201|GXP2000|cfg000B82000003|unreadable|0| This is no file, or one of more than 16 MiB.");
    row("renamed", "mv cfg000B82000003 CFG000b82000033",
        "201|GXP2000|cfg000B82000003|missing|0|\n-|-|CFG000b82000033|orphan|0|");
    row("another address", "UPDATE PHONES SET PH_MAC = '000B8200000A' WHERE PH_CODE = '201'",
        "201|GXP2000|cfg000B8200000A|missing|0|\n-|-|cfg000B82000003|orphan|0|");
    row("another company's phone gone", "DELETE FROM PHONES WHERE CO_CODE = 'ZETA'",
        "-|-|000B82000009.txt|orphan|0|");
    row("no name of a file", "UPDATE PHONES SET PH_MAC = '../x' WHERE PH_CODE = '301'",
        "301|F1000|ut../x.ini|missing|0| No file: its name would hold / or \\: ut../x.ini\n"
        "-|-|ut000B82000004.ini|orphan|0|");
    row("no folder", "UPDATE SYSTEM_PARAMETERS SET SY_VALUE = '/no/such' WHERE SY_CODE = 'ACMEF1000'",
        "301|F1000|ut000B82000004.ini|no folder|0|\n-|-|ut000B82000004.ini|orphan|0|");
    row("no parameters",
        "DELETE FROM COMPANY_PARAMETERS WHERE EQ_CODE = 'F1000';"
        "DELETE FROM EQUIPMENT_PARAMETERS WHERE EQ_CODE = 'F1000';rm ut000B82000004.ini",
        "301|F1000|ut000B82000004.ini|no file|0|");
    // Nothing would be written now: all of the file is too much.
    row("unknown macro", "UPDATE COMPANY_PARAMETERS SET PA_VALUE = 'x$$Z' WHERE EQ_CODE = 'F1000'",
        "301|F1000|ut000B82000004.ini|different|2| M6: $$Z\n|1|one|(absent)\n|2|x301|(absent)");
    row("level left out", "INSERT INTO SYSTEM_PARAMETERS VALUES('ACMEGXP2000', '$$DEFGEN', '101')",
        "201|GXP2000|cfg000B82000003|different|1|\n|2|x201|(absent)");
    row("restarted",
        "INSERT INTO SYSTEM_PARAMETERS VALUES('$$RESTART', 'ACME 102', '2026-01-31T10:00:00Z -')",
        "102|PAP2|000B82000002.txt|current|0|2026-01-31T10:00:00Z");
}

void tst_status::states()
{
    QFETCH(QString, changes);
    for (const QString& each : changes.split(u';'))
        change(each);
    QString lines = told();
    QVERIFY(lines.contains("401|NONE||no file|0|"_L1));
    QTEST(lines.remove("\n401|NONE||no file|0|"_L1)
              .remove("401|NONE||no file|0|\n"_L1)
              .remove("401|NONE||no file|0|"_L1),
          "expected");
    QVERIFY(m_database->user.shown.isEmpty()); // and no box for each of 20,000 phones
}

void tst_status::stops()
{
    int phones = 0;
    const bool wentThrough = comparePhones(
        m_database->main, requestsFor(m_database->main, {u"ACME"_s}),
        [&](const PhoneStatus&, const QList<Difference>&) { m_database->main.stopFlag = ++phones == 2; },
        [](qsizetype, qsizetype) {});
    QVERIFY(!wentThrough);
    QCOMPARE(phones, 2);
    change(u"rm 000B82000002.txt"_s);
    QCOMPARE(told({u"ACME"_s, {}, {}, {}, QStringList{u"101"_s, u"301"_s}}), QString());
    QCOMPARE(told({u"ACME"_s, u"PAP2"_s, u"102"_s}), u"102|PAP2|000B82000002.txt|missing|0|"_s);
}

void tst_status::explains_data()
{
    // of parameter 2 of phone 101 of ACME, which the company sets to "x$$P", unless it is another
    columns<QString, QString, QString>("change", "parameter", "expected");
    row("default", "", "1", "1|one|E|default|one|");
    row("macro", "", "2", "2|x101|C|company|x$$P|");
    row("absent", "DELETE FROM COMPANY_PARAMETERS", "2", "2||C|absent||");
    row("company value of level E", "INSERT INTO COMPANY_PARAMETERS VALUES('ACME', 'PAP2', '1', 'c')", "1",
        "1|one|E|default|one|The company's value plays no part: c");
    row("equal to what plays a part", "INSERT INTO COMPANY_PARAMETERS VALUES('ACME', 'PAP2', '1', 'one')",
        "1", "1|one|E|default|one|The company's value plays no part: one");
    row("phone's value", "INSERT INTO PHONES_PARAMETERS VALUES('ACME', 'PAP2', '101', '2', 'p')", "2",
        "2|x101|C|company|x$$P|The phone's value plays no part: p");
    row("moved", "INSERT INTO PHONES_PARAMETERS VALUES('ACME', 'F1000', '101', '7', 'p')", "7",
        "7|p||phone|p|");
    row("another model's value", "INSERT INTO PHONES_PARAMETERS VALUES('ACME', 'F1000', '101', '2', 'p')",
        "2", "2|x101|C|company|x$$P|A value for another model plays no part: F1000 - p");
    row("refused macro", "UPDATE COMPANY_PARAMETERS SET PA_VALUE = '$$P,a'", "2",
        "2|$$P,a|C|company|$$P,a|M6: $$P,a");
    row("unknown macro", "UPDATE COMPANY_PARAMETERS SET PA_VALUE = '$$Z'", "2", "2||C|company|$$Z|M6: $$Z");
    row("not allowed", "UPDATE EQUIPMENT_PARAMETERS SET PA_VALUES = '0=No,1=Yes'", "2",
        "2|x101|C|company|x$$P|Not one of the allowed values: 0=No,1=Yes");
    row("no number", "UPDATE EQUIPMENT_PARAMETERS SET TY_CODE = 'N'", "2",
        "2|x101|C|company|x$$P|Not a number");
    row("characters", "UPDATE COMPANY_PARAMETERS SET PA_VALUE = 'a<Ω&Ωb😀'", "2",
        "2|a<?&?b?|C|company|a<Ω&Ωb😀|The file can't hold these characters: < Ω & 😀");
    row("level left out", "INSERT INTO SYSTEM_PARAMETERS VALUES('ACMEPAP2', '$$DEFGEN', '101')", "2",
        "2||C|absent||The level of this value is not included: x$$P");
}

void tst_status::explains()
{
    QFETCH(QString, change);
    QFETCH(QString, parameter);
    this->change(u"INSERT INTO EQUIPMENT_PARAMETERS VALUES('F1000', '7', 'd', 'P', '', 'T', '')"_s);
    this->change(change);
    const Phone phone{u"ACME"_s, u"PAP2"_s, u"101"_s, u"Ann"_s, u"000B82000001"_s};
    m_database->selectPhones(u"ZETA"_s);
    QStringList lines;
    for (const ExplainedParameter& each : explain(m_database->main, phone))
        if (each.code == parameter)
            lines << lineOf(each).replace(u'\t', u'|');
    QTEST(lines.join(u'\n'), "expected");
    // What another run works on stays as it was.
    QCOMPARE(m_database->main.currentPhone().company, u"ZETA"_s);
    QVERIFY(!m_database->main.stopFlag && m_database->user.shown.isEmpty());
}

void tst_status::allowedValues_data()
{
    columns<QString, QString, QString, bool>("value", "type", "allowed", "expected");
    row("anything", "x", "T", "", true);
    row("code", "1", "L", "0=No,1=Yes", true);
    row("what a code stands for", "Yes", "L", "0=No,1=Yes", false);
    row("plain", "Yes", "B", "Yes,No", true);
    row("plain with a dash", "1-line", "L", "none,1-line", true);
    row("in a range", "255", "N", "0-255", true);
    row("beyond a range", "256", "N", "0-255", false);
    row("negative range", "-3", "N", "-6-6", true);
    row("decimals", ".15", "N", "0.1-0.4", true);
    row("no number", "x", "N", "", false);
    row("two points", "1.2.3", "N", "", false);
    row("empty", "", "N", "1-2", true);
}

void tst_status::allowedValues()
{
    QFETCH(QString, value);
    QFETCH(QString, type);
    QFETCH(QString, allowed);
    QTEST(isAllowed(value, allowed) && isOfType(value, type), "expected");
}

} // namespace velmora

QTEST_GUILESS_MAIN(velmora::tst_status)
#include "tst_status.moc"

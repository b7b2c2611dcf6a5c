// The lookups that every part uses: texts, messages, parameter values, macros, folders, menu rights.
#include "common/texts/refusal.h"
#include "mainwindow/menu.h"
#include "support/rows.h"
#include "support/test_database.h"

#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace velmora;

class tst_lookups : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void findsTexts();
    void showsMessages();
    void resolvesParameterValues_data();
    void resolvesParameterValues();
    void expandsMacros_data();
    void expandsMacros();
    void quotesReplacementsInStatements();
    void reportsRefusedMacros();
    void choosesFolders();
    void saysWhyARecordIsRefused_data();
    void saysWhyARecordIsRefused();
    void grantsMenuItems_data();
    void grantsMenuItems();
};

void tst_lookups::findsTexts()
{
    TestDatabase database;
    database.run(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$DESC_FR', 'M8', 'Aucun poste')"_s);
    QCOMPARE(database.main.GetDescription(u"M8"_s), u"M8: $$"_s);
    QCOMPARE(database.main.GetDescription(u"M8"_s, u"FR"_s), u"Aucun poste"_s);
    QCOMPARE(database.main.GetDescription(u"M99"_s), QString());
    database.main.language = u"FR"_s;
    QCOMPARE(database.main.GetDescription(u"M8"_s), u"Aucun poste"_s);
}

void tst_lookups::showsMessages()
{
    TestDatabase database;
    database.run(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$DESC_EN', 'X', 'Phone $$ missing, $$')"_s);
    bool show = false;
    QCOMPARE(database.main.GetMessage(u"X"_s, u"42"_s, show), u"Phone 42 missing, 42"_s);
    QVERIFY(!show);
    QVERIFY(database.user.shown.isEmpty());
    QCOMPARE(database.main.GetMessage(u"X"_s, u"a$$b"_s, show), u"Phone a$$b missing, a$$b"_s);

    QCOMPARE(database.main.GetMessage(u"M99"_s, {}, show), u"Message Not Found : M99 Language : EN"_s);
    QVERIFY(show);
    QCOMPARE(database.user.shown, QStringList(u"Message Not Found : M99 Language : EN"_s));
    database.main.showMessage(u"X"_s, u"7"_s);
    QCOMPARE(database.user.shown.last(), u"Phone 7 missing, 7"_s);
}

void tst_lookups::resolvesParameterValues_data()
{
    columns<QString, QString, QStringList>("code", "value", "shown");
    row("default, macro untouched", "e", "default $$P", QStringList());
    row("company", "c", "company 1234", QStringList());
    row("phone", "p", "phone O'Neil", QStringList());
    row("not in the catalogue", "none", QString(), QStringList(u"M1: none"_s));
    row("unknown level", "x", QString(), QStringList(u"M2: x"_s));
    row("device level", "d", QString(), QStringList(u"M3: d"_s));
    row("no phone value, though there is a default", "p2", QString(), QStringList(u"M4: p2"_s));
    row("no company value", "c2", QString(), QStringList(u"M5: c2"_s));
}

void tst_lookups::resolvesParameterValues()
{
    TestDatabase database;
    database.addPhone(u"C1"_s, u"PAP2"_s, u"1234"_s, u"O'Neil"_s, u"000000000001"_s);
    database.run(u"INSERT INTO LEVELS VALUES('Z', 'x')"_s);
    for (const auto& [code, level] : {std::pair(u"e"_s, u"E"_s),
                                      {u"c"_s, u"C"_s},
                                      {u"c2"_s, u"C"_s},
                                      {u"p"_s, u"P"_s},
                                      {u"p2"_s, u"P"_s},
                                      {u"d"_s, u"D"_s},
                                      {u"x"_s, u"Z"_s}})
        database.addParameter(u"PAP2"_s, code, level, u"default $$P"_s);
    database.run(u"INSERT INTO COMPANY_PARAMETERS VALUES('C1', 'PAP2', 'c', 'company $$P')"_s);
    database.run(u"INSERT INTO PHONES_PARAMETERS VALUES('C1', 'PAP2', '1234', 'p', 'phone $$N')"_s);
    database.selectPhones(u"C1"_s);

    QFETCH(QString, code);
    QTEST(database.main.GetParameterValue(code), "value");
    QTEST(database.user.shown, "shown");
    QCOMPARE(database.user.details, QStringList(database.user.shown.size(), u"1234 - O'Neil"_s));
}

void tst_lookups::expandsMacros_data()
{
    columns<QString, QString, QString, bool>("value", "text", "refused", "unknown");
    const auto good = [](const char* name, const QString& value, const QString& text) {
        row(name, value, text, QString(), false);
    };
    const auto bad = [](const char* name, const QString& value, const QString& token, bool unknown) {
        row(name, value, value, token, unknown);
    };
    good("none", u"a $ b"_s, u"a $ b"_s);
    good("code", u"ext$$P"_s, u"ext1234"_s);
    good("description", u"$$N"_s, u"Eva $$N O'Neil 😀x"_s);
    good("a character beyond 16 bits", u"$$N,14,3"_s, u"l 😀"_s);
    good("after it", u"$$N,17,2"_s, u"x"_s);
    good("range", u"$$P,2,2"_s, u"23"_s);
    good("range beyond the end", u"$$P,3,9"_s, u"34"_s);
    good("range after the end", u"$$P,5,1"_s, u""_s);
    good("length 0", u"$$P,1,0"_s, u""_s);
    good("ends at a blank", u"$$P and on"_s, u"1234 and on"_s);
    good("ends at a quote before a blank", u"a$$P' and b"_s, u"a1234' and b"_s);
    good("keeps the quotes around it", u"'$$P'"_s, u"'1234'"_s);
    good("repeated", u"$$P $$P x$$P"_s, u"1234 1234 x1234"_s);
    good("another macro is not reached", u"$$P $$N"_s, u"1234 $$N"_s);
    bad("unknown name", u"a $$X b"_s, u"$$X"_s, true);
    bad("lower case", u"$$p"_s, u"$$p"_s, true);
    bad("runs to the end", u"$$P-1"_s, u"$$P-1"_s, true);
    bad("runs to a quote, past a blank", u"$$P b'"_s, u"$$P b"_s, true);
    bad("bare", u"cost: $$"_s, u"$$"_s, true);
    bad("one argument", u"$$P,2"_s, u"$$P,2"_s, false);
    bad("empty argument", u"$$P,2,"_s, u"$$P,2,"_s, false);
    bad("no number", u"$$P,a,2"_s, u"$$P,a,2"_s, false);
    bad("start before 1", u"$$P,0,2"_s, u"$$P,0,2"_s, false);
    bad("negative length", u"$$P,1,-1"_s, u"$$P,1,-1"_s, false);
    bad("three arguments", u"$$P,1,2,3"_s, u"$$P,1,2,3"_s, false);
    bad("unknown name with a bad argument", u"$$X,1"_s, u"$$X,1"_s, false);
}

void tst_lookups::expandsMacros()
{
    // The description holds a macro itself: the expansion must end all the same.
    const Phone phone = {u"C1"_s, u"PAP2"_s, u"1234"_s, u"Eva $$N O'Neil 😀x"_s, u""_s};
    QFETCH(QString, value);
    const MacroExpansion expansion = expandMacros(value, phone, MacroContext::Value);
    QTEST(expansion.text, "text");
    QTEST(expansion.refusedToken, "refused");
    QTEST(expansion.unknownName, "unknown");
}

void tst_lookups::quotesReplacementsInStatements()
{
    const Phone phone = {u"C1"_s, u"PAP2"_s, u"12"_s, u"O'Neil"_s, u""_s};
    QCOMPARE(expandMacros(u"VALUES('a $$N', 'b')"_s, phone, MacroContext::Statement).text,
             u"VALUES('a O''Neil', 'b')"_s);
    // Cut first, doubled afterwards: otherwise half a quote could be left.
    QCOMPARE(expandMacros(u"VALUES('$$N,1,2', 'b')"_s, phone, MacroContext::Statement).text,
             u"VALUES('O''', 'b')"_s);
}

void tst_lookups::reportsRefusedMacros()
{
    TestDatabase database;
    database.addPhone(u"C1"_s, u"PAP2"_s, u"12"_s, u"one"_s, u"000000000001"_s);
    database.selectPhones(u"C1"_s);
    QCOMPARE(database.main.ExpandMacros(u"$$P,x,1"_s), u"$$P,x,1"_s);
    QVERIFY(!database.main.stopFlag);
    QCOMPARE(database.main.ExpandMacros(u"a $$X"_s), u"a $$X"_s);
    QVERIFY(database.main.stopFlag);
    QCOMPARE(database.user.shown, QStringList({u"M6: $$P,x,1"_s, u"M6: $$X"_s}));
}

void tst_lookups::choosesFolders()
{
    TestDatabase database;
    QCOMPARE(database.main.BrowseFolder(u"/start"_s), u"/start"_s);
    database.user.folderAnswer = u"/chosen"_s;
    QCOMPARE(database.main.BrowseFolder(u"/start"_s), u"/chosen"_s);
    database.user.folderAnswer = u""_s;
    QCOMPARE(database.main.BrowseFolder({}), QString());
    QCOMPARE(database.user.proposals, QStringList({u"/start"_s, u"/start"_s, QDir::currentPath()}));
}

void tst_lookups::saysWhyARecordIsRefused_data()
{
    // The record's values, where they are known, and the reason in French.
    columns<QString, QString, QString>("statement", "record", "reason");
    row("key", "INSERT INTO COMPANY VALUES('C1', 'x')", "C1 x", "Une fiche avec cette clé existe déjà.");
    row("used", "DELETE FROM RANGES WHERE CO_CODE = 'C1' AND PH_CODE = '101'", "C1 101",
        "Elle est encore utilisée dans : Postes. Supprimez d'abord ces fiches.");
    row("used, by something", "DELETE FROM COMPANY", "", "Elle est encore utilisée dans : ");
    row("a key of two fields", "INSERT INTO PHONES VALUES('C1', '999', 'PAP2', 'x', 'y')", "C1 999 PAP2 x y",
        "Il n'y a pas de fiche dans la table Plages pour CO_CODE C1, PH_CODE 999.");
    row("the shorter key of two", "INSERT INTO PHONES VALUES('C9', '101', 'PAP2', 'x', 'y')",
        "C9 101 PAP2 x y", "Il n'y a pas de fiche dans la table COMPANY pour CO_CODE C9.");
    row("changed", "update PHONES SET EQ_CODE = 'nix' WHERE CO_CODE = 'C1'", "C1 101 nix x y",
        "Il n'y a pas de fiche dans la table Modèles pour Modèle nix.");
    row("the only reference", "INSERT INTO PHONE_BOOK VALUES('C1', '1', 'n', '?', '', '', '', '')", "",
        "Il n'y a pas de fiche dans la table CREATION_FLAGS pour BK_FLAG.");
    row("too long", "INSERT INTO EQUIPMENT VALUES('12345678901', 'd', 'm')", "",
        "Le champ Modèle contient au plus 10 caractères.");
    row("too long, staged", "INSERT INTO EQ_TEMP VALUES('p', 'd', 'v', 'EE')", "",
        "Le champ LE_CODE contient au plus 1 caractères.");
    row("required key", "INSERT INTO COMPANY VALUES(NULL, 'x')", "", "Le champ CO_CODE est obligatoire.");
    row("required", "INSERT INTO EQUIPMENT VALUES('E', NULL, 'x')", "",
        "Le champ Description est obligatoire.");
    row("anything else", "INSERT INTO NOWHERE VALUES('x')", "", "La base de données a refusé : ");
}

void tst_lookups::saysWhyARecordIsRefused()
{
    TestDatabase database;
    database.main.language = u"FR"_s;
    database.addPhone(u"C1"_s, u"PAP2"_s, u"101"_s, u"x"_s, u"y"_s);
    for (const auto& [code, text] : {std::pair(u"EQ_CODE"_s, u"Modèle"_s),
                                     {u"EQ_DESC"_s, u"Description"_s},
                                     {u"FPARAMETERS_PHONES"_s, u"Postes"_s},
                                     {u"FPARAMETERS_RANGES"_s, u"Plages"_s},
                                     {u"FPARAMETERS_EQUIPMENT"_s, u"Modèles"_s}})
        database.main.connection.execute(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$DESC_FR', ?, ?)"_s,
                                         {code, text});
    QFETCH(QString, statement);
    QFETCH(QString, record);
    QFETCH(QString, reason);
    QString told;
    try {
        database.run(statement);
    } catch (const DatabaseError& error) {
        told = refusalReason(database.main, error, record.split(u' ', Qt::SkipEmptyParts));
    }
    QVERIFY2(told.startsWith(reason), qPrintable(told));
}

void tst_lookups::grantsMenuItems_data()
{
    columns<QStringList, bool, bool>("rows", "granted", "reachable");
    row("no rows", QStringList(), false, false);
    row("everybody everything", QStringList(u"'*', '*'"_s), true, true);
    row("everybody, whatever the value", QStringList(u"'*', 'Reboot'"_s), true, true);
    row("the item to everybody", QStringList(u"'GenConf', 'x'"_s), true, false);
    row("the user everything", QStringList(u"'JDOE', '*'"_s), true, true);
    row("the user the item only", QStringList(u"'JDOE', 'GenConf'"_s), true, false);
    row("the user the item, everybody the submenu",
        QStringList({u"'JDOE', 'GenConf'"_s, u"'Generate', ''"_s}), true, true);
    row("another user", QStringList(u"'ASMITH', '*'"_s), false, false);
    row("another case", QStringList(u"'JDOE', 'GENCONF'"_s), false, false);
}

void tst_lookups::grantsMenuItems()
{
    TestDatabase database;
    QFETCH(QStringList, rows);
    for (const QString& row : rows)
        database.run("INSERT INTO SYSTEM_PARAMETERS VALUES('AUTHM', "_L1 + row + u')');
    QTEST(hasMenuRight(database.main, u"GenConf"_s), "granted");
    QTEST(canReachMenuItem(database.main, u"GenConf"_s), "reachable");
}

QTEST_GUILESS_MAIN(tst_lookups)
#include "tst_lookups.moc"

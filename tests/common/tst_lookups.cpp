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
    MMain& main = database.main;
    database.run(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$DESC_EN', 'X', 'Phone $$ missing, $$'), "
                 "('$$DESC_FR', 'X', 'Aucun poste')"_s);
    QCOMPARE(main.GetDescription(u"X"_s, u"FR"_s), u"Aucun poste"_s);
    QCOMPARE(main.GetDescription(u"M99"_s), QString());

    bool show = false;
    QCOMPARE(main.GetMessage(u"X"_s, u"a$$b"_s, show), u"Phone a$$b missing, a$$b"_s);
    QVERIFY(!show);
    QCOMPARE(main.GetMessage(u"M99"_s, {}, show), u"Message Not Found : M99 Language : EN"_s);
    QVERIFY(show);
    main.language = u"FR"_s;
    main.showMessage(u"X"_s, u"7"_s);
    QCOMPARE(database.user.shown,
             QStringList({u"Message Not Found : M99 Language : EN"_s, u"Aucun poste"_s}));
}

void tst_lookups::resolvesParameterValues_data()
{
    columns<QString, QString, QStringList>("code", "value", "shown");
    row("default, macro untouched", "E", "default $$P", QStringList());
    row("company", "C", "company 1234", QStringList());
    row("phone", "P", "phone O'Neil", QStringList());
    row("not in the catalogue", "none", "", QStringList(u"M1: none"_s));
    row("unknown level", "Z", "", QStringList(u"M2: Z"_s));
    row("device level", "D", "", QStringList(u"M3: D"_s));
    row("no phone value, though there is a default", "P2", "", QStringList(u"M4: P2"_s));
    row("no company value", "C2", "", QStringList(u"M5: C2"_s));
}

void tst_lookups::resolvesParameterValues()
{
    TestDatabase database;
    database.addPhone(u"C1"_s, u"PAP2"_s, u"1234"_s, u"O'Neil"_s, u"000000000001"_s);
    database.run(u"INSERT INTO LEVELS VALUES('Z', 'x')"_s);
    for (const QString& parameter : {u"E"_s, u"C"_s, u"C2"_s, u"P"_s, u"P2"_s, u"D"_s, u"Z"_s})
        database.addParameter(u"PAP2"_s, parameter, parameter.first(1), u"default $$P"_s);
    database.run(u"INSERT INTO COMPANY_PARAMETERS VALUES('C1', 'PAP2', 'C', 'company $$P')"_s);
    database.run(u"INSERT INTO PHONES_PARAMETERS VALUES('C1', 'PAP2', '1234', 'P', 'phone $$N')"_s);
    database.selectPhones(u"C1"_s);

    QFETCH(QString, code);
    QTEST(database.main.GetParameterValue(code), "value");
    QTEST(database.user.shown, "shown");
    QCOMPARE(database.user.details, QStringList(database.user.shown.size(), u"1234 - O'Neil"_s));
}

void tst_lookups::expandsMacros_data()
{
    // What the value becomes, and what is refused: a token as it stands, or one of an unknown name.
    columns<QString, QString, QString, bool>("value", "text", "refused", "unknown");
    row("code", "ext$$P", "ext1234", "", false);
    row("description", "$$N", "Eva $$N O'Neil 😀x", "", false);
    row("a character beyond 16 bits", "$$N,14,3", "l 😀", "", false);
    row("range after the end", "$$P,5,1", "", "", false);
    row("length 0", "$$P,1,0", "", "", false);
    row("ends at a blank", "$$P and on", "1234 and on", "", false);
    row("ends at a quote before a blank", "a$$P,2,2' and b", "a23' and b", "", false);
    row("repeated", "$$P $$P x$$P", "1234 1234 x1234", "", false);
    row("another macro is not reached", "$$P $$N", "1234 $$N", "", false);
    row("lower case", "$$p", "$$p", "$$p", true);
    row("runs to a quote, past a blank", "$$P b'", "$$P b'", "$$P b", true);
    row("one argument", "$$P,2", "$$P,2", "$$P,2", false);
    row("no number", "$$P,a,2", "$$P,a,2", "$$P,a,2", false);
    row("no length", "$$P,2,", "$$P,2,", "$$P,2,", false);
    row("start before 1", "$$P,0,2", "$$P,0,2", "$$P,0,2", false);
    row("negative length", "$$P,1,-1", "$$P,1,-1", "$$P,1,-1", false);
    row("three arguments", "$$P,1,2,3", "$$P,1,2,3", "$$P,1,2,3", false);
    row("unknown name with a bad argument", "$$X,1", "$$X,1", "$$X,1", false);
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
    database.run(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$DESC_FR', 'EQ_CODE', 'Modèle'), "
                 "('$$DESC_FR', 'EQ_DESC', 'Description'), ('$$DESC_FR', 'FPARAMETERS_PHONES', 'Postes'), "
                 "('$$DESC_FR', 'FPARAMETERS_RANGES', 'Plages'), "
                 "('$$DESC_FR', 'FPARAMETERS_EQUIPMENT', 'Modèles')"_s);
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
    columns<QString, bool, bool>("rights", "granted", "reachable");
    row("everybody, whatever the value", "('AUTHM', '*', 'Reboot')", true, true);
    row("the item to everybody", "('AUTHM', 'GenConf', 'x')", true, false);
    row("the user everything", "('AUTHM', 'JDOE', '*')", true, true);
    row("the user the item, everybody the submenu", "('AUTHM', 'JDOE', 'GenConf'), ('AUTHM', 'Generate', '')",
        true, true);
    row("another user", "('AUTHM', 'ASMITH', '*')", false, false);
    row("another case", "('AUTHM', 'JDOE', 'GENCONF')", false, false);
}

void tst_lookups::grantsMenuItems()
{
    TestDatabase database;
    QFETCH(QString, rights);
    database.run("INSERT INTO SYSTEM_PARAMETERS VALUES"_L1 + rights);
    QTEST(hasMenuRight(database.main, u"GenConf"_s), "granted");
    QTEST(canReachMenuItem(database.main, u"GenConf"_s), "reachable");
}

QTEST_GUILESS_MAIN(tst_lookups)
#include "tst_lookups.moc"

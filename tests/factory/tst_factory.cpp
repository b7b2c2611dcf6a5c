// The data files and the factory database made from them.
#include "factory/factory_data.h"
#include "files/ansi.h"
#include "files/file_error.h"
#include "files/separated_values.h"
#include "files/whole_file.h"
#include "mainwindow/menu.h"
#include "modules/modules.h"
#include "support/query.h"
#include "support/rows.h"

#include <QDirIterator>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <stdexcept>

using namespace Qt::StringLiterals;
using namespace velmora;

class tst_factory : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void namesTheBrokenFile();
    void hasTheTextsOfEveryCodeThatTheSourceUses();
    void saysTheSameInEveryLanguage();
    void opensEveryControlByAKeyOfItsOwn();
    void listsOnlyTablesAndColumnsThatExist();
    void listsTheModulesThatExist();
    void pointsRebootRowsAtParameters();

private:
    QSet<QString> codes(const QString& language);
    QStringList rows(const QString& query) { return firstFields(m_factory, query); }

    Connection m_factory;
};

void tst_factory::initTestCase()
{
    m_factory.open(u"Provider=SQLite;Data Source=" VELMORA_SHARE "/factory.db"_s, OpenMode::ReadOnly);
}

QSet<QString> tst_factory::codes(const QString& language)
{
    const QStringList found =
        rows("SELECT SY_SUBCODE FROM SYSTEM_PARAMETERS WHERE SY_VALUE <> '' AND SY_CODE = '$$DESC_"_L1 +
             language + u'\'');
    return {found.begin(), found.end()};
}

void tst_factory::namesTheBrokenFile()
{
    const QTemporaryDir folder;
    const auto failingFile = [&folder] {
        try {
            readFactoryData(folder.path());
        } catch (const FileError& error) {
            return error.path().section(u'/', -1) + ": "_L1 + error.description();
        }
        return QString();
    };
    QVERIFY(failingFile().startsWith("equipment.csv: "_L1));
    writeWholeFile(folder.filePath(u"equipment.csv"_s), "a;b;c\n1;2\n");
    QCOMPARE(failingFile(), u"equipment.csv: line 2 has 2 fields where the heading has 3"_s);
}

void tst_factory::hasTheTextsOfEveryCodeThatTheSourceUses()
{
    static const QRegularExpression literal(u"u\"(M\\d+(?:_[A-Z]+)?|OK_[A-Z]+|CANCEL_[A-Z]+)\"_s"_s);
    // Each code, with the file that uses it.
    QMap<QString, QString> used;
    for (const MenuItem& item : menuItems())
        used.insert("FMAIN_"_L1 + item.control.toUpper(), u"the menu"_s);
    QDirIterator files(QStringLiteral(VELMORA_SOURCE "/src"), {u"*.cpp"_s}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString file = files.next();
        auto matches = literal.globalMatch(decodeText(readWholeFile(file)));
        while (matches.hasNext())
            used.insert(matches.next().captured(1), file);
    }
    QVERIFY(used.size() > 25);
    const QSet<QString> present = codes(u"EN"_s);
    for (auto code = used.cbegin(); code != used.cend(); ++code)
        QVERIFY2(present.contains(code.key()),
                 qPrintable("No text for "_L1 + code.key() + ", used in "_L1 + code.value()));
}

void tst_factory::saysTheSameInEveryLanguage()
{
    QCOMPARE(codes(u"EN"_s), codes(u"FR"_s));
    // A substitution in one language and not in the other loses what it says.
    QCOMPARE(rows(u"SELECT E.SY_SUBCODE FROM SYSTEM_PARAMETERS E JOIN SYSTEM_PARAMETERS F ON F.SY_SUBCODE = "
                  u"E.SY_SUBCODE "
                  "AND F.SY_CODE = '$$DESC_FR' WHERE E.SY_CODE = '$$DESC_EN' AND "
                  "(instr(E.SY_VALUE, '$$') > 0) <> (instr(F.SY_VALUE, '$$') > 0)"_s),
             QStringList());
}

/// The letters after "&" of the menu bar and of each window with its Close or Stop: all of them listen at
/// once.
void tst_factory::opensEveryControlByAKeyOfItsOwn()
{
    for (const QString& language : {u"EN"_s, u"FR"_s})
        for (const QString& window : {u"FGENERATE"_s, u"FRGEN"_s, u"FSTATUS"_s, u"FREBOOT"_s, u"FPBGEN"_s,
                                      u"FPBIMP"_s, u"FPBEXP"_s, u"FPARAMETERS"_s}) {
            // A record is deleted by the second of two buttons of that name, while the first can't be used.
            QStringList controls = window == "FPARAMETERS"_L1 ? QStringList({u"OK_INS"_s, u"OK_UPD"_s})
                                                              : QStringList(u"CANCEL_END"_s);
            controls << u"WINDOWS"_s;
            for (const MenuItem& item : menuItems())
                if (item.parent.isEmpty())
                    controls << "FMAIN_"_L1 + item.control.toUpper();
            const QStringList captions =
                rows("SELECT SY_VALUE FROM SYSTEM_PARAMETERS WHERE SY_CODE = '$$DESC_"_L1 + language +
                     "' AND (SY_SUBCODE IN ('"_L1 + controls.join("', '"_L1) + "') OR SY_SUBCODE LIKE '"_L1 +
                     window + "\\_%' ESCAPE '\\')"_L1);
            QString letters;
            for (const QString& caption : captions)
                if (const qsizetype mark = caption.indexOf(u'&'); mark >= 0)
                    letters += caption[mark + 1].toUpper();
            for (const QChar letter : letters)
                QVERIFY2(letters.count(letter) == 1, qPrintable(language + u' ' + window + u' ' + letter));
        }
}

void tst_factory::listsOnlyTablesAndColumnsThatExist()
{
    const QStringList tabs = rows(u"SELECT SY_VALUE FROM SYSTEM_PARAMETERS WHERE SY_CODE = '$$TABS'"_s);
    QCOMPARE(tabs.size(), 12);
    QSet<QString> existing;
    for (const QString& table : tabs) {
        QVERIFY2(codes(u"FR"_s).contains("FPARAMETERS_"_L1 + table), qPrintable(table));
        const QList<Column> columns = m_factory.columns(table);
        QVERIFY2(!columns.isEmpty(), qPrintable(table));
        for (const Column& column : columns) {
            QVERIFY2(codes(u"FR"_s).contains(column.name), qPrintable(column.name));
            existing << table + u'.' + column.name;
        }
    }
    Recordset lists = m_factory.select(
        u"SELECT substr(SY_CODE, 3) || '.' || substr(SY_SUBCODE, 3), SY_VALUE FROM SYSTEM_PARAMETERS WHERE "
        "substr(SY_SUBCODE, 1, 2) = 'L_'"_s);
    QVERIFY(lists.recordCount() > 15);
    for (; !lists.eof(); lists.moveNext()) {
        m_factory.select(lists.text(1).replace(QRegularExpression(u"&[A-Z_]+"_s), u"'x'"_s));
        QVERIFY2(existing.contains(lists.text(0)), qPrintable(lists.text(0)));
    }
}

/// A module without its row can't be chosen; a row without its module is found out only by its first phone.
void tst_factory::listsTheModulesThatExist()
{
    QStringList names;
    for (const Module& module : modules())
        names << module.name;
    names.sort();
    QCOMPARE(rows(u"SELECT SY_SUBCODE FROM SYSTEM_PARAMETERS WHERE SY_CODE = '$$MODULES' ORDER BY 1"_s),
             names);
    for (const QString& used : rows(u"SELECT EQ_MODULE FROM EQUIPMENT"_s))
        QVERIFY2(names.contains(used), qPrintable(used));
}

void tst_factory::pointsRebootRowsAtParameters()
{
    QCOMPARE(
        rows(
            u"SELECT count(*) FROM SYSTEM_PARAMETERS S JOIN EQUIPMENT_PARAMETERS P ON S.SY_CODE = '$$' || "
            u"P.EQ_CODE "
            "AND P.PA_CODE = S.SY_VALUE WHERE S.SY_SUBCODE IN ('$$IP1', '$$IP2', '$$IP3', '$$IP4', '$$EPWD')"_s),
        QStringList(u"9"_s));
    QCOMPARE(rows(u"SELECT EQ_CODE || count(*) FROM EQUIPMENT_PARAMETERS GROUP BY EQ_CODE ORDER BY 1"_s),
             QStringList({u"F100015"_s, u"GXP2000298"_s, u"PAP2245"_s}));
}

QTEST_GUILESS_MAIN(tst_factory)
#include "tst_factory.moc"

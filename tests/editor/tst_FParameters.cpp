// The table editor, driven with mouse and keys over a database as the program creates it.
#include "common/MMain.h"
#include "editor/windows/FParameters.h"
#include "files/whole_file.h"
#include "generation/generate.h"
#include "startup/start_up.h"
#include "support/program_folder_fixture.h"
#include "support/recorded_prompts.h"
#include "support/rows.h"

#include <QAbstractItemModelTester>
#include <QDir>
#include <QHeaderView>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace velmora;

class tst_FParameters : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void fillsTheDatabaseFromNothing();
    void editsInPlace();
    void deletesWhatNothingRefersTo();
    void refillsDependentDropDowns();
    void keepsWhatWasTypedWhenRefused();
    void tellsWhatHidesANewRecord();
    void opensByPassword_data();
    void opensByPassword();
    void asksForThePasswordAgain();
    void filtersAndSorts();
    void loadsInTheBackground();
    void staysUsableAfterFailures_data();
    void staysUsableAfterFailures();
    void editsATableItHasNeverHeardOf();
    void scrollsFieldsThatDoNotFit();
    void offersTheRecordMenuOnARow();
    void doesNotLoseUnsavedValues();
    void translatesItsCaptions();

private:
    template <typename Control> Control* control(const QString& name) const
    {
        return m_window->findChild<Control*>(name);
    }
    RecordView* list() const { return control<RecordView>(u"ListCom"_s); }
    QPushButton* ok() const { return control<QPushButton>(u"Ok"_s); }
    QLineEdit* text(int field) const { return control<QLineEdit>(u"Text_%1"_s.arg(field)); }
    QComboBox* combo(int field) const { return control<QComboBox>(u"Combo_%1"_s.arg(field)); }
    QComboBox* filter(int number) const { return control<QComboBox>(u"Filter_%1"_s.arg(number)); }
    QString error() const;
    void run(const QString& statement) { m_main->connection.execute(statement); }
    QString value(const QString& query);
    /// The list's cells: rows apart by "|", cells by ",".
    QString cells() const;
    /// Opens the window at its first tab.
    void open();
    /// Goes to a table with the keys for the next and the previous tab.
    void goTo(const QString& table);
    /// Presses keys where the focus is: names apart by blanks, a text between quotes is typed.
    void press(const QString& keys);
    /// Moves through a drop-down with the arrow keys to the entry that begins so.
    static void pick(QComboBox* list, const QString& entry);
    /// Two companies with a phone each.
    void addPhones();

    std::unique_ptr<ProgramFolderFixture> m_folder;
    std::unique_ptr<RecordedPrompts> m_user;
    std::unique_ptr<MMain> m_main;
    std::unique_ptr<FParameters> m_window;
};

void tst_FParameters::init()
{
    m_folder = std::make_unique<ProgramFolderFixture>(QStringLiteral(VELMORA_SHARE));
    for (const bool ready : {false, true}) {
        m_user = std::make_unique<RecordedPrompts>();
        m_main = std::make_unique<MMain>(m_folder->path(), m_user->prompts());
        QCOMPARE(StartUp(*m_main, u"jdoe"_s), ready);
    }
    m_user->shown.clear();
}

void tst_FParameters::cleanup()
{
    m_window.reset();
    m_main.reset();
    m_folder.reset();
}

QString tst_FParameters::error() const
{
    const auto* line = control<QLabel>(u"LErr"_s);
    return line->isVisible() ? line->text() : QString();
}

QString tst_FParameters::value(const QString& query)
{
    const Recordset rows = m_main->connection.select(query);
    return rows.eof() ? QString() : rows.text(0);
}

QString tst_FParameters::cells() const
{
    QStringList rows;
    for (int row = 0; row < list()->records().rowCount(); ++row)
        rows << list()->records().record(row).join(u',');
    return rows.join(u'|');
}

void tst_FParameters::open()
{
    m_window = std::make_unique<FParameters>(*m_main);
    m_window->resize(m_window->sizeHint());
    m_window->show();
    m_window->activateWindow(); // or its shortcuts would not work
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    new QAbstractItemModelTester(&list()->records(), QAbstractItemModelTester::FailureReportingMode::QtTest,
                                 m_window.get());
    m_window->selectFirstTab();
}

void tst_FParameters::goTo(const QString& table)
{
    auto* strip = control<QTabBar>(u"TabStrip"_s);
    int wanted = 0;
    while (wanted < strip->count() && strip->tabToolTip(wanted) != table)
        ++wanted;
    QVERIFY2(wanted < strip->count(), qPrintable(table));
    while (strip->currentIndex() != wanted)
        QTest::keyClick(list(), strip->currentIndex() < wanted ? Qt::Key_PageDown : Qt::Key_PageUp,
                        Qt::ControlModifier);
}

void tst_FParameters::press(const QString& keys)
{
    for (const QString& key : keys.split(u' ')) {
        QWidget* focus = m_window->focusWidget();
        if (key.startsWith(u'"'))
            QTest::keyClicks(focus, key.sliced(1, key.size() - 2));
        else
            QTest::keySequence(focus, QKeySequence(key));
    }
}

void tst_FParameters::pick(QComboBox* list, const QString& entry)
{
    const int wanted = list->findText(entry, Qt::MatchStartsWith);
    QVERIFY2(list->isEnabled() && wanted >= 0, qPrintable(entry));
    while (list->currentIndex() != wanted)
        QTest::keyClick(list, list->currentIndex() < wanted ? Qt::Key_Down : Qt::Key_Up);
}

void tst_FParameters::addPhones()
{
    for (const QString& statement :
         {u"INSERT INTO COMPANY VALUES('C1', 'One')"_s, u"INSERT INTO COMPANY VALUES('C2', 'Two')"_s,
          u"INSERT INTO RANGES VALUES('C1', '101')"_s, u"INSERT INTO RANGES VALUES('C2', '201')"_s,
          u"INSERT INTO PHONES VALUES('C1', '101', 'GXP2000', 'Hall', '000B82000101')"_s,
          u"INSERT INTO PHONES VALUES('C2', '201', 'PAP2', 'Desk', '000B82000201')"_s})
        run(statement);
}

void tst_FParameters::fillsTheDatabaseFromNothing()
{
    open();
    QCOMPARE(cells(), QString());
    press(u"Ins Return \"ACME\" Return \"Acme\" Return"_s);
    QCOMPARE(cells(), u"ACME,Acme"_s);
    QCOMPARE(list()->selectedRow(), 0);
    QCOMPARE(filter(1)->findText(u"ACME"_s), 1);

    goTo(u"RANGES"_s);
    for (const QString& code : {u"101"_s, u"102"_s}) {
        press(u"Ins"_s);
        pick(combo(1), u"ACME"_s);
        press(u"Tab \"%1\" Return"_s.arg(code));
    }
    QCOMPARE(cells(), u"ACME,101|ACME,102"_s);

    goTo(u"PHONES"_s);
    press(u"Ins"_s);
    QVERIFY(!ok()->isEnabled());
    pick(combo(1), u"ACME \\\\ Acme"_s);
    pick(combo(2), u"101"_s);
    pick(combo(3), u"GXP2000"_s);
    press(u"Tab Tab Tab \"Reception\" Tab \"000B82ACME01\""_s);
    QVERIFY(ok()->isEnabled());
    QTest::mouseClick(ok(), Qt::LeftButton);
    QCOMPARE(cells(), u"ACME,101,GXP2000,Reception,000B82ACME01"_s);

    goTo(u"PHONES_PARAMETERS"_s);
    press(u"Ins"_s);
    pick(combo(1), u"ACME"_s);
    pick(combo(2), u"GXP2000"_s);
    pick(combo(3), u"101 \\\\ Reception"_s);
    pick(combo(4), u"35 "_s);
    press(u"Tab Tab Tab Tab \"user$$P\" Return"_s);
    QCOMPARE(cells(), u"ACME,GXP2000,101,35,user$$P"_s);

    QCOMPARE(m_user->shown, QStringList());
    const QString folder = m_folder->file(u"out"_s);
    QVERIFY(QDir().mkdir(folder));
    Generate(*m_main, {u"ACME"_s, u"GXP2000"_s, u"101"_s, u"101"_s, {true, true, true}, false, folder},
             {[](const QString&) {}, [](qsizetype, qsizetype) {}});
    QVERIFY(readWholeFile(folder + "/cfg000B82ACME01"_L1).contains("&P35=user101&"));
}

void tst_FParameters::editsInPlace()
{
    addPhones();
    open();
    goTo(u"PHONES"_s);
    press(u"Down Down"_s);
    QCOMPARE(list()->selectedRow(), 1);
    press(u"Return"_s);
    QVERIFY(text(1)->isReadOnly());
    QVERIFY(text(2)->isReadOnly());
    QVERIFY(!combo(1)->isVisible());
    QVERIFY(!list()->isEnabled());
    QCOMPARE(m_window->focusWidget(), combo(3));
    QVERIFY(combo(3)->currentText().startsWith("PAP2 \\\\ "_L1));

    // Saving what has not been changed runs no statement.
    m_main->sqlText.clear();
    press(u"Return"_s);
    QCOMPARE(m_main->sqlText, QString());
    QVERIFY(!ok()->isVisible());

    press(u"Return"_s);
    pick(combo(3), u"GXP2000"_s);
    press(u"Tab End \"2\""_s);
    run(u"UPDATE PHONES SET PH_MAC = 'elsewhere' WHERE CO_CODE = 'C2'"_s);
    press(u"Return"_s);
    QCOMPARE(
        m_main->sqlText,
        u"UPDATE PHONES SET EQ_CODE = 'GXP2000', PH_DESC = 'Desk2' WHERE CO_CODE = 'C2' AND PH_CODE = '201'"_s);
    QCOMPARE(cells(), u"C1,101,GXP2000,Hall,000B82000101|C2,201,GXP2000,Desk2,elsewhere"_s);
    QCOMPARE(list()->selectedRow(), 1);
    QVERIFY(list()->isEnabled());
}

void tst_FParameters::deletesWhatNothingRefersTo()
{
    addPhones();
    open();
    press(u"Del"_s);
    QVERIFY(!ok()->isVisible());
    press(u"Down Del"_s);
    QVERIFY(text(1)->isReadOnly() && text(2)->isReadOnly());
    QCOMPARE(m_window->focusWidget(), ok());
    press(u"Return"_s);
    QCOMPARE(m_user->shown.size(), 1);
    QVERIFY2(error().startsWith("The record could not be deleted: "_L1), qPrintable(error()));
    QVERIFY(error().contains("still used in: Phones."_L1));
    QVERIFY(m_user->details.first().contains("FOREIGN KEY"_L1, Qt::CaseInsensitive));
    QVERIFY(!ok()->isVisible());
    QCOMPARE(cells(), u"C1,One|C2,Two"_s);

    goTo(u"PHONES"_s);
    press(u"Down Del Tab Return"_s); // Cancel has the focus
    QCOMPARE(list()->records().rowCount(), 2);
    press(u"Del Return"_s);
    goTo(u"COMPANY"_s);
    press(u"Down Del Return"_s);
    QCOMPARE(cells(), u"C2,Two"_s);
    QCOMPARE(value(u"SELECT count(*) FROM COMPANY"_s), u"1"_s);
}

void tst_FParameters::refillsDependentDropDowns()
{
    addPhones();
    run(u"INSERT INTO RANGES VALUES('C2', '202')"_s);
    open();
    goTo(u"PHONES_PARAMETERS"_s);
    press(u"Ins"_s);
    const auto openLists = [this] {
        QString open;
        for (int field = 1; field <= 4; ++field)
            open += combo(field)->isEnabled() ? u'o' : u'.';
        return open;
    };
    QCOMPARE(openLists(), u"o..."_s);
    pick(combo(1), u"C2"_s);
    QCOMPARE(openLists(), u"oo.."_s);
    pick(combo(2), u"PAP2"_s);
    QCOMPARE(combo(3)->count(), 1);
    pick(combo(3), u"201 \\\\ Desk"_s);
    QVERIFY(combo(4)->count() > 5);
    combo(4)->setFocus();
    press(u"Down Tab \"x\""_s);
    QVERIFY(ok()->isEnabled());

    // Another company: what depends on it is chosen anew.
    pick(combo(1), u"C1"_s);
    QCOMPARE(openLists(), u"oo.."_s);
    QCOMPARE(combo(4)->currentText(), QString());
    QVERIFY(!ok()->isEnabled());
    QCOMPARE(text(5)->text(), u"x"_s);
}

void tst_FParameters::keepsWhatWasTypedWhenRefused()
{
    addPhones();
    open();
    press(u"Ins \"C1\" Tab \"Again\" Return"_s);
    QCOMPARE(m_user->shown.size(), 1);
    QVERIFY2(m_user->shown.first().startsWith("The record could not be added: "_L1),
             qPrintable(m_user->shown.first()));
    QCOMPARE(error(), m_user->shown.first());
    QVERIFY(ok()->isVisible() && ok()->isEnabled());
    QCOMPARE(text(2)->text(), u"Again"_s);
    text(1)->setFocus();
    press(u"End \"0\" Ctrl+Return"_s);
    QCOMPARE(cells(), u"C1,One|C10,Again|C2,Two"_s);
    QCOMPARE(error(), QString());

    // What somebody else has deleted meanwhile can't be changed.
    list()->selectRow(2);
    press(u"Return End \"x\""_s);
    run(u"DELETE FROM PHONES WHERE CO_CODE = 'C2'"_s);
    run(u"DELETE FROM COMPANY WHERE CO_CODE = 'C2'"_s);
    press(u"Return"_s);
    QVERIFY2(error().startsWith("The record could not be changed: "_L1), qPrintable(error()));
    QCOMPARE(text(2)->text(), u"Twox"_s);
}

void tst_FParameters::tellsWhatHidesANewRecord()
{
    open();
    press(u"Ins \"$$1\" Return \"x\" Return"_s);
    QVERIFY2(error().contains("begins with $$"_L1), qPrintable(error()));
    QCOMPARE(value(u"SELECT count(*) FROM COMPANY"_s), u"1"_s);
    press(u"Ins \"C1\" Return \"x\" Return"_s);
    QCOMPARE(error(), QString());

    run(u"INSERT INTO SYSTEM_PARAMETERS VALUES('COMPANY', '$$PWD', 'abc')"_s);
    m_user->passwordAnswer = u""_s;
    goTo(u"RANGES"_s);
    goTo(u"COMPANY"_s);
    QCOMPARE(cells(), u"$$1,x"_s);
    press(u"Ins \"C2\" Return \"x\" Return"_s);
    QVERIFY2(error().contains("only the system rows"_L1), qPrintable(error()));
}

void tst_FParameters::opensByPassword_data()
{
    // The entry, "-" for a cancelled prompt, and what is listed.
    columns<QString, QString, bool>("entry", "listed", "usable");
    row("the first", "abc", "AUTHC AUTHM SYSTEM_PARAMETERS", true);
    row("the second", "xyz", "$$", true);
    row("wrong", "ABC", "", false);
    row("cancelled", "-", "", false);
}

void tst_FParameters::opensByPassword()
{
    QFETCH(QString, entry);
    run(u"INSERT INTO SYSTEM_PARAMETERS VALUES('SYSTEM_PARAMETERS', '$$PWD', 'abc')"_s);
    run(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$SYSTEM_PARAMETERS', '$$PWD2', 'xyz')"_s);
    m_user->passwordAnswer = entry == "-"_L1 ? std::nullopt : std::optional(entry);
    open();
    goTo(u"SYSTEM_PARAMETERS"_s);
    QCOMPARE(m_user->questions, QStringList(u"Password: Password Required"_s));
    QTRY_VERIFY(!list()->isLoading());
    QStringList listed;
    for (int row = 0; row < list()->records().rowCount(); ++row)
        listed << list()->records().record(row)[0];
    listed.removeDuplicates();
    if (listed.size() > 3)
        listed = QStringList(std::all_of(listed.begin(), listed.end(),
                                         [](const QString& code) { return code.startsWith("$$"_L1); })
                                 ? u"$$"_s
                                 : u"mixed"_s);
    QTEST(listed.join(u' '), "listed");
    QTEST(control<QAction>(u"New"_s)->isEnabled(), "usable");
    QCOMPARE(error(), listed.isEmpty() ? u"The password is not right."_s : QString());
    QCOMPARE(list()->header()->count(), 3);
    QCOMPARE(m_window->windowTitle(), u"Configuration - System"_s);
}

void tst_FParameters::asksForThePasswordAgain()
{
    run(u"INSERT INTO SYSTEM_PARAMETERS VALUES('COMPANY', '$$PWD', 'abc')"_s);
    run(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$COMPANY', '$$PWD2', 'xyz')"_s);
    addPhones();
    open();
    QCOMPARE(cells(), QString());
    m_user->passwordAnswer = u"abc"_s;
    auto* strip = control<QTabBar>(u"TabStrip"_s);
    QTest::mouseClick(strip, Qt::LeftButton, {}, strip->tabRect(0).center());
    QCOMPARE(cells(), u"C1,One|C2,Two"_s);
    QCOMPARE(error(), QString());
    goTo(u"RANGES"_s);
    goTo(u"COMPANY"_s);
    QCOMPARE(m_user->questions.size(), 3);
}

void tst_FParameters::filtersAndSorts()
{
    for (const QString& values : {u"'A', 'one'"_s, u"'b', 'Two'"_s, u"'C', 'three'"_s})
        run("INSERT INTO COMPANY VALUES("_L1 + values + u')');
    open();
    QCOMPARE(cells(), u"A,one|C,three|b,Two"_s);
    const auto clickHeader = [this](int column) {
        const QHeaderView* header = list()->header();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                          QPoint(header->sectionViewportPosition(column) + 5, header->height() / 2));
    };
    list()->selectRow(0);
    clickHeader(0);
    QCOMPARE(cells(), u"A,one|b,Two|C,three"_s);
    clickHeader(0);
    QCOMPARE(cells(), u"C,three|b,Two|A,one"_s);
    QCOMPARE(list()->selectedRow(), 2);
    clickHeader(0);
    QCOMPARE(cells(), u"A,one|b,Two|C,three"_s);
    press(u"Ctrl+2"_s);
    QCOMPARE(cells(), u"A,one|C,three|b,Two"_s);

    pick(filter(1), u"C"_s);
    QCOMPARE(
        m_main->sqlText,
        u"SELECT CO_CODE, CO_DESC FROM COMPANY WHERE CO_CODE NOT LIKE '$$%' AND CO_CODE = 'C' ORDER BY CO_CODE"_s);
    QCOMPARE(cells(), u"C,three"_s);
    pick(filter(1), u"All"_s);
    QCOMPARE(cells(), u"A,one|C,three|b,Two"_s);

    // A filter never hides a new record, and does not outlive what it offers.
    pick(filter(1), u"C"_s);
    list()->setFocus();
    press(u"Ins \"D\" Return Return"_s);
    QCOMPARE(cells(), u"A,one|C,three|D,|b,Two"_s);
    QCOMPARE(list()->selectedRow(), 2);
    pick(filter(1), u"D"_s);
    run(u"DELETE FROM COMPANY WHERE CO_CODE = 'D'"_s);
    filter(1)->setFocus();
    press(u"F5"_s);
    QCOMPARE(cells(), u"A,one|C,three|b,Two"_s);

    // An empty value is one to choose, and to keep.
    run(u"INSERT INTO COMPANY VALUES('', 'nameless')"_s);
    list()->setFocus();
    press(u"F5"_s);
    QCOMPARE(filter(1)->currentIndex(), 0);
    QCOMPARE(list()->records().rowCount(), 4);
    filter(1)->setCurrentIndex(1);
    press(u"F5"_s);
    QCOMPARE(cells(), u",nameless"_s);

    // The filter that has the focus goes with its table, but not the keyboard.
    filter(1)->setFocus();
    press(u"Ctrl+PgDown"_s);
    QCOMPARE(m_window->focusWidget(), list());
}

void tst_FParameters::loadsInTheBackground()
{
    constexpr int rows = 32'768;
    run(u"INSERT INTO RANGES VALUES('C1', '1')"_s);
    for (int there = 1; there < rows; there *= 2)
        run(u"INSERT INTO RANGES SELECT CO_CODE, PH_CODE + %1 FROM RANGES"_s.arg(there));
    open();
    goTo(u"RANGES"_s);
    QVERIFY(list()->isLoading());
    QVERIFY(list()->records().rowCount() > 0);
    press(u"Esc"_s);
    const int read = list()->records().rowCount();
    QVERIFY(!list()->isLoading());
    QCoreApplication::processEvents();
    QCOMPARE(list()->records().rowCount(), read);
    QVERIFY(read < rows);

    // Sorting holds for the rows that come later.
    press(u"F5 Ctrl+2 Ctrl+2"_s);
    QTRY_COMPARE_WITH_TIMEOUT(list()->records().rowCount(), rows, 30'000);
    QCOMPARE(list()->records().record(0)[1], u"9999"_s);
    QCOMPARE(list()->records().record(rows - 1)[1], u"1"_s);

    // Another record is deleted while the new one has not been read again yet.
    run(u"INSERT INTO COMPANY VALUES('C1', 'One')"_s);
    press(u"Ins"_s);
    pick(combo(1), u"C1"_s);
    combo(1)->setFocus();
    press(u"Return \"99999\" Return"_s);
    QVERIFY(list()->isLoading());
    list()->selectRow(3);
    QCOMPARE(list()->records().record(3)[1], u"1000"_s);
    press(u"Del"_s);
    press(u"Return"_s);
    QTRY_COMPARE_WITH_TIMEOUT(list()->records().rowCount(), rows, 30'000);
    QCOMPARE(value(u"SELECT count(*) FROM RANGES WHERE PH_CODE IN ('1000', '99999')"_s), u"1"_s);
    QVERIFY(!list()->records().find({u"C1"_s, u"1000"_s}));
    QVERIFY(list()->records().find({u"C1"_s, u"99999"_s}));

    // Another table stops the reading. A column is as wide as its widest text with its margin.
    press(u"F5"_s);
    goTo(u"SYSTEM_PARAMETERS"_s);
    const QString wide(50, u'W');
    run(u"INSERT INTO SYSTEM_PARAMETERS VALUES('%1', 'x', 'y')"_s.arg(wide));
    press(u"F5"_s);
    const int margin = fromTwips(300, list()->logicalDpiX());
    QCOMPARE(list()->header()->sectionSize(0), list()->fontMetrics().horizontalAdvance(wide) + margin);
}

void tst_FParameters::staysUsableAfterFailures_data()
{
    // A row of the settings, the table it spoils, and what is done there.
    columns<QString, QString, QString, QString>("row", "table", "keys", "report");
    row("no such table", "'$$TABS', '90', 'NOWHERE'", "NOWHERE", "", "no table NOWHERE");
    row("a bad pick list", "'$$COMPANY', 'L_CO_CODE', 'SELECT FROM'", "COMPANY", "Ins", "syntax");
    row("a pick list that follows a text", "'$$COMPANY', 'L_CO_DESC', 'SELECT FROM'", "COMPANY",
        "Ins \"abc\"", "syntax");
    row("an unknown column", "'$$COMPANY', 'L_CO_CODE', 'SELECT &XX_CODE'", "COMPANY", "Ins", "&XX_CODE");
    row("a filter with an apostrophe", "'O''NEIL', 'x', 'y'", "SYSTEM_PARAMETERS", "filter O'NEIL",
        "The filter Code can't be used");
    row("a filter that holds for all", "'0'' OR ''1''=''1', 'x', 'y'", "SYSTEM_PARAMETERS",
        "filter 0' OR '1'='1", "The filter Code can't be used");
}

void tst_FParameters::staysUsableAfterFailures()
{
    QFETCH(QString, row);
    QFETCH(QString, table);
    QFETCH(QString, keys);
    QFETCH(QString, report);
    addPhones();
    run("INSERT INTO SYSTEM_PARAMETERS VALUES("_L1 + row + u')');
    open();
    goTo(table);
    const QString chosen = keys.startsWith("filter "_L1) ? keys.section(u' ', 1) : QString();
    if (!chosen.isEmpty())
        pick(filter(1), chosen);
    else if (!keys.isEmpty())
        press(keys);
    QCOMPARE(m_user->shown.size(), 1);
    QVERIFY2(m_user->shown.first().contains(report, Qt::CaseInsensitive), qPrintable(m_user->shown.first()));
    if (!chosen.isEmpty()) {
        QCOMPARE(list()->records().rowCount(), 0);
        const QRect place = filter(1)->geometry();
        press(u"F5"_s);
        QCOMPARE(filter(1)->currentText(), chosen);
        QCOMPARE(filter(1)->geometry(), place);
    }
    if (table == "NOWHERE"_L1)
        QVERIFY(!control<QAction>(u"New"_s)->isEnabled());
    press(u"Esc"_s);
    goTo(u"PHONES"_s);
    QCOMPARE(list()->records().rowCount(), 2);
}

void tst_FParameters::editsATableItHasNeverHeardOf()
{
    m_main->connection.executePortable(
        u"CREATE TABLE DOORS (DO_CODE nvarchar(5), CO_CODE nvarchar(5) NOT NULL, DO_NOTE "
        "nvarchar(50), PRIMARY KEY (DO_CODE), FOREIGN KEY (CO_CODE) REFERENCES COMPANY "
        "(CO_CODE))"_s);
    run(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$TABS', '14', 'DOORS')"_s);
    run(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$DOORS', 'L_CO_CODE', "
        "'SELECT CO_CODE, CO_DESC FROM COMPANY ORDER BY CO_CODE')"_s);
    addPhones();
    open();
    goTo(u"DOORS"_s);
    press(u"Ins \"D1\""_s);
    pick(combo(2), u"C2"_s);
    combo(2)->setFocus();
    press(u"Return Return"_s);
    QCOMPARE(cells(), u"D1,C2,"_s);
    QCOMPARE(list()->selectedRow(), 0);
    press(u"Return"_s);
    pick(combo(2), u"C1"_s);
    press(u"Return"_s);
    QCOMPARE(cells(), u"D1,C1,"_s);
    press(u"Del Return"_s);
    QCOMPARE(cells(), QString());
    QCOMPARE(m_user->shown, QStringList());
}

void tst_FParameters::scrollsFieldsThatDoNotFit()
{
    addPhones();
    open();
    goTo(u"PHONE_BOOK"_s);
    m_window->resize(100, 100);
    QCOMPARE(m_window->size(), leastEditorSize(m_window->logicalDpiX()));
    for (const QSize& size : {m_window->size(), m_window->sizeHint(), QSize(900, 400)}) {
        m_window->resize(size);
        press(u"Ins"_s);
        const auto rectangle = [this](const QWidget* shown) {
            return QRect(shown->mapTo(m_window.get(), QPoint(0, 0)), shown->size());
        };
        const auto* panel = m_window->findChild<RecordPanel*>();
        QVERIFY(panel->height() > combo(1)->height());
        QVERIFY(!rectangle(panel).intersects(rectangle(ok())));
        QVERIFY(!rectangle(panel).intersects(rectangle(list()->parentWidget())));
        for (int field = 1; field < 8; ++field)
            QVERIFY(text(field)->geometry().bottom() < text(field + 1)->geometry().top());
        // The field that has the focus is in sight.
        pick(combo(1), u"C1"_s);
        press(u"Tab \"1\" Tab \"n\" Tab Down Tab Tab Tab Tab \"a@b\""_s);
        QCOMPARE(m_window->focusWidget(), text(8));
        QVERIFY(rectangle(panel).contains(rectangle(text(8))));
        QVERIFY(ok()->isEnabled());
        press(u"Esc"_s);
    }
}

void tst_FParameters::offersTheRecordMenuOnARow()
{
    addPhones();
    open();
    auto* menu = control<QMenu>(u"MnuRecord"_s);
    const auto rightClick = [this](const QPoint& position) {
        Q_EMIT list()->customContextMenuRequested(position);
    };
    rightClick(QPoint(20, list()->viewport()->height() - 5));
    QVERIFY(!menu->isVisible());
    const QPoint onRow = list()->visualRect(list()->records().index(1, 0)).center();
    rightClick(onRow);
    QVERIFY(menu->isVisible());
    menu->hide();
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, onRow);
    QTest::mouseDClick(list()->viewport(), Qt::LeftButton, {}, onRow);
    QCOMPARE(text(1)->text(), u"C2"_s);
    rightClick(onRow);
    QVERIFY(!menu->isVisible());
}

void tst_FParameters::doesNotLoseUnsavedValues()
{
    open();
    press(u"Ins \"C1\""_s);
    QVERIFY(!m_window->close());
    QCOMPARE(m_user->questions.size(), 1);
    {
        // No record is written into the transaction of a batch.
        const Batch::Run batch(m_main->batch);
        press(u"Return"_s);
        QVERIFY(!ok()->isEnabled());
    }
    QCOMPARE(value(u"SELECT count(*) FROM COMPANY"_s), u"0"_s);
    m_window->selectFirstTab();
    QCOMPARE(text(1)->text(), u"C1"_s);
    press(u"Return"_s);
    QCOMPARE(cells(), u"C1,"_s);
    press(u"Ins \"C2\""_s);
    m_user->yesNoAnswer = true;
    QVERIFY(m_window->close());
}

void tst_FParameters::translatesItsCaptions()
{
    m_main->language = u"FR"_s;
    addPhones();
    m_window = std::make_unique<FParameters>(*m_main);
    QCOMPARE(m_window->windowTitle(), u"Configuration - JDOE"_s);
    open();
    QCOMPARE(m_window->windowTitle(), u"Configuration - Société"_s);
    QCOMPARE(control<QTabBar>(u"TabStrip"_s)->tabText(2), u"Postes"_s);
    QCOMPARE(control<QLabel>(u"FLab_1"_s)->text(), u"Société"_s);
    press(u"Ins"_s);
    QCOMPARE(ok()->text(), u"A&jouter"_s);
    QCOMPARE(control<QLabel>(u"Label_2"_s)->text(), u"Nom de la société"_s);
}

QTEST_MAIN(tst_FParameters)
#include "tst_FParameters.moc"

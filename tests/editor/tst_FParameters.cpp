// The table editor, driven with mouse and keys over a database as the program creates it.
#include "common/MMain.h"
#include "editor/list/RecordCount.h"
#include "editor/window/FParameters.h"
#include "editor/window/editor_layout.h"
#include "startup/start_up.h"
#include "support/controls.h"
#include "support/program_folder_fixture.h"
#include "support/recorded_prompts.h"
#include "support/rows.h"

#include <QAbstractItemModelTester>
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
    void doesWhatTheKeysSay_data();
    void doesWhatTheKeysSay();
    void asksForThePasswordAgain();
    void tellsThatTheDatabaseIsHeld();
    void loadsInTheBackground();
    void scrollsFieldsThatDoNotFit();
    void offersTheRecordMenuOnARow();
    void doesNotLoseUnsavedValues();
    void translatesItsCaptions();

private:
    RecordView* list() const { return control<RecordView>(*m_window, u"ListCom"_s); }
    QTabBar* strip() const { return control<QTabBar>(*m_window, u"TabStrip"_s); }
    QPushButton* ok() const { return button(*m_window, u"Ok"_s); }
    QLineEdit* text(int field) const { return control<QLineEdit>(*m_window, u"Text_%1"_s.arg(field)); }
    QComboBox* combo(int field) const { return control<QComboBox>(*m_window, u"Combo_%1"_s.arg(field)); }
    QString error() const;
    QString cells() const;
    QString fields() const;
    QString picture() const;
    void run(const QString& statements);
    void open();
    void goTo(const QString& table);
    static void pick(QComboBox* list, const QString& entry, Qt::MatchFlags match);
    QWidget* focused() const;
    void press(const QString& steps, const QString& meanwhile = {});

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
    const auto* line = control<QLabel>(*m_window, u"LErr"_s);
    return line->isVisible() ? line->text() : QString();
}

/// The list's cells: rows apart by "|", cells by ",", with a ">" before each selected row.
QString tst_FParameters::cells() const
{
    QStringList rows;
    for (int row = 0; row < list()->records().rowCount(); ++row)
        rows << (list()->selectionModel()->isRowSelected(row, {}) ? u">"_s : QString()) +
                    list()->records().record(row).join(u',');
    return rows.join(u'|');
}

/// The fields of the panel, each after "o" where it can be changed, "." where it can't and "-" where it is
/// grey, with a "*" before the one that has the focus. Of drop-downs the code.
QString tst_FParameters::fields() const
{
    QStringList fields;
    for (int number = 1; text(number); ++number) {
        const bool dropDown = combo(number)->isVisible();
        const QWidget* shown = dropDown ? static_cast<QWidget*>(combo(number)) : text(number);
        const bool locked = !dropDown && text(number)->isReadOnly();
        fields << (m_window->focusWidget() == shown ? u"*"_s : QString()) +
                      (!shown->isEnabled() ? u'-'
                       : locked            ? u'.'
                                           : u'o') +
                      (dropDown ? combo(number)->currentText().section(u' ', 0, 0) : text(number)->text());
    }
    return fields.join(u'|');
}

/// What the window shows: the cells, in brackets while the list can't be used; the fields; "ok" when they can
/// be written; "closed" where there is nothing to do; "!" beside an error line. What has the focus, unless
/// that is the list or a field.
QString tst_FParameters::picture() const
{
    QString shown = list()->isEnabled() ? cells() : u'(' + cells() + u')';
    if (ok()->isVisible())
        shown += " ["_L1 + fields() + (ok()->isEnabled() ? "] ok"_L1 : "]"_L1);
    else if (!control<QAction>(*m_window, u"New"_s)->isEnabled())
        shown += " closed"_L1;
    if (!error().isEmpty())
        shown += " !"_L1;
    const QString focus = m_window->focusWidget()->objectName();
    return focus == "ListCom"_L1 || shown.contains(u'*') ? shown : shown + " *"_L1 + focus;
}

/// Runs statements, apart by ";".
void tst_FParameters::run(const QString& statements)
{
    for (const QString& statement : statements.split(u';', Qt::SkipEmptyParts))
        m_main->connection.execute(statement);
}

/// Opens the window at its first tab, COMPANY.
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
    list()->setFocus();
}

/// Goes to a table with the keys for the next and the previous tab.
void tst_FParameters::goTo(const QString& table)
{
    int wanted = 0;
    while (wanted < strip()->count() && strip()->tabToolTip(wanted) != table)
        ++wanted;
    QVERIFY2(wanted < strip()->count(), qPrintable(table));
    while (strip()->currentIndex() != wanted)
        QTest::keyClick(focused(), strip()->currentIndex() < wanted ? Qt::Key_PageDown : Qt::Key_PageUp,
                        Qt::ControlModifier);
}

/// Moves through a drop-down with the arrow keys.
void tst_FParameters::pick(QComboBox* list, const QString& entry, Qt::MatchFlags match)
{
    const int wanted = list->findText(entry, match);
    QVERIFY2(list->isEnabled() && wanted >= 0, qPrintable(entry));
    while (list->currentIndex() != wanted)
        QTest::keyClick(list, list->currentIndex() < wanted ? Qt::Key_Down : Qt::Key_Up);
}

/// What keys go to.
QWidget* tst_FParameters::focused() const
{
    if (QWidget* popup = QApplication::activePopupWidget())
        return popup->focusWidget() ? popup->focusWidget() : popup;
    if (auto* dialog = m_window->findChild<QDialog*>(); dialog && dialog->isVisible()) {
        dialog->activateWindow();
        (void)QTest::qWaitFor([dialog] { return dialog->focusWidget() != nullptr; });
        return dialog->focusWidget();
    }
    // What has stood over it leaves to the platform which window becomes active.
    (void)QTest::qWaitFor([this] {
        m_window->activateWindow();
        return m_window->isActiveWindow();
    });
    return m_window->focusWidget();
}

/// Does what `steps` say, apart by blanks: "@TABLE" goes to a tab, "1:x" chooses what begins with x in a
/// field's drop-down, "F1:x" the entry x in a filter, "Header" clicks the first one, "!" runs the statements
/// `meanwhile`. A text between quotes is typed where the focus is, and any other step is a key pressed there.
void tst_FParameters::press(const QString& steps, const QString& meanwhile)
{
    for (const QString& step : steps.split(u' ')) {
        if (step == "!"_L1)
            run(meanwhile);
        else if (step.startsWith(u'@')) {
            goTo(step.sliced(1));
            QCoreApplication::processEvents(); // what codes stand for comes after the codes
        } else if (step.startsWith("F1:"_L1))
            pick(filter(*m_window, 1), step.sliced(3), Qt::MatchExactly);
        else if (step.mid(1, 1) == ":"_L1)
            pick(combo(step.first(1).toInt()), step.sliced(2), Qt::MatchStartsWith);
        else if (step == "Header"_L1)
            QTest::mouseClick(list()->header()->viewport(), Qt::LeftButton, {}, QPoint(5, 5));
        else if (step.startsWith(u'"'))
            QTest::keyClicks(focused(), step.sliced(1, step.size() - 2));
        else
            QTest::keySequence(focused(), QKeySequence(step));
    }
}

void tst_FParameters::fillsTheDatabaseFromNothing()
{
    open();
    press(u"Ins \"ACME\" Return \"Acme\" Return"_s);
    QCOMPARE(picture(), u">ACME,Acme"_s);
    press(u"@RANGES Ins 1:ACME Tab \"101\" Return Ins \"102\" Return"_s);
    QCOMPARE(picture(), u"ACME,101|>ACME,102"_s);
    press(u"@PHONES Ins 1:ACME 2:101 3:GXP2000 Tab Tab Tab \"Reception\" Tab \"000B82ACME01\""_s);
    QTest::mouseClick(ok(), Qt::LeftButton);
    QCOMPARE(picture(), u">ACME,101,GXP2000,Reception,000B82ACME01"_s);
    press(u"@PHONES_PARAMETERS Ins"_s);
    QCOMPARE(picture(), u" [*o|-|-|-|-]"_s);
    press(u"1:ACME 2:GXP2000 3:101 4:35 Tab Tab Tab Tab \"user$$P\" 2:PAP2"_s);
    QCOMPARE(picture(), u" [oACME|oPAP2|o|-|*ouser$$P]"_s);
    press(u"2:GXP2000 3:101 4:35 Return"_s);
    QCOMPARE(picture(), u">ACME,GXP2000,101,35,user$$P"_s);
    QCOMPARE(m_user->shown, QStringList());
}

void tst_FParameters::doesWhatTheKeysSay_data()
{
    // Statements, which run before the window opens unless "!" says when, the steps, what the window shows
    // then, and what it tells. There are two companies with a range and a phone each.
    columns<QString, QString, QString, QString>("statements", "steps", "picture", "told");
    const QString both = u"C1,One|C2,Two"_s;
    const QString noPhones = u"DELETE FROM PHONES;DELETE FROM RANGES;"_s;
    const QString setting = u"INSERT INTO SYSTEM_PARAMETERS VALUES(%1)"_s;
    row("edits", "", "@PHONES Down Down Return",
        "(C1,101,GXP2000,Hall,1|>C2,201,PAP2,Desk,2) [.C2|.201|oPAP2|*oDesk|o2] ok", "");
    row("changes in its place", "UPDATE PHONES SET PH_MAC = 'new' WHERE CO_CODE = 'C2'",
        "@PHONES Down Down Return 3:GXP2000 End \"2\" ! Return",
        "C1,101,GXP2000,Hall,1|>C2,201,GXP2000,Desk2,new", "");
    row("keeps what was refused", "", "Ins \"C1\" Tab \"Again\" Return", both + " [oC1|*oAgain] ok !"_L1,
        "The record could not be added: ");
    row("writes it when put right", "", "Ins \"C1\" Tab \"Again\" Return Shift+Tab End \"0\" Return Return",
        "C1,One|>C10,Again|C2,Two", "The record could not be added: ");
    row("needs a record to delete", "", "Del", both, "");
    row("asks before it deletes", "", "Down Del", "(>C1,One|C2,Two) [.C1|.One] ok *Ok", "");
    row("cancels", "", "@RANGES Down Del Tab Return", ">C1,101|C2,201", "");
    row("deletes", noPhones, "Down Del Return", ">C2,Two", "");
    row("gives up a refused deletion", "", "Down Del Return", ">C1,One|C2,Two !", "still used in: Phones.");
    row("tells what hides a new record", "", "Ins \"$$1\" Return \"x\" Return", both + " !"_L1,
        "begins with $$");
    row("also among system rows", setting.arg(u"'COMPANY', '$$PWD', 'abc'"_s),
        "Ins \"C3\" Return \"x\" Return", " !", "only the system rows");
    row("sorts by a header", "", "Down Header Header", "C2,Two|>C1,One", "");
    row("sorts by a key", u"INSERT INTO COMPANY VALUES('C3', 'a')"_s, "Ctrl+2", "C3,a|C1,One|C2,Two", "");
    row("filters", "", "@RANGES F1:C2", "C2,201", "");
    row("lists all again", "", "F1:C2 F1:All", both, "");
    row("gives up a filter for a new record", "", "F1:C2 Ins \"B\" Return Return", ">B,|"_L1 + both, "");
    row("offers its key", "", "Ins \"B\" Return Return F1:B", ">B,", "");
    row("gives up a filter for what is gone", noPhones + "DELETE FROM COMPANY WHERE CO_CODE = 'C2'"_L1,
        "F1:C2 ! F5", "C1,One", "");
    row("keeps a filter for nothing", "INSERT INTO COMPANY VALUES('', 'nameless')", "F1: F5", ",nameless",
        "");
    row("takes the focus from a filter", "", "Shift+Tab Ctrl+PgDown", "C1,101|C2,201", "");
    row("finds by what codes stand for", "", "@PHONES Ctrl+F \"TWÓ\" Return", ">C2,201,PAP2,Desk,2", "");
    row("each word anywhere", "", "@PHONES Ctrl+F \"hall\" Space \"gxp\" Return", ">C1,101,GXP2000,Hall,1",
        "");
    row("finds all again", "", "@PHONES Ctrl+F \"x\" Esc Return", ">C1,101,GXP2000,Hall,1|C2,201,PAP2,Desk,2",
        "");
    row("finds among other rows", "", "@RANGES Ctrl+F \"one\" Return F1:C2 F1:All", "C1,101", "");
    row("deletes what it has found", noPhones, "Ctrl+F \"two\" Return Del Return Esc", "C1,One", "");
    row("shows a new record all the same", "", "Ctrl+F \"two\" Return Ins \"B\" Return Return",
        ">B,|"_L1 + both, "");
    row("finds nothing while it edits", "", "Ctrl+F \"two\" Return Return Ctrl+F \"s\" Return", ">C2,s", "");
    row("goes on from here", "", "@RANGES Down Ins \"102\" Ctrl+Return \"103\" Return",
        "C1,101|C1,102|>C1,103|C2,201", "");
    row("goes on with the same company", "", "@RANGES F1:C2 @PHONES", "C2,201,PAP2,Desk,2", "");
    row("duplicates to the next free code", "INSERT INTO RANGES VALUES('C1', '100'), ('C1', '103')",
        "@PHONES Down Ctrl+D End \"2\" Ctrl+Return Esc",
        "C1,101,GXP2000,Hall,1|>C1,103,GXP2000,Hall2,1|C2,201,PAP2,Desk,2", "");
    const QString values =
        u"INSERT INTO EQUIPMENT VALUES('T', '', 'PAP2');UPDATE PHONES SET EQ_CODE = 'T' WHERE PH_CODE = "
        u"'101';"
        "INSERT INTO EQUIPMENT_PARAMETERS VALUES('T', 'A', '', 'P', '', 'T', ''), ('T', 'B', '', 'P', '', "
        "'T', ''),"
        "('T', 'C', '', 'P', '', 'T', ''), ('T', 'D', '', 'P', '', 'T', '');INSERT INTO RANGES VALUES('C1', "
        "'102');"
        "INSERT INTO PHONES VALUES('C1', '102', 'T', 'Bar', '3');"
        "INSERT INTO PHONES_PARAMETERS VALUES('C1', 'T', '101', 'A', 'x'), ('C1', 'T', '102', 'C', 'y')"_s;
    row("proposes parameters in use, then others", values,
        "@PHONES_PARAMETERS Down Ins \"1\" Ctrl+Return \"2\" Ctrl+Return Esc",
        "C1,T,101,A,x|C1,T,101,C,1|>C1,T,101,D,2|C1,T,102,C,y", "");
    row("proposes the next phone where the parameter is filtered", values,
        "@PHONES_PARAMETERS Shift+Tab \"a\" Tab Ctrl+D Ctrl+Return",
        "C1,T,101,A,x|>C1,T,102,A,x [oC1|oT|*o|-|-]", "");
    const QString phones = u"C1,101,GXP2000,Hall,1|C2,201,PAP2,Desk,2"_s;
    row("chooses by a word", "", "@PHONES Ins \"TWÓ\" Tab", phones + " [oC2|*o|-|-|-]"_L1, "");
    row("chooses with Enter", "", "@PHONES Ins \"twox\" Backspace Return Return",
        phones + " [oC2|*o|-|-|-]"_L1, "");
    row("chooses nothing", "", "@PHONES Ins \"two\" Esc", phones + " [*o|-|-|-|-]"_L1, "");
    row("chooses nothing where nothing fits", "", "@PHONES Ins \"three\" Tab Esc",
        phones + " [*o|-|-|-|-]"_L1, "");
    row("filters by what is typed", "", "@RANGES Shift+Tab Shift+Tab \"c2\" Tab Tab", ">C2,201", "");
    row("deletes many", noPhones, "Ctrl+A Del Shift+Tab Space Esc", " !", "Deleted: 2. Refused: 0.");
    row("deletes none where one is refused", "DELETE FROM PHONES WHERE CO_CODE = 'C1'",
        "Ctrl+A Del Shift+Tab Space Esc", ">C1,One|>C2,Two", "");
    row("deletes the others without it", "DELETE FROM PHONES WHERE CO_CODE = 'C1'",
        "Ctrl+A Del Shift+Tab Space Shift+Tab Space Esc", "C2,Two !", "Deleted: 1. Refused: 1.");
    row("asks whether to delete many", noPhones, "Ctrl+A Del Return", ">C1,One|>C2,Two", "");
    row("deletes what is in sight alone",
        noPhones + "INSERT INTO COMPANY VALUES('C3', 'Thor'), ('C4', 'Twain')"_L1,
        "Ctrl+F \"t\" Return Ctrl+A Ctrl+F Esc Return Del Return", "C1,One|>C3,Thor|C4,Twain", "");
    row("sets a column for all", "", "@PHONES Ctrl+A Ctrl+E \"adapter\" Return Return Esc",
        ">C1,101,PAP2,Hall,1|C2,201,PAP2,Desk,2 !", "Changed: 1. Refused: 0.");
    row("sets another column", "", "@PHONES Ctrl+A Ctrl+E Shift+Tab Down Tab \"Both\" Return Esc",
        ">C1,101,GXP2000,Both,1|C2,201,PAP2,Both,2 !", "Changed: 2. Refused: 0.");
    row("sets nothing that is refused", "",
        "@PHONES Ctrl+A Ctrl+E Shift+Tab Down Tab \"O'N\" Return Return Esc",
        ">C1,101,GXP2000,Hall,1|>C2,201,PAP2,Desk,2", "");
    row("sets nothing before it is typed", "", "@PHONES Ctrl+A Ctrl+E Shift+Tab Down Tab Return Esc",
        ">C1,101,GXP2000,Hall,1|>C2,201,PAP2,Desk,2", "");
    row("sets no column of other tables", "", "Ctrl+A Ctrl+E", ">C1,One|>C2,Two", "");
    row("pastes what it has copied", "UPDATE PHONES SET PH_DESC = 'x'",
        "@PHONES Ctrl+A Ctrl+C ! F5 Ctrl+V Return Esc", ">C1,101,GXP2000,Hall,1|C2,201,PAP2,Desk,2", "");
    row("no such table", setting.arg(u"'$$TABS', '90', 'NOWHERE'"_s), "@NOWHERE", " closed",
        "no table NOWHERE");
    row("a bad pick list, asked for each letter", setting.arg(u"'$$COMPANY', 'L_CO_DESC', 'SELECT FROM'"_s),
        "Ins \"abc\"", both + " [*oabc|o]"_L1, "syntax");
    row("an unknown column", setting.arg(u"'$$COMPANY', 'L_CO_CODE', 'SELECT &XX_CODE'"_s), "Ins",
        both + " [*o|-]"_L1, "&XX_CODE");
    row("a filter with an apostrophe", "INSERT INTO COMPANY VALUES('O''N', 'x')", "F1:O'N", "",
        "The filter Company can't be used");
    row("a table never heard of",
        "CREATE TABLE DOORS (DO_CODE varchar(5), CO_CODE varchar(5), DO_NOTE varchar(50), PRIMARY KEY "
        "(DO_CODE));"_L1 +
            setting.arg(u"'$$TABS', '14', 'DOORS'"_s) + u';' +
            setting.arg(u"'$$DOORS', 'L_CO_CODE', 'SELECT CO_CODE, CO_DESC FROM COMPANY'"_s),
        "@DOORS Ins \"D1\" Tab 2:C2 Return Return Return 2:C1 Return", ">D1,C1,", "");
}

void tst_FParameters::doesWhatTheKeysSay()
{
    QFETCH(QString, statements);
    QFETCH(QString, steps);
    QFETCH(QString, told);
    run(u"INSERT INTO COMPANY VALUES('C1', 'One'), ('C2', 'Two');"
        "INSERT INTO RANGES VALUES('C1', '101'), ('C2', '201');"
        "INSERT INTO PHONES VALUES('C1', '101', 'GXP2000', 'Hall', '1'), ('C2', '201', 'PAP2', 'Desk', '2')"_s);
    if (!steps.contains(u'!'))
        run(statements);
    open();
    press(steps, statements);
    QFETCH(QString, picture);
    QTRY_COMPARE(this->picture(), picture);
    const QString said = error().isEmpty() ? m_user->shown.value(0) : error();
    QVERIFY2(said.isEmpty() == told.isEmpty() && said.contains(told, Qt::CaseInsensitive), qPrintable(said));
    QVERIFY(m_user->shown.size() <= 1);
    // Whatever has happened, the window can still be used.
    m_user->yesNoAnswer = true; // to what Escape asks where something is typed
    press(u"Esc @RANGES Ins"_s);
    QVERIFY2(fields() == "*o|-"_L1 || fields().endsWith("|*o"_L1), qPrintable(fields()));
}

void tst_FParameters::asksForThePasswordAgain()
{
    run(u"INSERT INTO SYSTEM_PARAMETERS VALUES('COMPANY', '$$PWD', 'abc'), ('$$COMPANY', '$$PWD2', 'xyz');"
        "INSERT INTO COMPANY VALUES('C1', 'One')"_s);
    open();
    QCOMPARE(picture(), u" closed !"_s);
    QCOMPARE(error(), u"The password is not right."_s);
    QCOMPARE(list()->header()->count(), 2);
    m_user->passwordAnswer = u"abc"_s;
    QTest::mouseClick(strip(), Qt::LeftButton, {}, strip()->tabRect(0).center());
    QCOMPARE(picture(), u"C1,One"_s);
    press(u"@RANGES @COMPANY"_s);
    QCOMPARE(m_user->questions, QStringList(3, u"Password: Password Required"_s));
}

/// By another program, which keeps even readers out: the user's language says so, and later all is well.
void tst_FParameters::tellsThatTheDatabaseIsHeld()
{
    run(u"INSERT INTO COMPANY VALUES('C1', 'One')"_s);
    open();
    m_main->language = u"FR"_s;
    // The embedded engine's usual log lets readers in.
    run(onServer() ? u"SET SESSION lock_wait_timeout = 1"_s
                   : u"PRAGMA journal_mode = DELETE;PRAGMA busy_timeout = 100"_s);
    {
        Connection other;
        other.open(onServer() ? m_folder->working() : m_folder->embedded(u"other.db"_s));
        if (!onServer())
            other.execute("ATTACH '"_L1 + m_folder->file(u"velmora.db"_s) + "' AS held"_L1);
        other.execute(onServer() ? u"LOCK TABLES COMPANY WRITE"_s : u"BEGIN EXCLUSIVE"_s);
        press(u"F5"_s);
        QCOMPARE(m_user->shown.size(), 1);
        QVERIFY(m_user->shown[0].startsWith(u"La base de données est injoignable"_s));
        QVERIFY(!QGuiApplication::overrideCursor());
    }
    press(u"F5"_s);
    QCOMPARE(picture(), u"C1,One"_s);
}

void tst_FParameters::loadsInTheBackground()
{
    constexpr int rows = 32'768;
    run(u"INSERT INTO COMPANY VALUES('C1', 'One');INSERT INTO RANGES VALUES('C1', '1')"_s);
    for (int there = 1; there < rows; there *= 2)
        run(u"INSERT INTO RANGES SELECT CO_CODE, PH_CODE + %1 FROM RANGES"_s.arg(there));
    open();
    goTo(u"RANGES"_s);
    QVERIFY(list()->isLoading());
    QVERIFY(list()->records().rowCount() > 0);
    press(u"Esc"_s);
    const int read = list()->records().rowCount();
    QCoreApplication::processEvents();
    QCOMPARE(list()->records().rowCount(), read);
    QVERIFY(read < rows);
    QCOMPARE(m_window->findChild<RecordCount*>()->text(),
             u"Stopped: the first %1 records (F5 reads all)"_s.arg(QLocale(u"en"_s).toString(read)));

    // Sorting and finding hold for the rows that come later: 12 of 32,768 numbers hold 3276.
    const auto* count = m_window->findChild<RecordCount*>();
    press(u"F5 Ctrl+F \"3276\" Return"_s);
    QVERIFY(list()->isLoading());
    QVERIFY2(count->text().endsWith("so far (Esc stops)"_L1), qPrintable(count->text()));
    QTRY_COMPARE_WITH_TIMEOUT(count->text(), u"12 of 32,768"_s, 30'000);
    QCOMPARE(list()->records().rowCount(), 12);
    press(u"Esc F5 Ctrl+2 Ctrl+2"_s);
    QTRY_COMPARE_WITH_TIMEOUT(list()->records().rowCount(), rows, 30'000);
    QCOMPARE(list()->records().record(0)[1], u"9999"_s);
    QCOMPARE(list()->records().record(rows - 1)[1], u"1"_s);

    // Another record is deleted while the new one has not been read again yet.
    press(u"Ins 1:C1 Tab \"99999\" Return"_s);
    QVERIFY(list()->isLoading());
    list()->selectRow(3);
    press(u"Del Return"_s);
    QTRY_COMPARE_WITH_TIMEOUT(list()->records().rowCount(), rows, 30'000);
    QVERIFY(!list()->records().find({u"C1"_s, u"1000"_s}));
    QVERIFY(list()->records().find({u"C1"_s, u"99999"_s}));

    // Another table stops the reading. A column is as wide as its widest text with its margin.
    const QString wide(50, u'W');
    run(u"INSERT INTO SYSTEM_PARAMETERS VALUES('%1', 'x', 'y')"_s.arg(wide));
    press(u"F5 @SYSTEM_PARAMETERS"_s);
    QTRY_VERIFY(!list()->isLoading());
    QVERIFY(list()->records().rowCount() < 100);
    const int margin = fromTwips(300, list()->logicalDpiX());
    QCOMPARE(list()->header()->sectionSize(0), list()->fontMetrics().horizontalAdvance(wide) + margin);
}

void tst_FParameters::scrollsFieldsThatDoNotFit()
{
    run(u"INSERT INTO COMPANY VALUES('C1', 'One')"_s);
    open();
    goTo(u"PHONE_BOOK"_s);
    m_window->resize(100, 100);
    QCOMPARE(m_window->size(), leastEditorSize(m_window->logicalDpiX()));
    // The field that has the focus is in sight, and stands apart from the others.
    press(u"Ins 1:C1 Tab \"1\" Tab \"n\" Tab Down Return Return Return Return \"a@b\""_s);
    QVERIFY2(fields().endsWith("|*oa@b"_L1), qPrintable(fields()));
    const auto place = [this](const QWidget* shown) {
        return QRect(shown->mapTo(m_window.get(), QPoint(0, 0)), shown->size());
    };
    const auto* panel = m_window->findChild<RecordPanel*>();
    QVERIFY(place(panel).contains(place(text(8))));
    QVERIFY(!place(panel).intersects(place(ok())));
    QVERIFY(text(7)->geometry().bottom() < text(8)->geometry().top());
}

void tst_FParameters::offersTheRecordMenuOnARow()
{
    run(u"INSERT INTO COMPANY VALUES('C1', 'One')"_s);
    open();
    const auto opensAt = [this](const QPoint& position) {
        Q_EMIT list()->customContextMenuRequested(position);
        auto* menu = control<QMenu>(*m_window, u"MnuRecord"_s);
        const bool opened = menu->isVisible();
        menu->hide();
        return opened;
    };
    const QPoint onRow = list()->visualRect(list()->records().index(0, 0)).center();
    QVERIFY(opensAt(onRow));
    QVERIFY(!opensAt(QPoint(20, list()->viewport()->height() - 5)));
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, onRow);
    QTest::mouseDClick(list()->viewport(), Qt::LeftButton, {}, onRow);
    QCOMPARE(fields(), u".C1|*oOne"_s);
    QVERIFY(!opensAt(onRow));
}

void tst_FParameters::doesNotLoseUnsavedValues()
{
    open();
    press(u"Ins \"C1\" Return"_s);
    QVERIFY(!m_window->close());
    QCOMPARE(m_user->questions.size(), 1);
    {
        // No record is written into the transaction of a batch.
        const Batch::Run batch(m_main->batch);
        press(u"Return"_s);
    }
    m_window->selectFirstTab();
    QCOMPARE(picture(), u" [oC1|*o] ok"_s);
    press(u"Return"_s);
    QCOMPARE(picture(), u">C1,"_s);
    press(u"Ins \"C2\""_s);
    m_user->yesNoAnswer = true;
    QVERIFY(m_window->close());
}

void tst_FParameters::translatesItsCaptions()
{
    m_main->language = u"FR"_s;
    open();
    QCOMPARE(m_window->windowTitle(), u"Configuration - Société"_s);
    QCOMPARE(strip()->tabText(2), u"Postes"_s);
    QCOMPARE(control<QLabel>(*m_window, u"FLab_1"_s)->text(), u"Société"_s);
    press(u"Ins"_s);
    QCOMPARE(ok()->text(), u"A&jouter"_s);
    QCOMPARE(control<QLabel>(*m_window, u"Label_2"_s)->text(), u"Nom de la société"_s);
}

QTEST_MAIN(tst_FParameters)
#include "tst_FParameters.moc"

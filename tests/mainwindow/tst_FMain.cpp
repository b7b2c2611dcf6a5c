// The main window: menu, rights, captions, children, closing.
#include "editor/list/RecordView.h"
#include "mainwindow/FMain.h"
#include "mainwindow/menu.h"
#include "runs/SelectionPanel.h"
#include "support/controls.h"
#include "support/test_database.h"

#include <QAction>
#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QStatusBar>
#include <QTest>
#include <QTreeWidget>

using namespace Qt::StringLiterals;
using namespace velmora;

class tst_FMain : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void translatesItsBuiltInTexts();
    void enablesByRightsAndActions();
    void saysWhyAnItemIsDisabled();
    void showsEachChildOnce();
    void reportsAFailingAction();
    void stopsARunBeforeItQuits();
    void remembersItsWindows();
    void opensChildrenInside();
    void startsWithWhatCanBeDone();
    void showsTheCompaniesAnew();
    void offersLanguages();

private:
    /// Shows a child of that name.
    static void showChild(FMain& window, int* made = nullptr)
    {
        window.showChild(u"Child"_s, [made] {
            auto* child = new QWidget;
            child->setObjectName(u"Child"_s);
            if (made)
                ++*made;
            return child;
        });
    }
    static QAction* item(const FMain& window, const QString& control)
    {
        return window.findChild<QAction*>(control);
    }

    std::unique_ptr<TestDatabase> m_database;
};

void tst_FMain::init()
{
    m_database = std::make_unique<TestDatabase>();
    m_database->run(u"INSERT INTO SYSTEM_PARAMETERS VALUES('AUTHM', '*', '*')"_s);
}

void tst_FMain::translatesItsBuiltInTexts()
{
    m_database->run(u"DELETE FROM SYSTEM_PARAMETERS WHERE SY_CODE = '$$DESC_EN'"_s);
    const auto captions = [](const QList<QAction*>& actions) {
        QStringList texts;
        for (const QAction* action : actions)
            texts << action->text();
        return texts.join(u", "_s);
    };
    const FMain window(m_database->main);
    QCOMPARE(item(window, u"Ranges"_s)->statusTip(), u"Not available in this version yet"_s);
    QCOMPARE(window.windowTitle(), u"Velmora"_s);
    QCOMPARE(captions(window.menuBar()->actions()),
             u"Files, Configure, Generate, Phone Book, Ranges, Reboot, Windows, Help"_s);
    QCOMPARE(captions(item(window, u"PhoneBook"_s)->menu()->actions()), u"Generate, Import, Export"_s);

    m_database->run(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$DESC_EN', 'FMAIN', 'Phones')"_s);
    m_database->run(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$DESC_EN', 'FMAIN_PHONEBOOK', 'Directory')"_s);
    const FMain translated(m_database->main);
    QCOMPARE(translated.windowTitle(), u"Phones 1.1.42 - JDOE"_s);
    QCOMPARE(item(translated, u"PhoneBook"_s)->text(), u"Directory"_s);
}

void tst_FMain::enablesByRightsAndActions()
{
    const auto enabled = [this] {
        FMain window(m_database->main);
        window.setActions({{u"GenConf"_s, [] {}}, {u"Reboot"_s, [] {}}});
        QStringList controls;
        for (const MenuItem& each : menuItems())
            if (item(window, each.control)->isEnabled())
                controls << each.control;
        return controls.join(u' ');
    };
    QCOMPARE(enabled(), u"Files Quit Generate GenConf PhoneBook Reboot Help"_s);
    m_database->run(
        u"UPDATE SYSTEM_PARAMETERS SET SY_SUBCODE = 'JDOE', SY_VALUE = 'GenConf' WHERE SY_CODE = 'AUTHM'"_s);
    QCOMPARE(enabled(), u"GenConf"_s);
}

void tst_FMain::saysWhyAnItemIsDisabled()
{
    FMain window(m_database->main);
    window.show();
    const QMenuBar* bar = window.menuBar();
    QTest::mouseMove(window.menuBar(), bar->actionGeometry(item(window, u"Ranges"_s)).center());
    QTRY_COMPARE(window.statusBar()->currentMessage(), u"M207: "_s);
    QTest::mouseMove(window.menuBar(), bar->actionGeometry(item(window, u"Files"_s)).center());
    QTRY_COMPARE(window.statusBar()->currentMessage(), QString());
}

void tst_FMain::showsEachChildOnce()
{
    FMain window(m_database->main);
    int made = 0;
    window.setActions({{u"Ranges"_s, [&] { showChild(window, &made); }}});
    window.show();
    item(window, u"Ranges"_s)->trigger();
    item(window, u"Ranges"_s)->trigger();
    QCOMPARE(made, 1);
    QVERIFY(window.findChild<QWidget*>(u"Child"_s)->isVisible());
    window.findChild<QMdiSubWindow*>()->close();
    QTRY_VERIFY(!window.findChild<QWidget*>(u"Child"_s));
    item(window, u"Ranges"_s)->trigger();
    QCOMPARE(made, 2);
}

void tst_FMain::reportsAFailingAction()
{
    FMain window(m_database->main);
    window.setActions({{u"Ranges"_s, [this] { m_database->run(u"NO SQL"_s); }}});
    item(window, u"Ranges"_s)->trigger();
    QCOMPARE(m_database->user.details, QStringList(u"NO SQL"_s));
}

void tst_FMain::stopsARunBeforeItQuits()
{
    FMain window(m_database->main);
    window.show();
    showChild(window);
    bool asked = false;
    connect(&m_database->main.batch, &Batch::stopRequested, this, [&asked] { asked = true; });
    {
        const Batch::Run run(m_database->main.batch);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QTest::keyClick(&window, Qt::Key_Q, Qt::ControlModifier);
        QVERIFY(window.isVisible());
        QVERIFY(asked);
    }
    QTRY_VERIFY(!window.isVisible());
}

/// Places, widths and what was chosen last, in the next session.
void tst_FMain::remembersItsWindows()
{
    const QRect place(30, 40, 300, 200);
    m_database->addPhone(u"C2"_s, u"PAP2"_s, u"101"_s, {}, {});
    m_database->addPhone(u"C2"_s, u"GXP2000"_s, u"102"_s, {}, {});
    for (const bool again : {false, true}) {
        m_database->main.remembered = {};
        m_database->main.remembered.keepIn(m_database->folder() + "/new/windows.ini"_L1);
        RecordView list(m_database->main);
        list.setTable({u"T"_s, {{u"A"_s, u"A"_s}, {u"B"_s, u"B"_s}, {u"C"_s, u"C"_s}}, {}});
        list.clear();
        SelectionPanel selection(m_database->main, 2);
        if (again) {
            selection.chooseLast();
        } else {
            list.header()->resizeSection(1, 234);
            choose(filter(selection, 1), u"C2"_s);
            choose(filter(selection, 2), u"PAP2"_s);
        }
        QCOMPARE(list.header()->sectionSize(1), 234);
        QCOMPARE(selection.company() + selection.equipment(), u"C2PAP2"_s);
        FMain window(m_database->main);
        if (!again)
            window.resize(700, 500);
        window.show();
        showChild(window);
        auto* child = window.findChild<QMdiSubWindow*>();
        if (!again)
            child->setGeometry(place);
        QCOMPARE(child->geometry(), place);
        QCOMPARE(window.size(), QSize(700, 500));
        window.close();
    }
}

/// Kept in a larger window; and one that is wider than the frame is scrolled, not cut off.
void tst_FMain::opensChildrenInside()
{
    for (const int least : {100, 800}) {
        m_database->main.remembered.set(u"Child"_s, QRect(900, 900, 900, 700));
        FMain window(m_database->main);
        window.resize(500, 400);
        window.show();
        window.showChild(u"Child"_s, [least] {
            auto* child = new QWidget;
            child->setObjectName(u"Child"_s);
            child->setMinimumSize(least, 50);
            return child;
        });
        const auto* child = window.findChild<QMdiSubWindow*>();
        const QRect frame = child->parentWidget()->rect();
        QCOMPARE(frame.contains(child->geometry()), least == 100);
        QVERIFY(child->y() >= 0 && child->height() <= frame.height() && child->x() <= 0);
        QVERIFY(child->widget()->width() >= least);
    }
}

/// The keyboard is on the start page when the program starts and when the last child is closed.
void tst_FMain::startsWithWhatCanBeDone()
{
    m_database->run(u"DELETE FROM SYSTEM_PARAMETERS WHERE SY_CODE = 'AUTHM'"_s);
    for (const QString& control : {u"PbImp"_s, u"Ranges"_s, u"Reboot"_s})
        m_database->run("INSERT INTO SYSTEM_PARAMETERS VALUES('AUTHM', '"_L1 + control + "', '*')"_L1);
    FMain window(m_database->main);
    window.setActions({{u"Ranges"_s, [&] { showChild(window); }}, {u"Reboot"_s, [] {}}, {u"PbImp"_s, [] {}}});
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QStringList visible;
    for (const QPushButton* button : window.findChildren<QPushButton*>())
        if (button->isVisible())
            visible << button->objectName();
    // No right to the submenu, no way to its item.
    QCOMPARE(visible, QStringList({u"Step_Ranges"_s, u"Step_Reboot"_s}));
    for (int round = 0; round < 2; ++round) {
        auto* ranges = window.findChild<QPushButton*>(u"Step_Ranges"_s);
        QTRY_COMPARE(QApplication::focusWidget(), ranges);
        QTest::keyClick(ranges, Qt::Key_Return);
        QVERIFY(window.findChild<QWidget*>(u"Child"_s));
        QTest::keyClick(&window, Qt::Key_W, Qt::ControlModifier);
        QTRY_VERIFY(!window.findChild<QWidget*>(u"Child"_s));
    }
}

void tst_FMain::showsTheCompaniesAnew()
{
    FMain window(m_database->main);
    window.show();
    auto* companies = window.findChild<QTreeWidget*>();
    const auto* hint = window.findChild<QLabel*>(u"Hint"_s);
    QVERIFY(hint->text().startsWith("No company"_L1));
    QVERIFY(hint->isVisible() && !companies->isVisible());

    showChild(window);
    m_database->addPhone(u"LUNA"_s, u"PAP2"_s, u"101"_s, u"x"_s, u"1"_s);
    m_database->addPhone(u"LUNA"_s, u"GXP2000"_s, u"102"_s, u"x"_s, u"2"_s);
    m_database->addPhone(u"LUNA"_s, u"PAP2"_s, u"103"_s, u"x"_s, u"3"_s);
    m_database->run(u"UPDATE PHONES SET EQ_CODE = NULL WHERE PH_CODE = '103'"_s);
    m_database->run(u"INSERT INTO COMPANY VALUES('ALBA', 'Alba')"_s);
    window.findChild<QMdiSubWindow*>()->close();
    QTRY_VERIFY(companies->isVisible());
    QStringList shown;
    QTreeWidgetItem* heading = companies->headerItem();
    for (const QTreeWidgetItem* row : {heading, companies->topLevelItem(0), companies->topLevelItem(1)}) {
        QStringList texts;
        for (int column = 0; column < row->columnCount(); ++column)
            texts << row->text(column);
        shown << texts.join(u'|');
    }
    QCOMPARE(shown, QStringList({u"Company|Name of the company|Phones|\u2013|GXP2000|PAP2"_s,
                                 u"ALBA|Alba|0|||"_s, u"LUNA|company|3|1|1|1"_s}));

    QStringList opened;
    window.setActions(
        {{u"Ranges"_s, [&] { opened << u"Ranges"_s; }}, {u"Reboot"_s, [&] { opened << u"Reboot"_s; }}});
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Down, Qt::Key_Return})
        QTest::keyClick(companies, key);
    QCOMPARE(opened, QStringList({u"Ranges"_s, u"Reboot"_s}));
    const Remembered& remembered = m_database->main.remembered;
    QCOMPARE(remembered.value(Remembered::lastCompany), u"LUNA"_s);
    QVERIFY(!remembered.value(Remembered::lastEquipment).isValid());
    const QPoint ofModel = companies->visualRect(companies->model()->index(1, 4)).center();
    QTest::mouseClick(companies->viewport(), Qt::LeftButton, {}, ofModel);
    QTest::mouseDClick(companies->viewport(), Qt::LeftButton, {}, ofModel);
    QCOMPARE(opened.size(), 3);
    QCOMPARE(remembered.value(Remembered::lastEquipment), u"GXP2000"_s);

    showChild(window);
    m_database->run(u"ALTER TABLE PHONES RENAME TO GONE"_s);
    window.findChild<QMdiSubWindow*>()->close();
    QTRY_VERIFY(hint->isVisible());
    QVERIFY2(hint->text().contains("PHONES"_L1), qPrintable(hint->text()));
    QCOMPARE(m_database->user.shown, QStringList());
}

void tst_FMain::offersLanguages()
{
    FMain window(m_database->main);
    QStringList stored;
    window.offerLanguages({u"EN"_s, u"FR"_s}, u"EN"_s, [&](const QString& language) {
        if (!stored.isEmpty())
            m_database->run(u"NO SQL"_s);
        stored << language;
    });
    window.show();
    auto* english = window.findChild<QPushButton*>(u"Language_EN"_s);
    auto* french = window.findChild<QPushButton*>(u"Language_FR"_s);
    QVERIFY(french->isVisible() && !english->isEnabled());
    QTest::keyClick(french, Qt::Key_Return);
    QCOMPARE(stored, QStringList(u"FR"_s));
    QVERIFY(english->isEnabled() && !french->isEnabled());
    const auto* note = window.findChild<QLabel*>(u"LanguageNote"_s);
    QCOMPARE(note->text(), u"The language is FR from the next start on."_s);
    english->click(); // what can't be stored changes nothing
    QCOMPARE(m_database->user.details, QStringList(u"NO SQL"_s));
    QVERIFY(!french->isEnabled());
}

QTEST_MAIN(tst_FMain)
#include "tst_FMain.moc"

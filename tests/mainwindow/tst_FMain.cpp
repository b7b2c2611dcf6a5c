// The main window: menu, rights, captions, children, closing.
#include "mainwindow/FMain.h"
#include "mainwindow/menu.h"
#include "support/rows.h"
#include "support/test_database.h"

#include <QAction>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace velmora;

class tst_FMain : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void translatesItsBuiltInTexts();
    void enablesByRightsAndActions_data();
    void enablesByRightsAndActions();
    void saysWhyAnItemIsDisabled();
    void showsEachChildOnce();
    void reportsAFailingAction();
    void quits();
    void stopsARunBeforeItCloses();
    void remembersItsWindows();

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
    const FMain window(m_database->main);
    QCOMPARE(m_database->user.shown, QStringList());
    QCOMPARE(item(window, u"Ranges"_s)->statusTip(), u"Not available in this version yet"_s);
    QCOMPARE(window.windowTitle(), u"Velmora"_s);
    QStringList bar;
    for (const QAction* action : window.menuBar()->actions())
        bar << action->text();
    QCOMPARE(bar, QStringList({u"Files"_s, u"Configure"_s, u"Generate"_s, u"Phone Book"_s, u"Ranges"_s,
                               u"Reboot"_s, u"Windows"_s, u"Help"_s}));
    QStringList book;
    for (const QAction* action : item(window, u"PhoneBook"_s)->menu()->actions())
        book << action->text();
    QCOMPARE(book, QStringList({u"Generate"_s, u"Import"_s, u"Export"_s}));

    for (const auto& [code, text] :
         {std::pair(u"FMAIN"_s, u"Phones"_s), {u"FMAIN_PHONEBOOK"_s, u"Directory"_s}})
        m_database->main.connection.execute(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$DESC_EN', ?, ?)"_s,
                                            {code, text});
    const FMain translated(m_database->main);
    QCOMPARE(translated.windowTitle(), u"Phones 1.1.42 - JDOE"_s);
    QCOMPARE(item(translated, u"PhoneBook"_s)->text(), u"Directory"_s);
}

void tst_FMain::enablesByRightsAndActions_data()
{
    columns<QString, QStringList>("right", "enabled");
    row("everything", "'*', '*'",
        QStringList(
            {u"Files"_s, u"Quit"_s, u"Generate"_s, u"GenConf"_s, u"PhoneBook"_s, u"Reboot"_s, u"Help"_s}));
    row("one item of the user", "'JDOE', 'GenConf'", QStringList(u"GenConf"_s));
    row("an item that does not exist yet", "'JDOE', 'Ranges'", QStringList());
    row("another user", "'ASMITH', '*'", QStringList());
}

void tst_FMain::enablesByRightsAndActions()
{
    QFETCH(QString, right);
    m_database->run(u"DELETE FROM SYSTEM_PARAMETERS WHERE SY_CODE = 'AUTHM'"_s);
    m_database->run("INSERT INTO SYSTEM_PARAMETERS VALUES('AUTHM', "_L1 + right + u')');
    FMain window(m_database->main);
    window.setActions({{u"GenConf"_s, [] {}}, {u"Reboot"_s, [] {}}});
    QStringList enabled;
    for (const MenuItem& each : menuItems())
        if (item(window, each.control)->isEnabled())
            enabled << each.control;
    QTEST(enabled, "enabled");
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
    QCOMPARE(m_database->user.shown.size(), 1);
    QVERIFY(m_database->user.shown[0].startsWith("Database error: "_L1));
    QCOMPARE(m_database->user.details, QStringList(u"NO SQL"_s));
}

void tst_FMain::quits()
{
    FMain window(m_database->main);
    window.show();
    showChild(window);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QTest::keyClick(&window, Qt::Key_Q, Qt::ControlModifier);
    QVERIFY(!window.isVisible());
}

void tst_FMain::stopsARunBeforeItCloses()
{
    FMain window(m_database->main);
    window.show();
    bool asked = false;
    connect(&m_database->main.batch, &Batch::stopRequested, this, [&asked] { asked = true; });
    {
        const Batch::Run run(m_database->main.batch);
        window.close();
        QVERIFY(window.isVisible());
        QVERIFY(asked);
    }
    QTRY_VERIFY(!window.isVisible());
}

void tst_FMain::remembersItsWindows()
{
    const QString settings = m_database->folder() + "/windows.ini"_L1;
    const QRect place(30, 40, 300, 200);
    const auto open = [](FMain& window) {
        showChild(window);
        return window.findChild<QMdiSubWindow*>();
    };
    for (const bool again : {false, true}) {
        FMain window(m_database->main, settings);
        if (!again)
            window.resize(700, 500);
        window.show();
        QMdiSubWindow* child = open(window);
        if (!again)
            child->setGeometry(place);
        QCOMPARE(child->geometry(), place);
        QCOMPARE(window.size(), QSize(700, 500));
        window.close();
    }
    // Without a file nothing is remembered.
    FMain window(m_database->main);
    window.show();
    QVERIFY(open(window)->geometry() != place);
}

QTEST_MAIN(tst_FMain)
#include "tst_FMain.moc"

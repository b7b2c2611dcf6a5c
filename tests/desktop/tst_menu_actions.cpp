// Every item of the main window's menu opens its window, in both languages, over a database as the program
// creates it.
#include "common/MMain.h"
#include "desktop/menu_actions.h"
#include "editor/list/RecordView.h"
#include "files/whole_file.h"
#include "mainwindow/menu.h"
#include "startup/start_up.h"
#include "support/program_folder_fixture.h"
#include "support/recorded_prompts.h"
#include "support/rows.h"
#include "support/test_database.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPushButton>
#include <QTest>
#include <QTextBrowser>
#include <QTreeWidget>

using namespace Qt::StringLiterals;
using namespace velmora;

class tst_menu_actions : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void opensEveryWindow_data();
    void opensEveryWindow();
    void changesTheLanguage();
    void leadsFromAPhoneToItsStatusAndBack();
};

void tst_menu_actions::opensEveryWindow_data()
{
    columns<QString>("language");
    row("English", "EN");
    row("French", "FR");
}

void tst_menu_actions::opensEveryWindow()
{
    QFETCH(QString, language);
    const ProgramFolderFixture folder(QStringLiteral(VELMORA_SHARE));
    const QString page = "manual/"_L1 + language.toLower() + ".htm"_L1;
    const QByteArray manual = readWholeFile(QStringLiteral(VELMORA_SHARE "/") + page);
    QVERIFY(QDir(folder.path()).mkdir(u"manual"_s));
    folder.write(page, manual);
    RecordedPrompts user;
    QVERIFY(!StartUp(*std::make_unique<MMain>(folder.path(), user.prompts()), u"jdoe"_s));
    MMain main(folder.path(), user.prompts());
    QVERIFY(StartUp(main, u"jdoe"_s));
    user.shown.clear();
    main.language = language;
    main.connection.execute(u"INSERT INTO COMPANY VALUES('C1', 'One')"_s);

    FMain window(main);
    window.setActions(menuActions(window, main));
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    auto* help = window.findChild<QAction*>(u"Help1"_s);
    QStringList titles;
    QStringList chapters;
    for (const MenuItem& item : menuItems()) {
        auto* action = window.findChild<QAction*>(item.control);
        QVERIFY2(action->isEnabled(), qPrintable(item.control));
        if (!action->menu() && item.control != "Quit"_L1) {
            action->trigger();
            const QMdiSubWindow* opened = window.findChild<QMdiArea*>()->activeSubWindow();
            QVERIFY2(opened && opened->isVisible(), qPrintable(item.control));
            titles << opened->windowTitle();
            const QWidget* focus = QApplication::focusWidget();
            QVERIFY2(opened->isAncestorOf(focus), qPrintable(item.control));
            QVERIFY2(focus->focusPolicy() & Qt::TabFocus, qPrintable(item.control));
            QVERIFY2(focus->objectName() != "List1"_L1 && focus->objectName() != "Lb1"_L1,
                     qPrintable(item.control));
            // Help tells about the window that it is called from, and Page Down reads on there.
            help->trigger();
            const auto* browser = window.findChild<QWidget*>(u"frmBrowser"_s);
            QCOMPARE(QApplication::focusWidget(), browser->findChild<QTextBrowser*>());
            QTRY_VERIFY(!browser->findChild<QComboBox*>()->currentText().isEmpty());
            chapters << browser->findChild<QComboBox*>()->currentText().section(u'#', 1);
            QVERIFY(chapters.last().isEmpty() ||
                    manual.contains("<a name=\"" + chapters.last().toUtf8() + '"'));
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
            QTRY_VERIFY(!window.findChild<QWidget*>(u"frmBrowser"_s));
        }
    }
    QCOMPARE(titles.size(), 10);
    QCOMPARE(titles.removeDuplicates(), 0);
    QCOMPARE(chapters.join(u' '), u"editor generate status phonebook phonebook phonebook ranges reboot  "_s);
    QCOMPARE(user.shown, QStringList());
}

/// Only for who has a right to the settings.
void tst_menu_actions::changesTheLanguage()
{
    const ProgramFolderFixture folder(QStringLiteral(VELMORA_SHARE));
    RecordedPrompts user;
    QVERIFY(!StartUp(*std::make_unique<MMain>(folder.path(), user.prompts()), u"jdoe"_s));
    MMain main(folder.path(), user.prompts());
    QVERIFY(StartUp(main, u"jdoe"_s));
    FMain window(main);
    offerLanguages(window, main);
    window.findChild<QPushButton*>(u"Language_FR"_s)->click();
    QCOMPARE(main.setting(u"$$LNG"_s, u"$"_s), u"FR"_s);
    main.connection.execute(u"UPDATE SYSTEM_PARAMETERS SET SY_VALUE = 'Y' WHERE SY_CODE = 'AUTHC'"_s);
    FMain other(main);
    offerLanguages(other, main);
    QVERIFY(!other.findChild<QPushButton*>(u"Language_FR"_s));
}

void tst_menu_actions::leadsFromAPhoneToItsStatusAndBack()
{
    TestDatabase database;
    for (const QString& company : {u"C1"_s, u"C2"_s})
        for (const QString& code : {u"101"_s, u"102"_s})
            database.addPhone(company, u"PAP2"_s, code, "phone "_L1 + code, u"000000000000"_s);
    database.addParameter(u"PAP2"_s, u"a"_s, u"E"_s, u"x"_s);
    database.addParameter(u"PAP2"_s, u"b"_s, u"C"_s, u""_s);
    for (const char* row : {"'AUTHM', '*', '*'", "'AUTHC', '*', '*'", "'$$TABS', '1', 'PHONES'",
                            "'$$TABS', '2', 'COMPANY_PARAMETERS'"})
        database.run("INSERT INTO SYSTEM_PARAMETERS VALUES("_L1 + QLatin1StringView(row) + u')');
    for (const QString& company : {u"C1"_s, u"C2"_s})
        database.run("INSERT INTO COMPANY_PARAMETERS VALUES('"_L1 + company + "', 'PAP2', 'b', 'y')"_L1);
    FMain window(database.main);
    window.setActions(menuActions(window, database.main));
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.findChild<QAction*>(u"Config"_s)->trigger();
    auto* records = window.findChild<RecordView*>(u"ListCom"_s);
    QTRY_COMPARE(records->model()->rowCount(), 4);
    records->selectRow(3);
    records->setFocus();
    QTest::keyClick(records, Qt::Key_I, Qt::ControlModifier);

    const auto* status = window.findChild<QWidget*>(u"FStatus"_s);
    QVERIFY(status);
    const auto* phones = status->findChild<QTreeView*>(u"Phones"_s);
    QCOMPARE(phones->currentIndex().data().toString(), u"102"_s);
    QCOMPARE(status->findChild<QComboBox*>(u"Filter_1"_s)->currentText(), u"C2 \\\\ company"_s);
    status->findChild<QTabWidget*>(u"Pages"_s)->setCurrentIndex(1);
    auto* values = status->findChild<QTreeWidget*>(u"PageValues"_s);
    values->setCurrentItem(values->topLevelItem(1));
    values->setFocus();
    QTest::keyClick(values, Qt::Key_Return);
    QTRY_COMPARE(window.activeChild(), u"FParameters"_s);
    QTRY_COMPARE(records->selectedRecord(), QStringList({u"C2"_s, u"PAP2"_s, u"b"_s, u"y"_s}));
    QCOMPARE(records->model()->rowCount(), 1); // the filters show this company's values alone
}

QTEST_MAIN(tst_menu_actions)
#include "tst_menu_actions.moc"

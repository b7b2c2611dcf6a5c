// Every item of the main window's menu opens its window, in both languages, over a database as the program
// creates it.
#include "desktop/menu_actions.h"
#include "startup/MMain.h"
#include "startup/menu.h"
#include "startup/start_up.h"
#include "support/program_folder_fixture.h"
#include "support/recorded_prompts.h"
#include "support/rows.h"

#include <QAction>
#include <QMdiSubWindow>
#include <QMenu>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace velmora;

class tst_menu_actions : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void opensEveryWindow_data();
    void opensEveryWindow();
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
    RecordedPrompts user;
    QVERIFY(!StartUp(*std::make_unique<MMain>(folder.path(), user.prompts()), u"jdoe"_s));
    MMain main(folder.path(), user.prompts());
    QVERIFY(StartUp(main, u"jdoe"_s));
    user.shown.clear();
    main.language = language;

    FMain window(main);
    window.setActions(menuActions(window, main));
    window.show();
    QStringList titles;
    for (const MenuItem& item : menuItems()) {
        auto* action = window.findChild<QAction*>(item.control);
        QVERIFY2(action->isEnabled(), qPrintable(item.control));
        if (!action->menu() && item.control != "Quit"_L1) {
            action->trigger();
            const QMdiSubWindow* opened = window.findChild<QMdiArea*>()->activeSubWindow();
            QVERIFY2(opened && opened->isVisible(), qPrintable(item.control));
            titles << opened->windowTitle();
        }
    }
    QCOMPARE(titles.size(), 9);
    QCOMPARE(titles.removeDuplicates(), 0);
    QCOMPARE(user.shown, QStringList());
}

QTEST_MAIN(tst_menu_actions)
#include "tst_menu_actions.moc"

// What all windows of long runs do alike: start, stop, close, wait for another run, survive a lost database.
#include "files/whole_file.h"
#include "generation/FGenerate.h"
#include "phonebook/windows/FPBExp.h"
#include "phonebook/windows/FPBGen.h"
#include "phonebook/windows/FPBImp.h"
#include "ranges/FRgen.h"
#include "reboot/FReboot.h"
#include "runs/RunLog.h"
#include "support/controls.h"
#include "support/device_double.h"
#include "support/rows.h"
#include "support/test_database.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace velmora;

class tst_BatchWindow : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void endsInEveryWay_data();
    void endsInEveryWay();
    void survivesALostDatabase_data() { endsInEveryWay_data(); }
    void survivesALostDatabase();
    void showsEveryLineWhole();

private:
    std::unique_ptr<BatchWindow> make(const QString& name);
    /// Opens the window with all that a run needs chosen.
    std::unique_ptr<BatchWindow> open(const QString& name);
    QPushButton* start(const BatchWindow& window) const
    {
        QPushButton* ok = button(window, u"Ok"_s);
        return ok ? ok : button(window, u"Generate"_s);
    }

    std::unique_ptr<TestDatabase> m_database;
    DeviceDouble m_device{pap2Device("secret")};
};

void tst_BatchWindow::init()
{
    m_database = std::make_unique<TestDatabase>();
    m_database->user.onEvents = [] { QCoreApplication::processEvents(); };
    m_database->user.yesNoAnswer = true;
    m_database->addPhone(u"C1"_s, u"PAP2"_s, u"101"_s, u"Hall"_s, u"000000000101"_s);
    m_database->addPhone(u"C1"_s, u"GXP2000"_s, u"102"_s, u"Bar"_s, u"000000000102"_s);
    m_database->addParameter(u"PAP2"_s, u"ip"_s, u"E"_s, u"127.0.0.1"_s);
    m_database->addParameter(u"PAP2"_s, u"password"_s, u"E"_s, u"secret"_s);
    for (const QString& flag : {u"V"_s, u"W"_s, u"H"_s})
        m_database->run("INSERT INTO CREATION_FLAGS VALUES('"_L1 + flag + "', 'x', 'Y')"_L1);
    for (const QString& row :
         {u"'$$PAP2', '$$IP1', 'ip'"_s, u"'$$PAP2', '$$EPWD', 'password'"_s, u"'C1PAP2', '$$GENPATH', '%1'"_s,
          u"'C1GXP2000', '$$PBGEN', '%1'"_s, u"'C1GXP2000', '$$PBIMP', '%1\\'"_s, u"'C1', '$$PBExp', '%1'"_s,
          u"'$$DESC_EN', 'CANCEL_ABO', 'Stop'"_s, u"'$$DESC_EN', 'CANCEL_END', 'Close'"_s})
        m_database->run("INSERT INTO SYSTEM_PARAMETERS VALUES("_L1 +
                        QString(row).replace("%1"_L1, m_database->folder()) + u')');
    m_database->run(u"INSERT INTO PHONE_BOOK VALUES('C1', '201', 'One', 'V', '', '', '', '')"_s);
    writeWholeFile(m_database->folder() + "/confUsers.ini"_L1,
                   "[Users]\n[User1]\nName=A\nSurname=B\nExtension=201\nend\n");
}

std::unique_ptr<BatchWindow> tst_BatchWindow::make(const QString& name)
{
    MMain& main = m_database->main;
    if (name == "FRgen"_L1)
        return std::make_unique<FRgen>(main);
    if (name == "FGenerate"_L1)
        return std::make_unique<FGenerate>(main);
    if (name == "FReboot"_L1)
        return std::make_unique<FReboot>(main, m_device.port());
    if (name == "FPBGen"_L1)
        return std::make_unique<FPBGen>(main);
    if (name == "FPBImp"_L1)
        return std::make_unique<FPBImp>(main);
    return std::make_unique<FPBExp>(main);
}

std::unique_ptr<BatchWindow> tst_BatchWindow::open(const QString& name)
{
    std::unique_ptr<BatchWindow> window = make(name);
    choose(window->findChild<QComboBox*>(), u"C1"_s);
    if (filter(*window, 2))
        choose(filter(*window, 2), name.startsWith("FPB"_L1) ? u"GXP"_s : u"PAP"_s);
    if (name == "FReboot"_L1)
        choose(filter(*window, 3), u"101"_s);
    for (auto* code : window->findChildren<QLineEdit*>(QRegularExpression(u"^P(From|To)$"_s)))
        code->setText(u"201"_s);
    window->show();
    return window;
}

void tst_BatchWindow::endsInEveryWay_data()
{
    columns<QString, QString>("name", "stopped");
    row("files", "FGenerate", "M205: 0 / 1");
    row("phone book", "FPBGen", "Stopped: nothing was changed");
    row("import", "FPBImp", "Stopped: nothing was changed");
    row("export", "FPBExp", "Stopped: nothing was changed");
    row("ranges", "FRgen", "Stopped. Codes done: 0 / 1");
    row("reboot", "FReboot", "PAP2 127.0.0.1 - 101 - Hall");
}

void tst_BatchWindow::endsInEveryWay()
{
    QFETCH(QString, name);
    enum Ending { Stop, Escape, Close, MainWindowClosed, Itself };
    for (const Ending ending : {Stop, Escape, Close, MainWindowClosed, Itself}) {
        const std::unique_ptr<BatchWindow> window = open(name);
        QPushButton* cancel = button(*window, u"Cancel"_s);
        bool ran = false;
        QTimer::singleShot(0, window.get(), [&] {
            ran = true;
            QVERIFY(!start(*window)->isEnabled());
            QVERIFY(!window->findChild<QComboBox*>()->isEnabled());
            QCOMPARE(cancel->text(), u"Stop"_s);
            if (ending == Stop)
                QTest::mouseClick(cancel, Qt::LeftButton);
            else if (ending == Escape)
                QTest::keyClick(window.get(), Qt::Key_Escape);
            else if (ending == Close)
                QVERIFY(!window->close());
            else if (ending == MainWindowClosed)
                m_database->main.batch.requestStop();
        });
        QVERIFY(start(*window)->isEnabled());
        QTest::mouseClick(start(*window), Qt::LeftButton);
        QVERIFY(ran);
        QVERIFY(!m_database->main.batch.running());
        const QString last = lines(*window).value(lines(*window).size() - 1);
        QFETCH(QString, stopped);
        if (ending != Itself)
            QCOMPARE(last, stopped);
        else
            QVERIFY(last != stopped);
        QTRY_COMPARE(window->isVisible(), ending != Close);
        QCOMPARE(cancel->text(), u"Close"_s);
        QVERIFY(start(*window)->isEnabled());
        // While another window's run goes on, this one can neither start nor ask anything.
        const Batch::Run other(m_database->main.batch);
        QVERIFY(!start(*window)->isEnabled());
        QVERIFY(!window->findChild<QComboBox*>()->isEnabled());
    }
}

void tst_BatchWindow::survivesALostDatabase()
{
    QFETCH(QString, name);
    const std::unique_ptr<BatchWindow> window = open(name);
    m_database->main.connection.close();
    QTest::mouseClick(start(*window), Qt::LeftButton);
    QCOMPARE(m_database->user.shown.value(0), u"Database error: No database is open."_s);
    QVERIFY(!m_database->main.batch.running());
    QVERIFY(start(*window)->isEnabled());
}

void tst_BatchWindow::showsEveryLineWhole()
{
    RunLog log(m_database->main, u"List1"_s);
    log.resize(300, 300);
    log.show();
    const auto* list = log.findChild<QListWidget*>();
    const auto* whole = log.findChild<QPlainTextEdit*>();
    const QString wide = u"a line that is much wider than the list "_s.repeated(4);
    for (int line = 0; line < 50; ++line)
        log.append({line == 20 ? wide : u"short"_s});
    log.showNewLines();
    QTRY_VERIFY(list->horizontalScrollBar()->maximum() >=
                list->fontMetrics().horizontalAdvance(wide) - list->viewport()->width());
    QVERIFY(!whole->isVisible());
    log.append({wide, true});
    log.showNewLines();
    QVERIFY(whole->isVisible());
    QCOMPARE(whole->toPlainText(), wide);
    // What takes place from the list does not hide its last line.
    QTRY_VERIFY(list->viewport()->rect().contains(list->visualItemRect(list->item(50)).bottomLeft()));
}

QTEST_MAIN(tst_BatchWindow)
#include "tst_BatchWindow.moc"

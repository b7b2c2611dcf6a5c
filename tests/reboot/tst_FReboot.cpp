// The window that restarts phones, driven with mouse and keys against devices that are none.
#include "reboot/FReboot.h"
#include "support/controls.h"
#include "support/device_double.h"
#include "support/rows.h"
#include "support/test_database.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace velmora;

class tst_FReboot : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void restartsTheChosenPhones();
    void showsWhoIsVisited();
    void stopsAtOnce();
    void startsAnewAfterAnUnknownModel();

private:
    QPushButton* button(const QString& name) const { return velmora::button(*m_window, name); }
    QStringList lines() const { return velmora::lines(*m_window); }
    QStringList labels() const;
    /// Opens the window with company C1, a model and all its phones chosen.
    void open(const DeviceDouble& device, const QString& equipment = u"PAP2"_s);

    std::unique_ptr<TestDatabase> m_database;
    std::unique_ptr<FReboot> m_window;
};

void tst_FReboot::init()
{
    m_database = std::make_unique<TestDatabase>();
    for (const QString& row :
         {u"'$$PAP2', '$$IP1', 'ip'"_s, u"'$$PAP2', '$$EPWD', 'password'"_s,
          u"'$$DESC_EN', 'CANCEL_ABO', 'Stop'"_s, u"'$$DESC_EN', 'CANCEL_END', 'Close'"_s})
        m_database->run("INSERT INTO SYSTEM_PARAMETERS VALUES("_L1 + row + u')');
    for (const QString& code : {u"101"_s, u"102"_s, u"103"_s})
        m_database->addPhone(u"C1"_s, u"PAP2"_s, code, "phone "_L1 + code, u"000000000000"_s);
    m_database->addParameter(u"PAP2"_s, u"ip"_s, u"E"_s, u"127.0.0.1"_s);
    m_database->addParameter(u"PAP2"_s, u"password"_s, u"E"_s, u"secret"_s);
    m_database->addPhone(u"C1"_s, u"TOASTER"_s, u"104"_s, u"kitchen"_s, u"000000000000"_s);
}

void tst_FReboot::cleanup()
{
    m_window.reset();
    m_database.reset();
}

QStringList tst_FReboot::labels() const
{
    QStringList texts;
    for (const QLabel* label : m_window->findChildren<QLabel*>())
        texts << label->text();
    return texts;
}

void tst_FReboot::open(const DeviceDouble& device, const QString& equipment)
{
    if (!m_window)
        m_window = std::make_unique<FReboot>(m_database->main, device.port());
    m_window->show();
    choose(filter(*m_window, 1), u"C1"_s);
    choose(filter(*m_window, 2), equipment);
    QVERIFY(!button(u"Ok"_s)->isEnabled()); // no phones are proposed
    choose(filter(*m_window, 3), u"10"_s);
    if (equipment == "PAP2"_L1)
        choose(filter(*m_window, 4), u"103"_s);
}

void tst_FReboot::restartsTheChosenPhones()
{
    const DeviceDouble device(pap2Device("secret"));
    m_window = std::make_unique<FReboot>(m_database->main, device.port());
    QVERIFY(!button(u"Ok"_s)->isEnabled());
    open(device);
    QVERIFY2(button(u"Ok"_s)->text().contains("3 phones"_L1), qPrintable(button(u"Ok"_s)->text()));
    QTest::keyClick(filter(*m_window, 3), Qt::Key_Down);
    QTest::keyClick(filter(*m_window, 4), Qt::Key_Return);
    QCOMPARE(lines(), QStringList()); // one Return in a list must not restart a company
    QTest::keyClick(button(u"Ok"_s), Qt::Key_Return);
    QCOMPARE(lines(), QStringList({u"PAP2 127.0.0.1 - 102 - phone 102"_s, u"M15: "_s,
                                   u"PAP2 127.0.0.1 - 103 - phone 103"_s, u"M15: "_s}));
    QCOMPARE(device.received().size(), 4);
    QCOMPARE(m_window->findChild<QProgressBar*>()->text(), u"2 / 2"_s);
    QVERIFY(labels().contains(u"2 restarted, 0 refused, 0 unreachable"_s));
    QVERIFY(button(u"Ok"_s)->hasFocus());
}

void tst_FReboot::showsWhoIsVisited()
{
    QStringList seen;
    const DeviceDouble device([this, &seen](QTcpSocket& connection, const QByteArray&) {
        QVERIFY(!button(u"Ok"_s)->isEnabled());
        QCOMPARE(button(u"Cancel"_s)->text(), u"Stop"_s);
        seen << labels().filter(u"phone 10"_s) << m_window->findChild<QProgressBar*>()->text();
        connection.disconnectFromHost();
    });
    open(device);
    button(u"Ok"_s)->click();
    QCOMPARE(seen, QStringList({u"101 - phone 101   0:00"_s, u"0 / 3"_s, u"102 - phone 102   0:00"_s,
                                u"1 / 3"_s, u"103 - phone 103   0:00"_s, u"2 / 3"_s}));
    QCOMPARE(button(u"Cancel"_s)->text(), u"Close"_s);
}

void tst_FReboot::stopsAtOnce()
{
    const DeviceDouble silent([](QTcpSocket&, const QByteArray&) {});
    open(silent);
    QTimer::singleShot(300, m_window.get(),
                       [this] { QTest::mouseClick(button(u"Cancel"_s), Qt::LeftButton); });
    button(u"Ok"_s)->click();
    // An exchange that was cut off counts as ended without a challenge; no other phone is visited.
    QCOMPARE(lines(), QStringList({u"PAP2 127.0.0.1 - 101 - phone 101"_s, u"M15: "_s}));
    QVERIFY(labels().contains(u"Stopped after 1 / 3, 0 restarted, 0 refused, 0 unreachable"_s));
    QCOMPARE(silent.received().size(), 1);

    // The next run starts anew.
    QTimer::singleShot(100, m_window.get(), [this] { button(u"Cancel"_s)->click(); });
    button(u"Ok"_s)->click();
    QCOMPARE(silent.received().size(), 2);
}

void tst_FReboot::startsAnewAfterAnUnknownModel()
{
    const DeviceDouble device(pap2Device("secret"));
    open(device, u"TOASTER"_s);
    button(u"Ok"_s)->click();
    QCOMPARE(m_database->user.shown, QStringList(u"M10: TOASTER - TOASTER"_s));
    QVERIFY(button(u"Ok"_s)->isEnabled());
    open(device);
    button(u"Ok"_s)->click();
    QCOMPARE(lines().size(), 6);
}

QTEST_MAIN(tst_FReboot)
#include "tst_FReboot.moc"

// The window that restarts phones, driven with mouse and keys against devices that are none.
#include "reboot/FReboot.h"
#include "support/controls.h"
#include "support/device_double.h"
#include "support/test_database.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace velmora;

class tst_FReboot : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void restartsTheChosenPhones();
};

void tst_FReboot::restartsTheChosenPhones()
{
    TestDatabase database;
    for (const QString& row : {u"'$$PAP2', '$$IP1', 'ip'"_s, u"'$$PAP2', '$$EPWD', 'password'"_s})
        database.run("INSERT INTO SYSTEM_PARAMETERS VALUES("_L1 + row + u')');
    for (const QString& code : {u"101"_s, u"102"_s, u"103"_s})
        database.addPhone(u"C1"_s, u"PAP2"_s, code, "phone "_L1 + code, u"000000000000"_s);
    database.addParameter(u"PAP2"_s, u"ip"_s, u"E"_s, u"127.0.0.1"_s);
    database.addParameter(u"PAP2"_s, u"password"_s, u"E"_s, u"secret"_s);
    const DeviceDouble device(pap2Device("secret"));
    FReboot window(database.main, device.port());
    window.show();
    QPushButton* start = button(window, u"Ok"_s);
    const auto* progress = window.findChild<QProgressBar*>();
    const auto labels = [&window] {
        QStringList texts;
        for (const QLabel* label : window.findChildren<QLabel*>())
            texts << label->text();
        return texts;
    };
    QStringList seen;
    connect(&device, &DeviceDouble::requested, &window,
            [&] { seen << labels().filter(u"phone 10"_s).value(0).section(u':', 0, 0) << progress->text(); });

    choose(filter(window, 1), u"C1"_s);
    choose(filter(window, 2), u"PAP2"_s);
    QVERIFY(!start->isEnabled()); // no phones are proposed
    choose(filter(window, 3), u"101"_s);
    choose(filter(window, 4), u"103"_s);
    QVERIFY2(start->text().contains("3 phones"_L1), qPrintable(start->text()));
    QTest::keyClick(filter(window, 3), Qt::Key_Down);
    QTest::keyClick(filter(window, 4), Qt::Key_Return);
    QCOMPARE(lines(window), QStringList()); // one Return in a list must not restart a company
    QTest::keyClick(start, Qt::Key_Return);
    QCOMPARE(lines(window), QStringList({u"PAP2 127.0.0.1 - 102 - phone 102"_s, u"M15: "_s,
                                         u"PAP2 127.0.0.1 - 103 - phone 103"_s, u"M15: "_s}));
    seen.removeDuplicates(); // each phone is asked twice
    QCOMPARE(seen, QStringList({u"102 - phone 102   0"_s, u"0 / 2"_s, u"103 - phone 103   0"_s, u"1 / 2"_s}));
    QCOMPARE(progress->text(), u"2 / 2"_s);
    QVERIFY(labels().contains(u"2 restarted, 0 refused, 0 unreachable"_s));
    QVERIFY(start->hasFocus());

    // Those that failed, once more, whatever is chosen meanwhile.
    QPushButton* repeat = button(window, u"Repeat"_s);
    QVERIFY(!repeat->isEnabled());
    database.run(u"UPDATE EQUIPMENT_PARAMETERS SET PA_DEFAULT = 'other' WHERE PA_CODE = 'password'"_s);
    control<QSpinBox>(window, u"AtOnce"_s)->setValue(8);
    start->click();
    QVERIFY2(repeat->isEnabled() && repeat->text().endsWith("(2)"_L1), qPrintable(repeat->text()));
    database.run(u"UPDATE EQUIPMENT_PARAMETERS SET PA_DEFAULT = 'secret' WHERE PA_CODE = 'password'"_s);
    choose(filter(window, 4), u"102"_s);
    repeat->click();
    QVERIFY(labels().contains(u"2 restarted, 0 refused, 0 unreachable"_s));
    QVERIFY(!repeat->isEnabled());

    connect(&device, &DeviceDouble::requested, &window, [&] { button(window, u"Cancel"_s)->click(); });
    choose(filter(window, 4), u"103"_s);
    control<QSpinBox>(window, u"AtOnce"_s)->setValue(1);
    start->click();
    QVERIFY(labels().contains(u"Stopped after 1 / 2, 0 restarted, 0 refused, 0 unreachable"_s));
}

QTEST_MAIN(tst_FReboot)
#include "tst_FReboot.moc"

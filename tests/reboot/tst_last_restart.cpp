// When phones were restarted last, and with which file.
#include "reboot/last_restart.h"
#include "support/test_database.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace velmora;

class tst_last_restart : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void recordsAndReads();
    void findsTheFileOfAPhone();
};

void tst_last_restart::recordsAndReads()
{
    TestDatabase database;
    const Phone phone{u"C1"_s, u"PAP2"_s, u"O'1"_s, u"Hall"_s, u"000000000000"_s};
    Phone other = phone;
    other.company = u"C10"_s; // begins like the first one
    recordRestart(database.main, phone, u"abc"_s);
    recordRestart(database.main, other, u"-"_s);
    database.run(u"UPDATE SYSTEM_PARAMETERS SET SY_VALUE = '2020-01-31T00:00:00Z old'"_s);
    recordRestart(database.main, phone, u"abc"_s);
    const auto found = lastRestarts(database.main, u"C1"_s);
    QCOMPARE(found.keys(), QStringList(u"O'1"_s));
    QCOMPARE(found[u"O'1"_s].fingerprint, u"abc"_s);
    const QDateTime time = QDateTime::fromString(found[u"O'1"_s].time, Qt::ISODate);
    QVERIFY(time.timeSpec() == Qt::UTC && qAbs(time.secsTo(QDateTime::currentDateTimeUtc())) < 60);
    QCOMPARE(lastRestarts(database.main, u"C10"_s)[u"O'1"_s].time, u"2020-01-31T00:00:00Z"_s);
    QCOMPARE(database.value(u"SELECT COUNT(*) FROM SYSTEM_PARAMETERS WHERE SY_SUBCODE = 'C1 O''1'"_s),
             u"1"_s);
}

void tst_last_restart::findsTheFileOfAPhone()
{
    TestDatabase database;
    database.addPhone(u"C1"_s, u"PAP2"_s, u"101"_s, u"Hall"_s, u"000b82000001"_s);
    const Phone phone{u"C1"_s, u"PAP2"_s, u"101"_s, u"Hall"_s, u"000b82000001"_s};
    QCOMPARE(DeviceFiles(database.main).pathOf(phone), std::nullopt); // no folder is remembered
    database.run("INSERT INTO SYSTEM_PARAMETERS VALUES('C1PAP2', '$$GENPATH', '"_L1 + database.folder() +
                 "')"_L1);
    const std::optional<QString> path = DeviceFiles(database.main).pathOf(phone);
    QVERIFY(path && path->startsWith(QDir::toNativeSeparators(database.folder())));
    QCOMPARE(fingerprintOf(path), u"-"_s);
    QFile file(*path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("abc") == 3);
    file.close();
    // The SHA-256 of "abc" in the standard that defines it.
    QCOMPARE(fingerprintOf(path), u"ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"_s);
}

QTEST_GUILESS_MAIN(tst_last_restart)
#include "tst_last_restart.moc"

// Many phones in one run: side by side, watched, stopped, and chosen beforehand.
#include "reboot/dry_run.h"
#include "reboot/reboot.h"
#include "support/device_double.h"
#include "support/restart_database.h"
#include "support/rows.h"

#include <QRegularExpression>
#include <QTest>

#include <memory>
#include <random>

using namespace Qt::StringLiterals;
using namespace velmora;

namespace {

/// The devices at 127.0.0.1 and on, all on one port.
class Devices {
public:
    DeviceDouble& add(const DeviceBehaviour& behaviour)
    {
        const QString address = "127.0.0."_L1 + QString::number(m_devices.size() + 1);
        m_devices.push_back(
            std::make_unique<DeviceDouble>(behaviour, address, m_devices.empty() ? quint16{0} : port()));
        return *m_devices.back();
    }
    quint16 port() const { return m_devices.front()->port(); }

private:
    std::vector<std::unique_ptr<DeviceDouble>> m_devices;
};

} // namespace

class tst_many_phones : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_database.reset(); }
    void visitsManyAtATime();
    void pausesBetweenVisits();
    void confirms();
    void stopsInEveryPhase_data();
    void stopsInEveryPhase();
    void finishesVisitsAfterAnUnknownModel();
    void plansTheChosenPhones();
    void bearsHostileDevices();

private:
    RebootRequest request(const QString& model, int atOnce) const;
    RunReport report();

    std::unique_ptr<RestartDatabase> m_database;
    QStringList m_lines;
};

void tst_many_phones::init()
{
    m_lines.clear();
    m_database = std::make_unique<RestartDatabase>();
}

RebootRequest tst_many_phones::request(const QString& model, int atOnce) const
{
    RebootRequest all{u"C1"_s, model, u"101"_s, u"199"_s};
    all.atOnce = atOnce;
    return all;
}

RunReport tst_many_phones::report()
{
    return {[this](const QString& line) { m_lines << line; }, [](qsizetype, qsizetype) {}};
}

void tst_many_phones::visitsManyAtATime()
{
    Devices devices;
    Reboot* running = nullptr;
    qsizetype most = 0;
    QStringList expected;
    for (int number = 1; number <= 12; ++number) {
        // The later ones are the faster ones, so that visits do not end in their order.
        const DeviceDouble& device = devices.add(slowly(pap2Device("secret"), 150 - 10 * number));
        connect(&device, &DeviceDouble::requested, this,
                [&] { most = std::max(most, running->visiting().size()); });
        const QString code = QString::number(100 + number);
        m_database->addDevice(u"PAP2"_s, code, number);
        expected << u"PAP2 127.0.0.%1 - %2 - phone %2 M15: "_s.arg(QString::number(number), code);
    }
    Reboot reboot(m_database->main, devices.port(), report());
    running = &reboot;
    QElapsedTimer time;
    time.start();
    QCOMPARE(reboot.run(request(u"PAP2"_s, 4)).rebooted, 12);
    QVERIFY2(time.elapsed() < 1500, qPrintable(QString::number(time.elapsed()))); // 2.4 s one by one
    QCOMPARE(most, 4);
    // The two lines of a phone stand together, in whatever order the phones do.
    QStringList phones;
    for (qsizetype line = 0; line + 1 < m_lines.size(); line += 2)
        phones << m_lines[line] + u' ' + m_lines[line + 1];
    QVERIFY(phones != expected);
    phones.sort();
    expected.sort();
    QCOMPARE(phones, expected);
}

void tst_many_phones::pausesBetweenVisits()
{
    Devices devices;
    QElapsedTimer time;
    QList<qint64> starts;
    for (int number = 1; number <= 3; ++number) {
        connect(&devices.add(inTurn({"HTTP/1.0 200 OK\r\n\r\n"})), &DeviceDouble::requested, this,
                [&] { starts << time.elapsed(); });
        m_database->addDevice(u"PAP2"_s, QString::number(100 + number), number);
    }
    RebootRequest slow = request(u"PAP2"_s, 64);
    slow.pause = 150;
    time.start();
    QCOMPARE(Reboot(m_database->main, devices.port(), report()).run(slow).rebooted, 3);
    QVERIFY(starts.size() == 3 && starts[1] >= starts[0] + 120 && starts[2] >= starts[1] + 120);
    QVERIFY(time.elapsed() < 450); // nothing follows the last one
}

void tst_many_phones::confirms()
{
    Devices devices;
    devices.add(gxp2000Device("secret")).restartsFor(300);
    devices.add(gxp2000Device("secret")); // takes the restart, and stays up
    devices.add(gxp2000Device("secret")).restartsFor({});
    devices.add(gxp2000Device("other")).restartsFor(300);
    for (int number = 1; number <= 4; ++number)
        m_database->addDevice(u"GXP2000"_s, QString::number(100 + number), number);
    RebootRequest watched = request(u"GXP2000"_s, 1);
    watched.confirm = true;
    const WatchTimes times{50, 1'000, 2'000};
    const RebootCounts counts =
        Reboot(m_database->main, devices.port(), report(), HttpExchange::usualBudget, times).run(watched);
    QStringList told = m_lines.filter(QRegularExpression(u"^10"_s));
    told.replaceInStrings(QRegularExpression(u"\\d\\d:\\d\\d:\\d\\d"_s), u"TIME"_s);
    told.sort();
    QCOMPARE(told, QStringList({u"101 - phone 101 - restarted, down at TIME, up again at TIME"_s,
                                u"102 - phone 102 - not restarted: still up after 1 seconds"_s,
                                u"103 - phone 103 - down at TIME, not back after 2 seconds"_s}));
    QCOMPARE(summaryOf(m_database->main, counts, true),
             u"1 restarted, 1 refused, 0 unreachable, 2 not confirmed"_s);
    QCOMPARE(counts.failed, QStringList({u"102"_s, u"103"_s, u"104"_s}));
    QCOMPARE(lastRestarts(m_database->main, u"C1"_s).keys(), QStringList(u"101"_s));
}

void tst_many_phones::stopsInEveryPhase_data()
{
    columns<DeviceBehaviour, std::optional<int>, bool, int, int>("device", "downFor", "confirm", "pause",
                                                                 "unknown");
    constexpr int never = -1;
    row("connecting", DeviceBehaviour(), std::optional(never), false, 0, 0);
    row("waiting for a reply", silentDevice(), std::optional(never), false, 0, 0);
    row("waiting on a busy phone", gxp2000Device("secret", 99), std::optional(never), false, 0, 0);
    row("pausing", gxp2000Device("secret"), std::optional(never), false, 60'000, 0);
    row("watching a phone that is up", gxp2000Device("secret"), std::optional(never), true, 0, 3);
    row("watching a phone that is down", gxp2000Device("secret"), std::optional<int>(), true, 0, 3);
}

void tst_many_phones::stopsInEveryPhase()
{
    QFETCH(DeviceBehaviour, device);
    QFETCH(std::optional<int>, downFor);
    QFETCH(bool, confirm);
    QFETCH(int, pause);
    QFETCH(int, unknown);
    // Where there is no device, connections are never answered: the queue of this server is full.
    QTcpServer full;
    full.setListenBacklogSize(0);
    std::vector<std::unique_ptr<QTcpSocket>> queue;
    QVERIFY(full.listen(QHostAddress(u"127.0.0.1"_s)));
    full.pauseAccepting();
    Devices devices;
    for (int number = 1; number <= 3; ++number) {
        if (device) {
            DeviceDouble& added = devices.add(device);
            if (!downFor)
                added.restartsFor({});
        } else {
            queue.push_back(std::make_unique<QTcpSocket>());
            queue.back()->connectToHost(full.serverAddress(), full.serverPort());
        }
        m_database->addDevice(u"GXP2000"_s, QString::number(100 + number), device ? number : 1);
    }
    RebootRequest wanted = request(u"GXP2000"_s, 2);
    wanted.confirm = confirm;
    wanted.pause = pause;
    wanted.waitIfBusy = true;
    Reboot reboot(m_database->main, device ? devices.port() : full.serverPort(), report());
    QElapsedTimer sinceStop;
    QTimer::singleShot(400, this, [&] {
        sinceStop.start();
        reboot.abort();
    });
    const RebootCounts counts = reboot.run(wanted);
    QVERIFY(sinceStop.isValid() && sinceStop.elapsed() < 1000);
    QCOMPARE(counts.unknown, unknown);
    QCOMPARE(m_lines.filter(u"not known whether"_s).size(), unknown);
    QCOMPARE(counts.rebooted, pause > 0 ? 1 : 0);
    QCOMPARE(counts.failed, QStringList());
    QVERIFY(unknown > 0 || counts.visited < 3);
}

void tst_many_phones::finishesVisitsAfterAnUnknownModel()
{
    Devices devices;
    devices.add(slowly(gxp2000Device("secret"), 50));
    m_database->addDevice(u"GXP2000"_s, u"101"_s, 1);
    m_database->addDevice(u"TOASTER"_s, u"102"_s, 1);
    m_database->addDevice(u"GXP2000"_s, u"103"_s, 1);
    const RebootCounts counts = Reboot(m_database->main, devices.port(), report()).run(request({}, 8));
    QCOMPARE(m_database->user.shown, QStringList(u"M10: TOASTER - TOASTER"_s));
    QCOMPARE(m_lines, QStringList({u"GXP2000 127.0.0.1 - 101 - phone 101"_s, u"M15: "_s}));
    QCOMPARE(counts.visited, 2);
    QCOMPARE(counts.failed, QStringList(u"102"_s));
}

void tst_many_phones::plansTheChosenPhones()
{
    m_database->addDevice(u"GXP2000"_s, u"101"_s, 1);
    for (const QString& code : {u"102"_s, u"103"_s, u"104"_s})
        m_database->addDevice(u"PAP2"_s, code, 2);
    m_database->addDevice(u"NONE"_s, u"105"_s, 0);
    m_database->run(u"DELETE FROM PHONES_PARAMETERS WHERE PH_CODE = '103'"_s);
    RebootRequest chosen = request({}, 1);
    chosen.codes = {u"105"_s, u"999"_s, u"101"_s, u"104"_s, u"103"_s, u"102"_s};
    const PlanCounts counts = planReboot(m_database->main, chosen, report());
    QCOMPARE(m_lines, QStringList({u"There is no phone 999 in this company or model."_s,
                                   u"101\t127.0.0.1\tGXP2000\tGRANDSTREAM\t"_s,
                                   u"102\t127.0.0.2\tPAP2\tPAP2\tphone 104 has the same address"_s,
                                   u"103\t\tPAP2\tPAP2\tno address"_s,
                                   u"104\t127.0.0.2\tPAP2\tPAP2\tphone 102 has the same address"_s,
                                   u"105\t\tNONE\t-\t"_s}));
    QCOMPARE(counts.withRemarks, 4);

    // No file lies anywhere: one phone has restarted without one, one with another one, the others never.
    const auto restarted = [this](const QString& code, const QString& fingerprint) {
        recordRestart(m_database->main, {u"C1"_s, {}, code, {}, {}}, fingerprint);
    };
    restarted(u"101"_s, u"-"_s);
    restarted(u"102"_s, u"00ff"_s);
    m_lines.clear();
    chosen.codes->removeAll(u"999"_s);
    chosen.changedOnly = true;
    QCOMPARE(planReboot(m_database->main, chosen, report()).phones, 4);
    QVERIFY(m_lines.filter(QRegularExpression(u"^101"_s)).isEmpty());
}

void tst_many_phones::bearsHostileDevices()
{
    // 64 at a time, of all models: replies that are random, endless, cut off, late, or reset.
    std::mt19937 random(17);
    const auto reply = [&random](qsizetype size) {
        static const QByteArrayList words = {"HTTP/1.",
                                             "200",
                                             " 401 ",
                                             "\r\n",
                                             "\r\n\r\n",
                                             "Set-Cookie: a",
                                             ";",
                                             "=",
                                             "WWW-Authenticate: Digest ",
                                             "nonce=\"",
                                             "realm=\"x\"",
                                             "\"",
                                             "Content-Length: 99999999999999999999\r\n",
                                             "Transfer-Encoding: chunked\r\n",
                                             "ffffffffffffffff\r\n",
                                             "</html>",
                                             "device is busy",
                                             QByteArray(1, '\0'),
                                             "stale=true",
                                             QByteArray(100'000, 'x')};
        QByteArray bytes;
        while (size-- > 0)
            bytes += words[qsizetype(random() % size_t(words.size()))];
        return bytes;
    };
    Devices devices;
    const QStringList models = {u"GXP2000"_s, u"PAP2"_s, u"F1000"_s};
    for (int number = 1; number <= 64; ++number) {
        const DeviceBehaviour talks =
            inTurn({reply(12), reply(3), reply(30)}, static_cast<Afterwards>(number % 3));
        const DeviceBehaviour resets = [](QTcpSocket& connection, const QByteArray&) {
            connection.write("HTTP/1.0 20");
            connection.flush();
            connection.abort();
        };
        const DeviceBehaviour honest = deviceOf(models[number % 3], "secret");
        const QList<DeviceBehaviour> kinds = {talks, slowly(talks, 50), resets, silentDevice(), honest};
        devices.add(kinds[number % kinds.size()]);
        m_database->addDevice(models[number % 3], QString::number(100 + number), number);
    }
    Reboot reboot(m_database->main, devices.port(), report(), 400);
    const RebootCounts counts = reboot.run(request({}, 64));
    QCOMPARE(counts.visited, 64);
    QCOMPARE(counts.rebooted + counts.failed.size(), 64);
    QVERIFY(counts.rebooted >= 12 && counts.unreachable >= 12);
    QVERIFY(!m_lines.join(u'\n').contains("secret"_L1) &&
            m_lines.filter(QRegularExpression(u"YWRtaW46c2VjcmV0"_s)).isEmpty());
    QTimer::singleShot(30, this, [&] { reboot.abort(); });
    QVERIFY(reboot.run(request({}, 64)).visited <= 64);
}

QTEST_GUILESS_MAIN(tst_many_phones)
#include "tst_many_phones.moc"

// Restarting phones: requests byte by byte, exchanges with devices good and bad, whole runs.
#include "modules/reboot_requests.h"
#include "reboot/reboot.h"
#include "support/device_double.h"
#include "support/rows.h"
#include "support/silent_listener.h"
#include "support/test_database.h"

#include <QTest>

#include <functional>
#include <memory>
#include <sys/socket.h>

using namespace Qt::StringLiterals;
using namespace velmora;

namespace {

constexpr auto head =
    " HTTP/1.0\r\nAccept: */*\r\nAccept-Language: fr\r\nUser-Agent: Winsock\r\nHost: 127.0.0.1\r\n";

/// The answer of Python's hashlib to the challenge of the PAP2 double, for the password "secret".
constexpr auto digestAnswer = "371f1d59501d754cfb0b1bc3ea9f03e1";

const QByteArray okay = "HTTP/1.0 200 OK\r\n\r\n";

/// A budget that a test can wait for. It leaves room for the time that devices have to close connections.
constexpr int shortBudget = 800;
static_assert(HttpExchange::usualBudget == 5000);

const QString silence = u"   The phone did not say that it restarts"_s;

QString answered(int status)
{
    return u"   The phone did not take the restart. It answered with status %1"_s.arg(status);
}

QByteArray challenge(const QByteArray& fields)
{
    return "HTTP/1.0 401 Unauthorized\r\nWWW-Authenticate: Digest " + fields + "\r\n\r\n<html></html>";
}

} // namespace

class tst_reboot : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_database.reset(); }
    void sendsExactBytes_data();
    void sendsExactBytes();
    void asksABusyPhoneAgain();
    void keepsAConnectionToTheSameHost();
    void readsWhatAFormIsAnswered();
    void bearsWithBadDevices_data();
    void bearsWithBadDevices();
    void sharesOneBudget();
    void stopsAtUnknownModels();
    void leavesOutModelsWithoutModule();
    void needsTheModelsRows();
    void aborts_data();
    void aborts();

private:
    /// A phone of company C1 whose device is at 127.0.0.`last` and has the password "secret".
    void addDevice(const QString& equipment, const QString& code, int last);
    RebootCounts run(const QString& equipment, quint16 port, bool wait = false);
    RunReport report();

    std::unique_ptr<TestDatabase> m_database;
    QStringList m_lines;
};

void tst_reboot::init()
{
    m_lines.clear();
    m_database = std::make_unique<TestDatabase>();
    const auto add = [this](const QString& model, const QString& key, const QString& level,
                            const QString& value) {
        m_database->run(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$%1', '$$%2', 'p%2')"_s.arg(model, key));
        m_database->addParameter(model, u'p' + key, level, value);
    };
    for (const QString& model : {u"GXP2000"_s, u"PAP2"_s, u"F1000"_s}) {
        const bool isGXP2000 = model == "GXP2000"_L1;
        m_database->run(u"INSERT INTO EQUIPMENT VALUES('%1', 'model', '%2')"_s.arg(
            model, isGXP2000 ? u"GRANDSTREAM"_s : model));
        add(model, u"EPWD"_s, u"E"_s, u"secret"_s);
        add(model, u"IP1"_s, isGXP2000 ? u"E"_s : u"P"_s, u"127"_s);
    }
    add(u"GXP2000"_s, u"IP2"_s, u"E"_s, u"0"_s);
    add(u"GXP2000"_s, u"IP3"_s, u"E"_s, u"0"_s);
    add(u"GXP2000"_s, u"IP4"_s, u"P"_s, {});
}

void tst_reboot::addDevice(const QString& equipment, const QString& code, int last)
{
    m_database->addPhone(u"C1"_s, equipment, code, "phone "_L1 + code, u"000000000000"_s);
    if (equipment == "NONE"_L1 || equipment == "TOASTER"_L1)
        return;
    const QString value = equipment == "GXP2000"_L1 ? u"pIP4', '%1"_s : u"pIP1', '127.0.0.%1"_s;
    m_database->run(u"INSERT INTO PHONES_PARAMETERS VALUES('C1', '%1', '%2', '"_s.arg(equipment, code) +
                    value.arg(last) + "')"_L1);
}

RunReport tst_reboot::report()
{
    return {[this](const QString& line) { m_lines << line; }, [](qsizetype, qsizetype) {}};
}

RebootCounts tst_reboot::run(const QString& equipment, quint16 port, bool wait)
{
    return Reboot(m_database->main, port, report(), shortBudget)
        .run({u"C1"_s, equipment, u"101"_s, u"199"_s, wait});
}

void tst_reboot::sendsExactBytes_data()
{
    columns<QString, DeviceBehaviour, QList<QByteArray>, QStringList>("model", "device", "requests", "lines");
    const QByteArray common(head);
    const QByteArray probe = "GET /" + common + "\r\n";
    const QByteArray login =
        "POST /dologin.htm" + common + "Content-Length: 23\r\n\r\nP2=secret&gnkey=7c3e\r\n";
    const QByteArray restart = "GET /rs.htm" + common + "Cookie: session=0a1b2c\r\n\r\n";
    row("GXP2000", "GXP2000", gxp2000Device("secret"), QList<QByteArray>({probe, login, restart}),
        QStringList(u"M15: "_s));
    row("GXP2000, another password", "GXP2000", gxp2000Device("other"), QList<QByteArray>({probe, login}),
        QStringList(u"M22: "_s));
    row("GXP2000, busy", "GXP2000", gxp2000Device("secret", 1), QList<QByteArray>({probe}),
        QStringList(u"M21: "_s));
    // A request meets the close of its connection, and is sent once more.
    row("GXP2000 that closes late", "GXP2000",
        inTurn({okay + "</html>", okay.chopped(2) + "Set-Cookie: session=0a1b2c\r\n\r\n</html>",
                okay + "</html>"},
               300),
        QList<QByteArray>({probe + login, login + restart, restart}), QStringList(u"M15: "_s));
    const QByteArray authorization =
        QByteArray("Authorization: Digest username=\"admin\", realm=\"Phone Admin\", qop=\"auth\", "
                   "algorithm=\"MD5\", uri=\"/admin/reboot\", nonce=\"n0nce\", nc=00000001, "
                   "cnonce=\"5b0e2d7a91c84f36a2e07d1b9c4f6a83\", opaque=\"0paque\", response=\"") +
        digestAnswer + "\"\r\n";
    const QByteArray reboot = "GET /admin/reboot" + common;
    row("PAP2", "PAP2", pap2Device("secret"),
        QList<QByteArray>({reboot + "\r\n", reboot + authorization + "\r\n"}), QStringList(u"M15: "_s));
    row("PAP2, another password", "PAP2", pap2Device("other"),
        QList<QByteArray>({reboot + "\r\n", reboot + authorization + "\r\n"}),
        QStringList({u"M22: "_s, answered(401)}));
    row("PAP2 without a challenge", "PAP2", inTurn({okay}), QList<QByteArray>({reboot + "\r\n"}),
        QStringList(u"M15: "_s));
    const QByteArray get =
        "GET /adminprivate/contents_admin.html HTTP/1.1\r\nAccept: */*\r\nAccept-Language: fr\r\n"
        "User-Agent: Winsock\r\nHost: 127.0.0.1\r\nConnection: close\r\n"
        "Authorization: Basic YWRtaW46c2VjcmV0\r\n\r\n";
    const QByteArray post =
        "POST /adminprivate/contents_admin.html HTTP/1.1\r\nAccept: */*\r\n"
        "Referer: http://127.0.0.1/adminprivate/contents_admin.html\r\nAccept-Language: fr\r\n"
        "Content-Type: application/x-www-form-urlencoded\r\nUser-Agent: Winsock\r\nHost: 127.0.0.1\r\n"
        "Connection: close\r\nContent-Length: 25\r\nAuthorization: Basic YWRtaW46c2VjcmV0\r\n\r\n"
        "rebootcmd=1&reboot=REBOOT";
    row("F1000", "F1000", f1000Device("secret"), QList<QByteArray>({get, post}), QStringList(u"M15: "_s));
    row("F1000 that closes late", "F1000", inTurn({okay + "</html>"}, 300),
        QList<QByteArray>({get + post, post}), QStringList(u"M15: "_s));
}

void tst_reboot::sendsExactBytes()
{
    QFETCH(QString, model);
    QFETCH(DeviceBehaviour, device);
    QFETCH(QList<QByteArray>, requests);
    QFETCH(QStringList, lines);
    const DeviceDouble phone(device);
    addDevice(model, u"101"_s, 1);
    const RebootCounts counts = run(model, phone.port());
    QCOMPARE(phone.received(), requests);
    QCOMPARE(m_lines, QStringList(model + " 127.0.0.1 - 101 - phone 101"_L1) + lines);
    QCOMPARE(counts.rebooted, lines.first() == "M15: "_L1 ? 1 : 0);
    QCOMPARE(counts.refused, 1 - counts.rebooted);

    // Longer credentials are broken after 40 digits, and go out so.
    QCOMPARE(adminPageRequest({}, QString(27, u'x')).count("\r\n"_L1), 9);
}

void tst_reboot::asksABusyPhoneAgain()
{
    const DeviceDouble phone(gxp2000Device("secret", 1));
    addDevice(u"GXP2000"_s, u"101"_s, 1);
    QElapsedTimer time;
    time.start();
    const RebootCounts counts = run(u"GXP2000"_s, phone.port(), true);
    QVERIFY(time.elapsed() >= shortBudget);
    QCOMPARE(counts.rebooted, 1);
    QCOMPARE(m_lines.sliced(1), QStringList({u"M21: "_s, u"M15: "_s}));
    QCOMPARE(phone.received().size(), 4);
}

void tst_reboot::keepsAConnectionToTheSameHost()
{
    const auto finishing = [](QTcpSocket& connection, const QByteArray&) { connection.write("one</html>"); };
    const DeviceDouble both(finishing);
    const DeviceDouble other(inTurn({"later</html>"}), u"127.0.0.2"_s, both.port());
    HttpExchange exchange(m_database->main, both.port(), report().line);
    QVERIFY(exchange.GetHttp(u"127.0.0.1"_s, u"first"_s));
    QVERIFY(exchange.GetHttp(u"127.0.0.1"_s, u"second"_s));
    QCOMPARE(exchange.reply(), u"one</html>"_s);
    QVERIFY(exchange.PostHttp(u"127.0.0.1"_s, u"third"_s));
    QTRY_COMPARE(both.received(), QList<QByteArray>({"firstsecondthird"}));

    // A request never goes to another phone than the one that it is for.
    QVERIFY(exchange.GetHttp(u"127.0.0.2"_s, u"GET /\r\n\r\n"_s));
    QCOMPARE(exchange.reply(), u"later</html>"_s);
    QCOMPARE(both.received(), QList<QByteArray>({"firstsecondthird"}));
    QCOMPARE(m_lines, QStringList());
}

void tst_reboot::readsWhatAFormIsAnswered()
{
    // A phone that takes its time over its page, and restarts only once somebody has taken it.
    bool restarted = false;
    const DeviceDouble phone([&restarted](QTcpSocket& connection, const QByteArray& received) {
        connection.write(okay + "</html>");
        if (!received.startsWith("POST "))
            return connection.disconnectFromHost();
        QTimer::singleShot(200, &connection, [&connection, &restarted] {
            restarted = true;
            connection.disconnectFromHost();
        });
    });
    addDevice(u"F1000"_s, u"101"_s, 1);
    QCOMPARE(run(u"F1000"_s, phone.port()).rebooted, 1);
    QVERIFY(restarted);
}

void tst_reboot::bearsWithBadDevices_data()
{
    columns<QString, DeviceBehaviour, QStringList, RebootOutcome>("model", "device", "lines", "outcome");
    const auto late = [](const char* title, const QString& model, const DeviceBehaviour& device,
                         const QStringList& lines = {u"M23: "_s}) {
        row(title, model, device, lines, RebootOutcome::Unreachable);
    };
    late("refuses", u"GXP2000"_s, {}, {u"Socket ERROR 0 / Connection refused"_s, u"M23: "_s});
    late("is silent", u"PAP2"_s, [](QTcpSocket&, const QByteArray&) {});
    late("dribbles", u"F1000"_s, [](QTcpSocket& connection, const QByteArray&) {
        auto* drip = new QTimer(&connection);
        QObject::connect(drip, &QTimer::timeout, &connection, [&connection] { connection.write("x"); });
        drip->start(shortBudget / 5);
    });
    late("sends chunks without end", u"PAP2"_s, [](QTcpSocket& connection, const QByteArray&) {
        QObject::connect(&connection, &QTcpSocket::bytesWritten, &connection, [&connection] {
            if (connection.bytesToWrite() == 0)
                connection.write(QByteArray("1\r\nx\r\n").repeated(1 << 15));
        });
        connection.write(okay.chopped(2) + "Transfer-Encoding: chunked\r\n\r\n");
    });
    late("says nothing to the form", u"F1000"_s, inTurn({okay + "</html>"}, 4000), {u"M15: "_s, silence});

    const auto refused = [](const char* title, const QString& model, const DeviceBehaviour& device,
                            const QStringList& lines) {
        row(title, model, device, lines, RebootOutcome::Refused);
    };
    const QByteArray cookie = okay.chopped(2) + "Set-Cookie: a=1\r\n\r\n";
    const QByteArray unknown = "HTTP/1.0 404 Not Found\r\n\r\n";
    refused("is another server, GXP2000", u"GXP2000"_s, inTurn({okay, cookie, unknown}),
            {u"M15: "_s, answered(404)});
    refused("is another server, PAP2", u"PAP2"_s, inTurn({"HTTP/1.1 302 Found\r\nContent-Length: 0\r\n\r\n"}),
            {u"M15: "_s, answered(302)});
    refused("is another server, F1000", u"F1000"_s, inTurn({okay, unknown}), {u"M15: "_s, answered(404)});
    refused("closes at once, GXP2000", u"GXP2000"_s, inTurn({okay, cookie, ""}), {u"M15: "_s, silence});
    refused("closes at once, PAP2", u"PAP2"_s, inTurn({""}), {u"M15: "_s, silence});
    refused("closes at once, F1000", u"F1000"_s, inTurn({okay, ""}), {u"M15: "_s, silence});
    refused("closes again where it closed before", u"GXP2000"_s, inTurn({okay + "</html>", ""}, 300),
            {u"M22: "_s});
    refused("a status line cut off", u"PAP2"_s, inTurn({challenge("nonce=\"n\""), "HTTP/1."}),
            {u"M22: "_s, silence});
    refused("a nonce that grows old again and again", u"PAP2"_s, pap2Device("secret", 2),
            {u"M22: "_s, answered(401)});
    row("a nonce that grows old once", "PAP2", pap2Device("secret", 1), QStringList(u"M15: "_s),
        RebootOutcome::Rebooted);
    refused("resets in mid-reply", u"PAP2"_s,
            [](QTcpSocket& connection, const QByteArray&) {
                connection.write("HTTP/1.0 401 No\r\nWWW-Authenticate: Digest realm=\"x");
                connection.flush();
                const linger reset{1, 0};
                setsockopt(static_cast<int>(connection.socketDescriptor()), SOL_SOCKET, SO_LINGER, &reset,
                           sizeof reset);
                connection.abort();
            },
            {u"   The phone's answer can't be understood: realm"_s});
}

void tst_reboot::bearsWithBadDevices()
{
    QFETCH(QString, model);
    QFETCH(DeviceBehaviour, device);
    QFETCH(QStringList, lines);
    QFETCH(RebootOutcome, outcome);
    const DeviceDouble next(model == "GXP2000"_L1 ? gxp2000Device("secret")
                            : model == "PAP2"_L1  ? pap2Device("secret")
                                                  : f1000Device("secret"));
    std::unique_ptr<DeviceDouble> bad;
    if (device)
        bad = std::make_unique<DeviceDouble>(device, u"127.0.0.2"_s, next.port());
    addDevice(model, u"101"_s, 2);
    addDevice(model, u"102"_s, 1);
    QElapsedTimer time;
    time.start();
    const RebootCounts counts = run(model, next.port());
    QVERIFY(outcome != RebootOutcome::Unreachable || time.elapsed() >= shortBudget);
    QCOMPARE(m_lines, QStringList(model + " 127.0.0.2 - 101 - phone 101"_L1) + lines +
                          QStringList({model + " 127.0.0.1 - 102 - phone 102"_L1, u"M15: "_s}));
    QCOMPARE(counts.rebooted, outcome == RebootOutcome::Rebooted ? 2 : 1);
    QCOMPARE(counts.refused, outcome == RebootOutcome::Refused ? 1 : 0);
}

void tst_reboot::sharesOneBudget()
{
    // The connection comes up after a second, and then nobody answers: the budget is not begun anew.
    SilentListener listener;
    QTimer::singleShot(500, this, [&listener] { listener.takeConnections(); });
    HttpExchange exchange(m_database->main, listener.port(), report().line, 1800);
    QElapsedTimer time;
    time.start();
    QVERIFY(!exchange.GetHttp(u"127.0.0.1"_s, u"GET /\r\n\r\n"_s));
    QVERIFY2(time.elapsed() >= 1800 && time.elapsed() < 2700, qPrintable(QString::number(time.elapsed())));
    QVERIFY(listener.hasReceived());
    QCOMPARE(m_lines, QStringList(u"M23: "_s));
}

void tst_reboot::stopsAtUnknownModels()
{
    const DeviceDouble phones(gxp2000Device("secret"));
    addDevice(u"GXP2000"_s, u"101"_s, 1);
    addDevice(u"GXP2000"_s, u"102"_s, 1);
    addDevice(u"TOASTER"_s, u"103"_s, 1);
    addDevice(u"PAP2"_s, u"104"_s, 1);
    addDevice(u"PAP2"_s, u"105"_s, 1);
    Reboot reboot(m_database->main, phones.port(), report());
    const auto rebooted = [&](const QString& model) {
        return reboot.run({u"C1"_s, model, u"101"_s, u"199"_s, false}).rebooted;
    };
    QCOMPARE(rebooted(u"TOASTER"_s), 0);
    QCOMPARE(m_database->user.shown, QStringList(u"M10: TOASTER - TOASTER"_s));
    QCOMPARE(rebooted(u"GXP2000"_s), 1);
    QCOMPARE(rebooted(u"GXP2000"_s), 1);
    // Only a PAP2 makes it forget what stopped it.
    QCOMPARE(rebooted(u"PAP2"_s), 2);
    QCOMPARE(rebooted(u"GXP2000"_s), 2);
}

void tst_reboot::leavesOutModelsWithoutModule()
{
    addDevice(u"NONE"_s, u"101"_s, 1);
    addDevice(u"NONE"_s, u"102"_s, 1);
    const RebootCounts counts = run(u"NONE"_s, 1);
    QCOMPARE(counts.phones, 2);
    QCOMPARE(counts.rebooted + counts.refused + counts.unreachable, 0);
    QCOMPARE(m_lines, QStringList());
    QCOMPARE(m_database->user.shown, QStringList());
}

void tst_reboot::needsTheModelsRows()
{
    const DeviceDouble phone(gxp2000Device("secret"));
    addDevice(u"GXP2000"_s, u"101"_s, 1);
    m_database->run(u"UPDATE SYSTEM_PARAMETERS SET SY_VALUE = 'no parameter' WHERE SY_SUBCODE = '$$IP1'"_s);
    m_database->run(u"DELETE FROM SYSTEM_PARAMETERS WHERE SY_SUBCODE IN ('$$IP3', '$$EPWD')"_s);
    QCOMPARE(run(u"GXP2000"_s, phone.port()).unreachable, 1);
    QCOMPARE(m_database->user.shown, QStringList(u"M20: $$IP3"_s));
    QCOMPARE(phone.received(), QList<QByteArray>());
    QCOMPARE(m_lines, QStringList());
}

void tst_reboot::aborts_data()
{
    columns<QString, DeviceBehaviour, QString, QStringList>("model", "device", "moment", "lines");
    const DeviceBehaviour silent = [](QTcpSocket&, const QByteArray&) {};
    row("connecting", "GXP2000", DeviceBehaviour(), "", QStringList());
    row("waiting for a reply", "GXP2000", silent, "", QStringList());
    row("waiting for a PAP2's reply", "PAP2", silent, "", QStringList(u"M15: "_s));
    row("waiting for an F1000's page", "F1000", silent, "", QStringList(u"M15: "_s));
    row("waiting for an F1000's answer", "F1000", inTurn({okay + "</html>"}, 4000), "",
        QStringList(u"M15: "_s));
    row("waiting on a busy phone", "GXP2000", gxp2000Device("secret", 99), "", QStringList(u"M21: "_s));
    row("hearing that a phone is busy", "GXP2000", gxp2000Device("secret", 99),
        "M21: ", QStringList(u"M21: "_s));
}

void tst_reboot::aborts()
{
    QFETCH(QString, model);
    QFETCH(DeviceBehaviour, device);
    QFETCH(QString, moment);
    QFETCH(QStringList, lines);
    std::optional<SilentListener> listener;
    if (!device)
        listener.emplace();
    const DeviceDouble phone(device);
    for (const QString& code : {u"101"_s, u"102"_s})
        addDevice(model, code, 1);
    QElapsedTimer sinceAbort;
    std::function<void()> abort;
    RunReport watched = report();
    watched.line = [&, show = watched.line](const QString& line) {
        show(line);
        if (line == moment)
            abort();
    };
    Reboot reboot(m_database->main, listener ? listener->port() : phone.port(), watched);
    abort = [&] {
        sinceAbort.start();
        reboot.abort();
    };
    if (moment.isEmpty())
        QTimer::singleShot(300, this, abort);
    const RebootCounts counts = reboot.run({u"C1"_s, model, u"101"_s, u"199"_s, true});
    QVERIFY(sinceAbort.isValid() && sinceAbort.elapsed() < 1000);
    QCOMPARE(m_lines, QStringList(model + " 127.0.0.1 - 101 - phone 101"_L1) + lines);
    // Whatever the line says: a phone that was cut off counts as left out.
    QCOMPARE(counts.rebooted + counts.refused + counts.unreachable, 0);
    QTest::qWait(50);
    QCOMPARE(phone.received().size(), device ? 1 : 0);
}

QTEST_GUILESS_MAIN(tst_reboot)
#include "tst_reboot.moc"

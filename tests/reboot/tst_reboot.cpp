// Restarting phones: requests byte by byte, exchanges with devices good and bad, whole runs.
#include "reboot/reboot.h"
#include "support/device_double.h"
#include "support/restart_database.h"
#include "support/rows.h"

#include <QTest>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;
using namespace velmora;

namespace {

/// The answer of Python's hashlib to the challenge of the PAP2 double, for the password "secret".
constexpr auto digestAnswer = "371f1d59501d754cfb0b1bc3ea9f03e1";

const QByteArray okay = "HTTP/1.0 200 OK\r\n\r\n";

/// A budget that a test can wait for, and that a good device next to it can keep on a busy machine.
constexpr int shortBudget = 400;
static_assert(HttpExchange::usualBudget == 5000);

const QString silence = u"   The phone did not say that it restarts"_s;

QString answered(int status)
{
    return u"   The phone did not take the restart. It answered with status %1"_s.arg(status);
}

} // namespace

class tst_reboot : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_database.reset(); }
    void sendsExactBytes_data();
    void sendsExactBytes();
    void keepsAConnectionToTheSameHost();
    void readsWhatAFormIsAnswered();
    void bearsWithBadDevices_data();
    void bearsWithBadDevices();
    void sharesOneBudget();
    void stopsAtUnknownModels();
    void needsTheModelsRows();
    void hidesPasswords();
    void aborts_data();
    void aborts();

private:
    RebootCounts run(const QString& equipment, quint16 port, bool wait = false,
                     int budget = HttpExchange::usualBudget);
    RunReport report();

    std::unique_ptr<RestartDatabase> m_database;
    QStringList m_lines;
};

void tst_reboot::init()
{
    m_lines.clear();
    m_database = std::make_unique<RestartDatabase>();
}

RunReport tst_reboot::report()
{
    return {[this](const QString& line) { m_lines << line; }, [](qsizetype, qsizetype) {}};
}

RebootCounts tst_reboot::run(const QString& equipment, quint16 port, bool wait, int budget)
{
    return Reboot(m_database->main, port, report(), budget)
        .run({u"C1"_s, equipment, u"101"_s, u"199"_s, wait});
}

void tst_reboot::sendsExactBytes_data()
{
    columns<QString, DeviceBehaviour, QList<QByteArray>, QStringList>("model", "device", "requests", "lines");
    const auto phone = [](const char* title, const DeviceBehaviour& device, const QList<QByteArray>& requests,
                          const QStringList& lines) {
        row(title, QString::fromLatin1(title).section(u',', 0, 0), device, requests, lines);
    };
    const QByteArray common =
        " HTTP/1.0\r\nAccept: */*\r\nAccept-Language: fr\r\nUser-Agent: Winsock\r\nHost: 127.0.0.1\r\n";
    const QByteArray probe = "GET /" + common + "\r\n";
    const QByteArray login =
        "POST /dologin.htm" + common + "Content-Length: 23\r\n\r\nP2=secret&gnkey=7c3e\r\n";
    const QByteArray restart = "GET /rs.htm" + common + "Cookie: session=0a1b2c\r\n\r\n";
    phone("GXP2000", gxp2000Device("secret"), {probe, login, restart}, {u"M15: "_s});
    phone("GXP2000, another password", gxp2000Device("other"), {probe, login}, {u"M22: "_s});
    phone("GXP2000, busy", gxp2000Device("secret", 1), {probe}, {u"M21: "_s});
    phone("GXP2000, busy, waited for", gxp2000Device("secret", 1), {probe, probe, login, restart},
          {u"M21: "_s, u"M15: "_s});
    const QByteArray authorization =
        QByteArray("Authorization: Digest username=\"admin\", realm=\"Phone Admin\", qop=\"auth\", "
                   "algorithm=\"MD5\", uri=\"/admin/reboot\", nonce=\"n0nce\", nc=00000001, "
                   "cnonce=\"5b0e2d7a91c84f36a2e07d1b9c4f6a83\", opaque=\"0paque\", response=\"") +
        digestAnswer + "\"\r\n";
    const QByteArray reboot = "GET /admin/reboot" + common;
    const QByteArray answer = reboot + authorization + "\r\n";
    phone("PAP2", pap2Device("secret"), {reboot + "\r\n", answer}, {u"M15: "_s});
    phone("PAP2, another password", pap2Device("other"), {reboot + "\r\n", answer},
          {u"M22: "_s, answered(401)});
    phone("PAP2, no challenge", inTurn({okay}), {reboot + "\r\n"}, {u"M15: "_s});
    // A request meets the close of its connection, and is sent once more.
    const QByteArray challenge = "HTTP/1.0 401 No\r\nWWW-Authenticate: Digest realm=\"Phone Admin\", "
                                 "nonce=\"n0nce\", opaque=\"0paque\", qop=\"auth\"\r\n\r\n";
    phone("PAP2, closes late", inTurn({challenge + "</html>", okay}, Afterwards::ClosesOnNextRequest),
          {reboot + "\r\n" + answer, answer}, {u"M15: "_s});
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
    phone("F1000", deviceOf(u"F1000"_s, "secret"), {get, post}, {u"M15: "_s});
    phone("F1000, closes late", inTurn({okay + "</html>", okay}, Afterwards::ClosesOnNextRequest),
          {get + post, post}, {u"M15: "_s});
}

void tst_reboot::sendsExactBytes()
{
    QFETCH(QString, model);
    QFETCH(DeviceBehaviour, device);
    QFETCH(QList<QByteArray>, requests);
    QFETCH(QStringList, lines);
    const DeviceDouble phone(device);
    m_database->addDevice(model, u"101"_s, 1);
    const bool waits = lines.size() == 2 && lines.first() == "M21: "_L1;
    QElapsedTimer time;
    time.start();
    const RebootCounts counts =
        run(model, phone.port(), waits, waits ? shortBudget : HttpExchange::usualBudget);
    QVERIFY(!waits || time.elapsed() >= shortBudget);
    QCOMPARE(phone.received(), requests);
    QCOMPARE(m_lines, QStringList(model + " 127.0.0.1 - 101 - phone 101"_L1) + lines);
    QCOMPARE(counts.rebooted, lines.last() == "M15: "_L1 ? 1 : 0);
    QCOMPARE(counts.refused, 1 - counts.rebooted);
}

void tst_reboot::keepsAConnectionToTheSameHost()
{
    const DeviceDouble both(
        [](QTcpSocket& connection, const QByteArray&) { connection.write("one</html>"); });
    const DeviceDouble other(inTurn({"later</html>"}), u"127.0.0.2"_s, both.port());
    const MessageTexts texts(m_database->main, {u"M23"_s});
    HttpExchange exchange(texts, both.port(), report().line);
    QVERIFY(QCoro::waitFor(exchange.GetHttp(u"127.0.0.1"_s, u"first\r\n\r\n"_s)));
    QVERIFY(QCoro::waitFor(exchange.GetHttp(u"127.0.0.1"_s, u"second"_s)));
    QCOMPARE(exchange.reply(), u"one</html>"_s);

    // A request never goes to another phone than the one that it is for.
    QVERIFY(QCoro::waitFor(exchange.GetHttp(u"127.0.0.2"_s, u"third HTTP/1.0\r\n\r\n"_s)));
    QCOMPARE(exchange.reply(), u"later</html>"_s);
    QCOMPARE(both.received(), QList<QByteArray>({"first\r\n\r\nsecond"}));
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
        QTimer::singleShot(50, &connection, [&connection, &restarted] {
            restarted = true;
            connection.disconnectFromHost();
        });
    });
    m_database->addDevice(u"F1000"_s, u"101"_s, 1);
    QCOMPARE(run(u"F1000"_s, phone.port()).rebooted, 1);
    QVERIFY(restarted);
}

void tst_reboot::bearsWithBadDevices_data()
{
    columns<QString, DeviceBehaviour, QStringList, RebootOutcome>("model", "device", "lines", "outcome");
    const auto late = [](const char* title, const QString& model, const DeviceBehaviour& device,
                         const QStringList& lines) {
        row(title, model, device, lines, RebootOutcome::Unreachable);
    };
    late("refuses", u"GXP2000"_s, {}, {u"Socket ERROR 0 / Connection refused"_s, u"M23: "_s});
    late("sends chunks without end", u"PAP2"_s,
         [](QTcpSocket& connection, const QByteArray&) {
             QObject::connect(&connection, &QTcpSocket::bytesWritten, &connection, [&connection] {
                 if (connection.bytesToWrite() == 0)
                     connection.write(QByteArray("1\r\nx\r\n").repeated(1 << 15));
             });
             connection.write(okay.chopped(2) + "Transfer-Encoding: chunked\r\n\r\n");
         },
         {u"M23: "_s});
    late("says nothing to the form", u"F1000"_s, inTurn({okay + "</html>"}, Afterwards::StaysOpen),
         {u"M15: "_s, silence});

    const auto refused = [](const char* title, const QString& model, const DeviceBehaviour& device,
                            const QStringList& lines) {
        row(title, model, device, lines, RebootOutcome::Refused);
    };
    refused("is another server, GXP2000", u"GXP2000"_s,
            inTurn({okay, okay.chopped(2) + "Set-Cookie: a=1\r\n\r\n", "HTTP/1.0 404 Not Found\r\n\r\n"}),
            {u"M15: "_s, answered(404)});
    refused("is another server, PAP2", u"PAP2"_s, inTurn({"HTTP/1.1 302 Found\r\nContent-Length: 0\r\n\r\n"}),
            {u"M15: "_s, answered(302)});
    refused("closes at once, F1000", u"F1000"_s, inTurn({okay, ""}), {u"M15: "_s, silence});
    refused("closes again where it closed before", u"GXP2000"_s,
            inTurn({okay + "</html>", ""}, Afterwards::ClosesOnNextRequest), {u"M22: "_s});
    refused("a status line cut off", u"PAP2"_s,
            inTurn({"HTTP/1.0 401 No\r\nWWW-Authenticate: Digest nonce=\"n\"\r\n\r\n", "HTTP/1."}),
            {u"M22: "_s, silence});
    refused("a nonce that grows old again and again", u"PAP2"_s, pap2Device("secret", 2),
            {u"M22: "_s, answered(401)});
    row("a nonce that grows old once", "PAP2", pap2Device("secret", 1), QStringList(u"M15: "_s),
        RebootOutcome::Rebooted);
    refused("closes in mid-reply", u"PAP2"_s,
            inTurn({"HTTP/1.0 401 No\r\nWWW-Authenticate: Digest realm=\"x"}),
            {u"   The phone's answer can't be understood: realm"_s});
}

void tst_reboot::bearsWithBadDevices()
{
    QFETCH(QString, model);
    QFETCH(DeviceBehaviour, device);
    QFETCH(QStringList, lines);
    QFETCH(RebootOutcome, outcome);
    const DeviceDouble next(deviceOf(model, "secret"));
    std::optional<DeviceDouble> bad;
    if (device)
        bad.emplace(device, u"127.0.0.2"_s, next.port());
    m_database->addDevice(model, u"101"_s, 2);
    m_database->addDevice(model, u"102"_s, 1);
    const int budget = outcome == RebootOutcome::Unreachable ? shortBudget : HttpExchange::usualBudget;
    QElapsedTimer time;
    time.start();
    const RebootCounts counts = run(model, next.port(), false, budget);
    QCOMPARE(time.elapsed() >= budget, outcome == RebootOutcome::Unreachable);
    QCOMPARE(m_lines, QStringList(model + " 127.0.0.2 - 101 - phone 101"_L1) + lines +
                          QStringList({model + " 127.0.0.1 - 102 - phone 102"_L1, u"M15: "_s}));
    QCOMPARE(counts.rebooted, outcome == RebootOutcome::Rebooted ? 2 : 1);
    QCOMPARE(counts.refused, outcome == RebootOutcome::Refused ? 1 : 0);
}

void tst_reboot::sharesOneBudget()
{
    // The connection is lost late, and nobody answers on the next one: the budget is not begun anew.
    const DeviceDouble phone([](QTcpSocket& connection, const QByteArray& received) {
        if (received == "first\r\n\r\n")
            connection.write("</html>");
        else if (received != "second\r\n\r\n")
            QTimer::singleShot(500, &connection, [&connection] { connection.disconnectFromHost(); });
    });
    const MessageTexts texts(m_database->main, {u"M23"_s});
    HttpExchange exchange(texts, phone.port(), report().line, 900);
    QVERIFY(QCoro::waitFor(exchange.GetHttp(u"127.0.0.1"_s, u"first\r\n\r\n"_s)));
    QElapsedTimer time;
    time.start();
    QVERIFY(!QCoro::waitFor(exchange.GetHttp(u"127.0.0.1"_s, u"second\r\n\r\n"_s)));
    QVERIFY2(time.elapsed() >= 900 && time.elapsed() < 1500, qPrintable(QString::number(time.elapsed())));
    QCOMPARE(phone.received().size(), 2);
    QCOMPARE(m_lines, QStringList(u"M23: "_s));
}

void tst_reboot::stopsAtUnknownModels()
{
    const DeviceDouble phones(gxp2000Device("secret"));
    int code = 100;
    for (const QString& model :
         {u"GXP2000"_s, u"GXP2000"_s, u"TOASTER"_s, u"PAP2"_s, u"PAP2"_s, u"NONE"_s, u"NONE"_s})
        m_database->addDevice(model, QString::number(++code), 1);
    Reboot reboot(m_database->main, phones.port(), report());
    const auto counts = [&](const QString& model) {
        return reboot.run({u"C1"_s, model, u"101"_s, u"199"_s, false});
    };
    // Without a module a phone is passed over.
    QCOMPARE(counts(u"NONE"_s).phones, 2);
    QCOMPARE(counts(u"NONE"_s).refused, 0);
    QCOMPARE(m_database->user.shown, QStringList());
    QCOMPARE(counts(u"TOASTER"_s).rebooted, 0);
    QCOMPARE(m_database->user.shown, QStringList(u"M10: TOASTER - TOASTER"_s));
    QCOMPARE(counts(u"GXP2000"_s).rebooted, 1);
    QCOMPARE(counts(u"GXP2000"_s).rebooted, 1);
    // Only a PAP2 makes it forget what stopped it.
    QCOMPARE(counts(u"PAP2"_s).rebooted, 2);
    QCOMPARE(counts(u"GXP2000"_s).rebooted, 2);
}

void tst_reboot::needsTheModelsRows()
{
    const DeviceDouble phone(gxp2000Device("secret"));
    m_database->addDevice(u"GXP2000"_s, u"101"_s, 1);
    m_database->run(u"DELETE FROM SYSTEM_PARAMETERS WHERE SY_SUBCODE IN ('$$IP3', '$$EPWD')"_s);
    QCOMPARE(run(u"GXP2000"_s, phone.port()).unreachable, 1);
    QCOMPARE(m_database->user.shown, QStringList(u"M20: $$IP3"_s));
    QCOMPARE(phone.received(), QList<QByteArray>());
    QCOMPARE(m_lines, QStringList());
}

void tst_reboot::hidesPasswords()
{
    // A password that is taken for a macro is refused; its message tells of one, not of the password.
    m_database->addParameter(u"PAP2"_s, u"CPWD"_s, u"C"_s, {});
    m_database->addDevice(u"PAP2"_s, u"101"_s, 1);
    m_database->run(u"UPDATE SYSTEM_PARAMETERS SET SY_VALUE = 'CPWD' WHERE SY_SUBCODE = '$$EPWD'"_s);
    m_database->run(u"INSERT INTO COMPANY_PARAMETERS VALUES('C1', 'PAP2', 'CPWD', '$$hush')"_s);
    const DeviceDouble phone(pap2Device("$$hush"));
    run(u"PAP2"_s, phone.port());
    QCOMPARE(m_database->user.shown, QStringList(u"M6: ***"_s));
    QVERIFY(!m_lines.join(u'\n').contains("hush"_L1));
}

void tst_reboot::aborts_data()
{
    // The user stops it so many milliseconds after a line, or after a number of requests.
    columns<QString, DeviceBehaviour, QString, int, QStringList>("model", "device", "moment", "later",
                                                                 "lines");
    row("waiting for a reply", "PAP2", DeviceBehaviour([](QTcpSocket&, const QByteArray&) {}), "request", 50,
        QStringList(u"M15: "_s));
    row("waiting for an F1000's answer", "F1000", inTurn({okay + "</html>"}, Afterwards::StaysOpen),
        "M15: ", 50, QStringList(u"M15: "_s));
    row("waiting on a busy phone", "GXP2000", gxp2000Device("secret", 99), "M21: ", 50,
        QStringList(u"M21: "_s));
    row("hearing that a phone is busy", "GXP2000", gxp2000Device("secret", 99), "M21: ", 0,
        QStringList(u"M21: "_s));
}

void tst_reboot::aborts()
{
    QFETCH(QString, model);
    QFETCH(DeviceBehaviour, device);
    QFETCH(QString, moment);
    QFETCH(int, later);
    QFETCH(QStringList, lines);
    const DeviceDouble phone(device);
    for (const QString& code : {u"101"_s, u"102"_s})
        m_database->addDevice(model, code, 1);
    lines.prepend(model + " 127.0.0.1 - 101 - phone 101"_L1);
    QElapsedTimer sinceAbort;
    std::function<void(const QString&)> happens;
    RunReport watched = report();
    watched.line = [&](const QString& line) {
        m_lines << line;
        happens(line);
    };
    Reboot reboot(m_database->main, phone.port(), watched);
    happens = [&](const QString& what) {
        if (what == moment)
            QTimer::singleShot(later, this, [&] {
                sinceAbort.start();
                reboot.abort();
            });
    };
    connect(&phone, &DeviceDouble::requested, this, [&] { happens(u"request"_s); });
    // Every run begins anew.
    for (int number = 1; number <= 2; ++number) {
        m_lines.clear();
        sinceAbort.invalidate();
        const RebootCounts counts = reboot.run({u"C1"_s, model, u"101"_s, u"199"_s, true});
        QVERIFY(sinceAbort.isValid() && sinceAbort.elapsed() < 2000);
        QCOMPARE(m_lines, lines);
        // Whatever the line says: a phone that was cut off counts as left out.
        QCOMPARE(counts.rebooted + counts.refused + counts.unreachable, 0);
        QCOMPARE(phone.received().size(), number);
    }
}

QTEST_GUILESS_MAIN(tst_reboot)
#include "tst_reboot.moc"

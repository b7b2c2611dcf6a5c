// Restarting phones: digests, requests byte by byte, exchanges with devices good and bad, whole runs.
#include "reboot/CMD5.h"
#include "reboot/base64.h"
#include "reboot/hash_string.h"
#include "reboot/reboot.h"
#include "reboot/reboot_requests.h"
#include "support/device_double.h"
#include "support/rows.h"
#include "support/silent_listener.h"
#include "support/test_database.h"

#include <QCryptographicHash>
#include <QTest>

#include <stdexcept>
#include <sys/socket.h>

using namespace Qt::StringLiterals;
using namespace velmora;

namespace {

constexpr auto head =
    " HTTP/1.0\r\nAccept: */*\r\nAccept-Language: fr\r\nUser-Agent: Winsock\r\nHost: 127.0.0.1\r\n";

/// The answer of Python's hashlib to the challenge of the PAP2 double, for the password "secret".
constexpr auto digestAnswer = "371f1d59501d754cfb0b1bc3ea9f03e1";

QByteArray challenge(const QByteArray& fields)
{
    return "HTTP/1.0 401 Unauthorized\r\nWWW-Authenticate: Digest " + fields + "\r\n\r\n<html></html>";
}

} // namespace

class tst_reboot : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void digests_data();
    void digests();
    void encodesBase64_data();
    void encodesBase64();
    void decodesBase64();
    void hashes_data();
    void hashes();
    void readsQuotedValues_data();
    void readsQuotedValues();
    void readsCookies();
    void sendsExactBytes_data();
    void sendsExactBytes();
    void asksABusyPhoneAgain();
    void keepsAConnectionToTheSameHost();
    void bearsWithBadDevices_data();
    void bearsWithBadDevices();
    void sharesOneBudget();
    void boundsTheReply();
    void stopsAtUnknownModels();
    void leavesOutModelsWithoutModule();
    void needsTheModelsRows();
    void aborts_data();
    void aborts();

private:
    /// A phone of company C1 whose device is at 127.0.0.`last` and has the password "secret".
    void addDevice(const QString& equipment, const QString& module, const QString& code, int last);
    RebootCounts run(const QString& equipment, quint16 port, bool wait = false);
    RunReport report();

    std::unique_ptr<TestDatabase> m_database;
    QStringList m_lines;
};

void tst_reboot::init()
{
    m_database = std::make_unique<TestDatabase>();
    for (const QString& model : {u"GXP2000"_s, u"PAP2"_s, u"F1000"_s, u"OTHER"_s}) {
        const QStringList keys = model == "GXP2000"_L1
                                     ? QStringList({u"IP1"_s, u"IP2"_s, u"IP3"_s, u"IP4"_s, u"EPWD"_s})
                                     : QStringList({u"IP1"_s, u"EPWD"_s});
        for (const QString& key : keys)
            m_database->run(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$%1', '$$%2', 'p%2')"_s.arg(model, key));
    }
    m_lines.clear();
}

void tst_reboot::cleanup()
{
    m_database.reset();
}

void tst_reboot::addDevice(const QString& equipment, const QString& module, const QString& code, int last)
{
    m_database->addPhone(u"C1"_s, equipment, code, "phone "_L1 + code, u"000000000000"_s);
    m_database->run(u"UPDATE EQUIPMENT SET EQ_MODULE = '%1' WHERE EQ_CODE = '%2'"_s.arg(module, equipment));
    QStringList address(u"127.0.0.%1"_s.arg(last));
    if (equipment == "GXP2000"_L1)
        address = address.first().split(u'.');
    const auto add = [&](const QString& parameter, const QString& value) {
        if (m_database
                ->value(u"SELECT 1 FROM EQUIPMENT_PARAMETERS WHERE EQ_CODE = '%1' AND PA_CODE = '%2'"_s.arg(
                    equipment, parameter))
                .isNull())
            m_database->addParameter(equipment, parameter, u"P"_s, {});
        m_database->main.connection.execute(u"INSERT INTO PHONES_PARAMETERS VALUES('C1', ?, ?, ?, ?)"_s,
                                            {equipment, code, parameter, value});
    };
    for (qsizetype octet = 0; octet < address.size(); ++octet)
        add(u"pIP%1"_s.arg(octet + 1), address[octet]);
    add(u"pEPWD"_s, u"secret"_s);
}

RunReport tst_reboot::report()
{
    return {[this](const QString& line) { m_lines << line; }, [](qsizetype, qsizetype) {}};
}

RebootCounts tst_reboot::run(const QString& equipment, quint16 port, bool wait)
{
    return Reboot(m_database->main, port, report()).run({u"C1"_s, equipment, u"101"_s, u"199"_s, wait});
}

void tst_reboot::digests_data()
{
    columns<QString, QString>("text", "digest");
    row("empty", "", "d41d8cd98f00b204e9800998ecf8427e");
    row("a", "a", "0cc175b9c0f1b6a831c399e269772661");
    row("abc", "abc", "900150983cd24fb0d6963f7d28e17f72");
    row("message digest", "message digest", "f96b697d7cb7938d525a2f31aaf161d0");
    row("a to z", "abcdefghijklmnopqrstuvwxyz", "c3fcd3d76192e4007dfb496cca67e13b");
    row("letters and digits", "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789",
        "d174ab98d277d9f5a5611c2c9f419d9f");
    row("80 digits", "12345678901234567890123456789012345678901234567890123456789012345678901234567890",
        "57edf4a22be3c955ac49da2e2107b67a");
    // Padding goes wrong around the ends of blocks; the library's MD5 is the judge.
    for (const int length : {55, 56, 57, 63, 64, 65, 119, 120, 1000})
        row(qPrintable(QString::number(length)), QString(length, u'x'),
            QString::fromLatin1(
                QCryptographicHash::hash(QByteArray(length, 'x'), QCryptographicHash::Md5).toHex()));
    row("the low 8 bits of each character", u"\u0161\u20ac\u00e9"_s,
        QString::fromLatin1(QCryptographicHash::hash("\x61\xac\xe9", QCryptographicHash::Md5).toHex()));
}

void tst_reboot::digests()
{
    QFETCH(QString, text);
    QTEST(CMD5().MD5(text), "digest");
}

void tst_reboot::encodesBase64_data()
{
    columns<QString, QString>("text", "encoded");
    row("empty", "", "=");
    row("1 byte", "f", "Zg==");
    row("2", "fo", "Zm8=");
    row("3", "foo", "Zm9v");
    row("4", "foob", "Zm9vYg=");
    row("5", "fooba", "Zm9vYmE");
    row("6", "foobar", "Zm9vYmFy==");
    row("11 digits", "admin:pw", "YWRtaW46cHc==");
    row("12 digits", "admin:pwd", "YWRtaW46cHdk=");
    row("40 digits", QString(30, u'x'), "eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4\r\n");
    row("42 digits", QString(31, u'y'), "eXl5eXl5eXl5eXl5eXl5eXl5eXl5eXl5eXl5eXl5\r\neQ=");
    row("80 digits", QString(60, u'a'),
        "YWFhYWFhYWFhYWFhYWFhYWFhYWFhYWFhYWFhYWFh\r\nYWFhYWFhYWFhYWFhYWFhYWFhYWFhYWFhYWFhYWFh\r\n==");
    row("Windows-1252", u"\u20ac\u00ff?"_s, "gP8/");
}

void tst_reboot::encodesBase64()
{
    QFETCH(QString, text);
    QTEST(Encode64(text), "encoded");
}

void tst_reboot::decodesBase64()
{
    QString text = u"Z m9\r\nv-YmFy=="_s;
    QCOMPARE(Decode64(text), u"foobar"_s);
    QCOMPARE(text, u"foobarv-YmFy=="_s); // overwritten from its start
    QString bytes = u"gP8/"_s;
    QCOMPARE(Decode64(bytes), u"\u20ac\u00ff?"_s);
    QString cut = u"Zm9vY"_s;
    QCOMPARE(Decode64(cut), u"foo"_s);
}

void tst_reboot::hashes_data()
{
    // Worked out with Python's unbounded integers.
    columns<QString, QString>("text", "hash");
    row("empty", "", "00000000");
    row("a", "a", "00000061");
    row("admin", "admin", "0006F6F6");
    row("8 letters", "abcdefgh", "05E0A721");
    row("a sentence", "The quick brown fox", "079F7C18");
    row("bytes above 127", u"\u00e9\u00ff"_s.repeated(6), "00A2CD4C");
    row("the highest bytes", QString(20, QChar(0xff)), "06DB76AD");
}

void tst_reboot::hashes()
{
    QFETCH(QString, text);
    QTEST(hash_string(text), "hash");
}

void tst_reboot::readsQuotedValues_data()
{
    // An empty value stands for a failure.
    columns<QString, QString, QString>("name", "text", "value");
    row("plain", "nonce", "Digest nonce=\"abc\", qop=\"auth\"", "abc");
    row("the first one", "nonce", "cnonce=\"x\", nonce=\"abc\"", "x");
    row("case counts", "nonce", "NONCE=\"x\" nonce=\"abc\"", "abc");
    row("missing: the tail's first value", "realm", "1234567 = \"abc\"", "7 = ");
    row("missing, and no quote", "realm", "1234567 = abc", "-");
    row("unterminated", "nonce", "nonce=\"abc", "-");
    row("too short", "realm", "ab", "-");
}

void tst_reboot::readsQuotedValues()
{
    QFETCH(QString, name);
    QFETCH(QString, text);
    QFETCH(QString, value);
    if (value == "-"_L1)
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument, RecVal(name, text));
    else
        QCOMPARE(RecVal(name, text), value);
}

void tst_reboot::readsCookies()
{
    QCOMPARE(cookieOf(u"HTTP/1.0 200 OK\r\nSet-Cookie: a=1; path=/\r\nSet-Cookie: b=2;"_s), u"a=1"_s);
    QCOMPARE(cookieOf(u"Set-Cookie:a=1;"_s), u"=1"_s);
    QVERIFY_THROWS_EXCEPTION(std::invalid_argument, cookieOf(u"; Set-Cookie: a=1\r\n"_s));
}

void tst_reboot::sendsExactBytes_data()
{
    columns<QString, QString, DeviceBehaviour, QList<QByteArray>, QString, bool>(
        "model", "module", "device", "requests", "end", "rebooted");
    const QByteArray common(head);
    row("GXP2000", "GXP2000", "GRANDSTREAM", gxp2000Device("secret"),
        QList<QByteArray>(
            {"GET /" + common + "\r\n",
             "POST /dologin.htm" + common + "Content-Length: 23\r\n\r\nP2=secret&gnkey=7c3e\r\n",
             "GET /rs.htm" + common + "Cookie: session=0a1b2c\r\n\r\n"}),
        "M15: ", true);
    row("GXP2000, another password", "GXP2000", "GRANDSTREAM", gxp2000Device("other"),
        QList<QByteArray>(
            {"GET /" + common + "\r\n",
             "POST /dologin.htm" + common + "Content-Length: 23\r\n\r\nP2=secret&gnkey=7c3e\r\n"}),
        "M22: ", false);
    row("GXP2000, busy", "GXP2000", "GRANDSTREAM", gxp2000Device("secret", 1),
        QList<QByteArray>({"GET /" + common + "\r\n"}), "M21: ", false);
    const QByteArray authorization =
        QByteArray("Authorization: Digest username=\"admin\", realm=\"Phone Admin\", qop=\"auth\", "
                   "algorithm=\"MD5\", uri=\"/admin/reboot\", nonce=\"n0nce\", nc=00000001, "
                   "cnonce=\"5b0e2d7a91c84f36a2e07d1b9c4f6a83\", opaque=\"0paque\", response=\"") +
        digestAnswer + "\"\r\n";
    row("PAP2", "PAP2", "PAP2", pap2Device("secret"),
        QList<QByteArray>(
            {"GET /admin/reboot" + common + "\r\n", "GET /admin/reboot" + common + authorization + "\r\n"}),
        "M15: ", true);
    row("PAP2, another password", "PAP2", "PAP2", pap2Device("other"),
        QList<QByteArray>(
            {"GET /admin/reboot" + common + "\r\n", "GET /admin/reboot" + common + authorization + "\r\n"}),
        "M22: ", false);
    row("PAP2 without a challenge", "PAP2", "PAP2", answering("HTTP/1.0 200 OK\r\n\r\n"),
        QList<QByteArray>({"GET /admin/reboot" + common + "\r\n"}), "M15: ", true);
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
    row("F1000", "F1000", "F1000", f1000Device("secret"), QList<QByteArray>({get, post}), "M15: ", true);
}

void tst_reboot::sendsExactBytes()
{
    QFETCH(QString, model);
    QFETCH(QString, module);
    QFETCH(DeviceBehaviour, device);
    QFETCH(QList<QByteArray>, requests);
    QFETCH(QString, end);
    QFETCH(bool, rebooted);
    const DeviceDouble phone(device);
    addDevice(model, module, u"101"_s, 1);
    const RebootCounts counts = run(model, phone.port());
    QTRY_COMPARE(phone.received(), requests);
    QCOMPARE(m_lines, QStringList({model + " 127.0.0.1 - 101 - phone 101"_L1, end}));
    QCOMPARE(counts.rebooted, rebooted ? 1 : 0);
    QCOMPARE(counts.refused, rebooted ? 0 : 1);

    // Longer credentials are broken after 40 digits, and go out so.
    QCOMPARE(adminPageRequest({}, QString(27, u'x')).count("\r\n"_L1), 9);
}

void tst_reboot::asksABusyPhoneAgain()
{
    const DeviceDouble phone(gxp2000Device("secret", 1));
    addDevice(u"GXP2000"_s, u"GRANDSTREAM"_s, u"101"_s, 1);
    QElapsedTimer time;
    time.start();
    const RebootCounts counts = run(u"GXP2000"_s, phone.port(), true);
    QVERIFY(time.elapsed() > 4900);
    QCOMPARE(counts.rebooted, 1);
    QCOMPARE(m_lines.sliced(1), QStringList({u"M21: "_s, u"M15: "_s}));
    QCOMPARE(phone.received().size(), 4);
}

void tst_reboot::keepsAConnectionToTheSameHost()
{
    const DeviceDouble open(answering("HTTP/1.0 200 OK\r\n\r\n<html></ht", false));
    const DeviceDouble other(answering("later</html>"), u"127.0.0.2"_s, open.port());
    const auto finishing = [](QTcpSocket& connection, const QByteArray&) { connection.write("one</html>"); };
    const DeviceDouble both(finishing, u"127.0.0.3"_s, open.port());
    HttpExchange exchange(m_database->main, open.port(), report().line);
    QVERIFY(exchange.GetHttp(u"127.0.0.3"_s, u"first"_s));
    QVERIFY(exchange.GetHttp(u"127.0.0.3"_s, u"second"_s));
    QCOMPARE(exchange.reply(), u"one</html>"_s);
    QCOMPARE(both.received(), QList<QByteArray>({"firstsecond"}));
    QVERIFY(exchange.PostHttp(u"127.0.0.3"_s, u"third"_s));
    QTRY_COMPARE(both.received().first(), "firstsecondthird");

    // A request never goes to another phone than the one that it is for.
    QVERIFY(exchange.GetHttp(u"127.0.0.2"_s, u"GET /\r\n\r\n"_s));
    QCOMPARE(exchange.reply(), u"later</html>"_s);
    QCOMPARE(both.received(), QList<QByteArray>({"firstsecondthird"}));
    QCOMPARE(m_lines, QStringList());
}

void tst_reboot::bearsWithBadDevices_data()
{
    columns<QString, DeviceBehaviour, QStringList>("model", "device", "lines");
    const QStringList silence(u"M23: "_s);
    const QString senseless = u"   The phone's answer can't be understood: "_s;
    row("refuses", "GXP2000", DeviceBehaviour(),
        QStringList({u"Socket ERROR 0 / Connection refused"_s, u"M23: "_s}));
    row("is silent", "PAP2", DeviceBehaviour([](QTcpSocket&, const QByteArray&) {}), silence);
    row("dribbles", "F1000", DeviceBehaviour([](QTcpSocket& connection, const QByteArray&) {
            auto* drip = new QTimer(&connection);
            QObject::connect(drip, &QTimer::timeout, &connection, [&connection] { connection.write("x"); });
            drip->start(900);
        }),
        silence);
    row("sends without end", "GXP2000", DeviceBehaviour([](QTcpSocket& connection, const QByteArray&) {
            const QByteArray much(1 << 18, 'x');
            QObject::connect(&connection, &QTcpSocket::bytesWritten, &connection, [&connection, much] {
                if (connection.bytesToWrite() == 0)
                    connection.write(much);
            });
            connection.write(much);
        }),
        silence);
    row("closes at once", "GXP2000",
        DeviceBehaviour([](QTcpSocket& connection, const QByteArray&) { connection.abort(); }),
        QStringList(u"M22: "_s));
    row("resets in mid-reply", "PAP2", DeviceBehaviour([](QTcpSocket& connection, const QByteArray&) {
            connection.write("HTTP/1.0 401 No\r\nWWW-Authenticate: Digest realm=\"x");
            connection.flush();
            const linger reset{1, 0};
            setsockopt(static_cast<int>(connection.socketDescriptor()), SOL_SOCKET, SO_LINGER, &reset,
                       sizeof reset);
            connection.abort();
        }),
        QStringList(senseless + "realm"_L1));
    row("a status line cut off", "PAP2",
        DeviceBehaviour([](QTcpSocket& connection, const QByteArray& received) {
            const bool answered = received.contains("Authorization");
            connection.write(
                answered ? QByteArray("HTTP/1.")
                         : challenge("realm=\"r\", domain=\"d\", nonce=\"n\", opaque=\"o\", qop=\"q\""));
            connection.disconnectFromHost();
        }),
        QStringList(u"M22: "_s));
    row("a cookie without end", "GXP2000", answering("HTTP/1.0 200 OK\r\nSet-Cookie: a=1\r\n\r\n</html>"),
        QStringList(senseless + "Set-Cookie"_L1));
    row("a challenge without a field", "PAP2",
        answering(challenge("realm=\"r\", domain=\"d\", nonce=\"n\", qop=\"q\"")), QStringList(u"M22: "_s));
    row("a challenge without end", "PAP2",
        answering(challenge("realm=\"r\", domain=\"d\", nonce=\"n, qop=auth")),
        QStringList(senseless + "nonce"_L1));
    row("bytes above 127", "PAP2",
        answering(
            challenge("realm=\"\xe9\x80\xff\x81\", domain=\"\", nonce=\"\xa0\", opaque=\"\", qop=\"\"")),
        QStringList(u"M22: "_s));
}

void tst_reboot::bearsWithBadDevices()
{
    QFETCH(QString, model);
    QFETCH(DeviceBehaviour, device);
    QFETCH(QStringList, lines);
    const QHash<QString, QString> modules = {
        {u"GXP2000"_s, u"GRANDSTREAM"_s}, {u"PAP2"_s, u"PAP2"_s}, {u"F1000"_s, u"F1000"_s}};
    const DeviceBehaviour good = model == "GXP2000"_L1 ? gxp2000Device("secret")
                                 : model == "PAP2"_L1  ? pap2Device("secret")
                                                       : f1000Device("secret");
    const DeviceDouble next(good);
    std::unique_ptr<DeviceDouble> bad;
    if (device)
        bad = std::make_unique<DeviceDouble>(device, u"127.0.0.2"_s, next.port());
    addDevice(model, modules[model], u"101"_s, 2);
    addDevice(model, modules[model], u"102"_s, 1);
    QElapsedTimer time;
    time.start();
    const RebootCounts counts = run(model, next.port());
    QCOMPARE(time.elapsed() > 4900, lines.last() == "M23: "_L1);
    QCOMPARE(m_lines, QStringList(model + " 127.0.0.2 - 101 - phone 101"_L1) + lines +
                          QStringList({model + " 127.0.0.1 - 102 - phone 102"_L1, u"M15: "_s}));
    QCOMPARE(counts.rebooted, 1);
    QCOMPARE(counts.unreachable, lines.last() == "M23: "_L1 ? 1 : 0);
    QCOMPARE(counts.refused, lines.last() == "M23: "_L1 ? 0 : 1);
}

void tst_reboot::sharesOneBudget()
{
    // The connection comes up after some seconds, and then nobody answers: the budget is not begun anew.
    SilentListener listener;
    QTimer::singleShot(2000, this, [&listener] { listener.takeConnections(); });
    HttpExchange exchange(m_database->main, listener.port(), report().line);
    QElapsedTimer time;
    time.start();
    QVERIFY(!exchange.GetHttp(u"127.0.0.1"_s, u"GET /\r\n\r\n"_s));
    QVERIFY2(time.elapsed() > 4900 && time.elapsed() < 6500, qPrintable(QString::number(time.elapsed())));
    QVERIFY(listener.hasReceived());
    QCOMPARE(m_lines, QStringList(u"M23: "_s));
}

void tst_reboot::boundsTheReply()
{
    // The end of the page is found beyond what is kept, even in two pieces.
    const QByteArray much = QByteArray(3 << 20, 'x') + "</ht";
    const DeviceDouble phone([&much](QTcpSocket& connection, const QByteArray&) {
        connection.write(much);
        QTimer::singleShot(200, &connection, [&connection] { connection.write("ml>"); });
    });
    HttpExchange exchange(m_database->main, phone.port(), report().line);
    QVERIFY(exchange.GetHttp(u"127.0.0.1"_s, u"x"_s));
    QCOMPARE(exchange.reply().size(), HttpExchange::longestReply);
    QCOMPARE(m_lines, QStringList());
}

void tst_reboot::stopsAtUnknownModels()
{
    const DeviceDouble phones(gxp2000Device("secret"));
    addDevice(u"GXP2000"_s, u"GRANDSTREAM"_s, u"101"_s, 1);
    addDevice(u"GXP2000"_s, u"GRANDSTREAM"_s, u"102"_s, 1);
    addDevice(u"OTHER"_s, u"TOASTER"_s, u"103"_s, 1);
    addDevice(u"PAP2"_s, u"PAP2"_s, u"104"_s, 1);
    addDevice(u"PAP2"_s, u"PAP2"_s, u"105"_s, 1);
    Reboot reboot(m_database->main, phones.port(), report());
    const auto rebooted = [&](const QString& model) {
        return reboot.run({u"C1"_s, model, u"101"_s, u"199"_s, false}).rebooted;
    };
    QCOMPARE(rebooted(u"OTHER"_s), 0);
    QCOMPARE(m_database->user.shown, QStringList(u"M10: OTHER - TOASTER"_s));
    QCOMPARE(rebooted(u"GXP2000"_s), 1);
    QCOMPARE(rebooted(u"GXP2000"_s), 1);
    // Only a PAP2 makes it forget what stopped it.
    QCOMPARE(rebooted(u"PAP2"_s), 2);
    QCOMPARE(rebooted(u"GXP2000"_s), 2);
}

void tst_reboot::leavesOutModelsWithoutModule()
{
    addDevice(u"OTHER"_s, u"NONE"_s, u"101"_s, 1);
    addDevice(u"OTHER"_s, u"NONE"_s, u"102"_s, 1);
    const RebootCounts counts = run(u"OTHER"_s, 1);
    QCOMPARE(counts.phones, 2);
    QCOMPARE(counts.rebooted + counts.refused + counts.unreachable, 0);
    QCOMPARE(m_lines, QStringList());
    QCOMPARE(m_database->user.shown, QStringList());
}

void tst_reboot::needsTheModelsRows()
{
    const DeviceDouble phone(gxp2000Device("secret"));
    addDevice(u"GXP2000"_s, u"GRANDSTREAM"_s, u"101"_s, 1);
    m_database->run(u"UPDATE SYSTEM_PARAMETERS SET SY_VALUE = 'no parameter' WHERE SY_SUBCODE = '$$IP1'"_s);
    m_database->run(u"DELETE FROM SYSTEM_PARAMETERS WHERE SY_SUBCODE IN ('$$IP3', '$$EPWD')"_s);
    QCOMPARE(run(u"GXP2000"_s, phone.port()).unreachable, 1);
    QCOMPARE(m_database->user.shown, QStringList(u"M20: $$IP3"_s));
    QCOMPARE(phone.received(), QList<QByteArray>());
    QCOMPARE(m_lines, QStringList());
}

void tst_reboot::aborts_data()
{
    columns<QString, QString, QStringList>("moment", "model", "lines");
    row("connecting", "connecting", "GXP2000", QStringList());
    row("waiting for a reply", "replying", "GXP2000", QStringList());
    row("waiting for a PAP2's reply", "replying", "PAP2", QStringList(u"M15: "_s));
    row("waiting for an F1000's reply", "replying", "F1000", QStringList(u"M15: "_s));
    row("waiting on a busy phone", "busy", "GXP2000", QStringList(u"M21: "_s));
}

void tst_reboot::aborts()
{
    QFETCH(QString, moment);
    QFETCH(QString, model);
    QFETCH(QStringList, lines);
    const SilentListener listener;
    const DeviceDouble phone(moment == "busy"_L1 ? gxp2000Device("secret", 99)
                                                 : DeviceBehaviour([](QTcpSocket&, const QByteArray&) {}));
    for (const QString& code : {u"101"_s, u"102"_s})
        addDevice(model, model == "GXP2000"_L1 ? u"GRANDSTREAM"_s : model, code, 1);
    Reboot reboot(m_database->main, moment == "connecting"_L1 ? listener.port() : phone.port(), report());
    QElapsedTimer sinceAbort;
    QTimer::singleShot(400, this, [&] {
        sinceAbort.start();
        reboot.abort();
    });
    const RebootCounts counts = reboot.run({u"C1"_s, model, u"101"_s, u"199"_s, true});
    QVERIFY(sinceAbort.isValid() && sinceAbort.elapsed() < HttpExchange::budget / 2);
    QCOMPARE(m_lines, QStringList(model + " 127.0.0.1 - 101 - phone 101"_L1) + lines);
    // Whatever the line says: a phone that was cut off counts as left out.
    QCOMPARE(counts.rebooted + counts.refused + counts.unreachable, 0);
    QTest::qWait(50);
    QCOMPARE(phone.received().size(), moment == "connecting"_L1 ? 0 : 1);
}

QTEST_GUILESS_MAIN(tst_reboot)
#include "tst_reboot.moc"

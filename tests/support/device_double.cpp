#include "support/device_double.h"

#include <QCryptographicHash>
#include <QTimer>

#include <memory>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

void send(QTcpSocket& connection, const QByteArray& reply)
{
    connection.write(reply);
    connection.disconnectFromHost();
}

QByteArray page(const QByteArray& status, const QByteArray& headers, const QByteArray& body)
{
    return "HTTP/1.0 " + status + "\r\nServer: device double\r\n" + headers + "\r\n<html><body>" + body +
           "</body></html>\r\n";
}

bool isWhole(const QByteArray& request)
{
    const qsizetype headEnd = request.indexOf("\r\n\r\n");
    if (headEnd < 0 || !request.startsWith("POST "))
        return headEnd >= 0;
    return request.size() > headEnd + 4;
}

/// The last request of each model's procedure.
bool isRestart(const QByteArray& request)
{
    return request.startsWith("GET /rs.htm") || request.startsWith("POST /adminprivate/") ||
           (request.startsWith("GET /admin/reboot") && request.contains("Authorization: "));
}

QByteArray md5(const QByteArray& text)
{
    return QCryptographicHash::hash(text, QCryptographicHash::Md5).toHex();
}

DeviceBehaviour f1000Device(const QByteArray& password)
{
    return [password](QTcpSocket& connection, const QByteArray& received) {
        const QByteArray credentials =
            QByteArray("admin:" + password).toBase64(QByteArray::OmitTrailingEquals);
        const bool known = received.contains("Authorization: Basic " + credentials + "\r\n");
        send(connection, page(known ? "200 OK" : "401 Unauthorized", "Connection: close\r\n", "settings"));
    };
}

} // namespace

DeviceDouble::DeviceDouble(DeviceBehaviour behaviour, const QString& address, quint16 port)
    : m_address(address), m_behaviour(std::move(behaviour))
{
    connect(&m_server, &QTcpServer::newConnection, this, &DeviceDouble::accept);
    m_server.listen(m_address, port);
    m_port = m_server.serverPort();
}

void DeviceDouble::restartsFor(std::optional<int> milliseconds)
{
    m_restarts = true;
    m_downFor = milliseconds;
}

void DeviceDouble::goDown()
{
    m_server.close();
    if (m_downFor)
        QTimer::singleShot(*m_downFor, this, [this] { m_server.listen(m_address, m_port); });
}

void DeviceDouble::accept()
{
    while (QTcpSocket* connection = m_server.nextPendingConnection()) {
        const qsizetype number = m_received.size();
        m_received << QByteArray();
        const auto answer = [this, connection, number] {
            m_received[number] += connection->readAll();
            Q_EMIT requested(m_received[number]);
            if (isWhole(m_received[number]))
                m_behaviour(*connection, m_received[number]);
            if (m_restarts && isRestart(m_received[number]))
                goDown();
        };
        connect(connection, &QTcpSocket::readyRead, this, answer);
        connect(connection, &QTcpSocket::disconnected, connection, &QObject::deleteLater);
        if (connection->bytesAvailable() > 0)
            answer();
    }
}

DeviceBehaviour gxp2000Device(const QByteArray& password, int busyVisits)
{
    return [password, busyVisits](QTcpSocket& connection, const QByteArray& received) mutable {
        if (received.startsWith("POST /dologin.htm"))
            send(connection, received.contains("\r\n\r\nP2=" + password + "&gnkey=7c3e\r\n")
                                 ? page("200 OK", "Set-Cookie: session=0a1b2c; path=/\r\n", "welcome")
                                 : page("200 OK", {}, "wrong password"));
        else if (received.startsWith("GET /rs.htm"))
            send(connection,
                 page("200 OK", {},
                      received.contains("\r\nCookie: session=0a1b2c\r\n") ? "rebooting" : "log in"));
        else
            send(connection, page("200 OK", {}, busyVisits-- > 0 ? "The device is busy" : "log in"));
    };
}

DeviceBehaviour pap2Device(const QByteArray& password, int staleVisits)
{
    return [password, staleVisits, nonce = "n0nce"_ba](QTcpSocket& connection,
                                                       const QByteArray& received) mutable {
        const QByteArray response =
            md5(md5("admin:Phone Admin:" + password) + ':' + nonce +
                ":00000001:5b0e2d7a91c84f36a2e07d1b9c4f6a83:auth:" + md5("GET:/admin/reboot"));
        const bool isRight = received.contains(" response=\"" + response + '"');
        const bool isStale = isRight && staleVisits-- > 0;
        if (isStale)
            nonce += '+';
        if (isRight && !isStale)
            send(connection, page("200 OK", {}, "rebooting"));
        else
            send(connection, page("401 Unauthorized",
                                  "WWW-Authenticate: Digest realm=\"Phone Admin\", domain=\"/\", nonce=\"" +
                                      nonce + "\", opaque=\"0paque\", qop=\"auth\", algorithm=\"MD5\"" +
                                      (isStale ? ", stale=true" : "") + "\r\n",
                                  "who are you?"));
    };
}

DeviceBehaviour deviceOf(const QString& model, const QByteArray& password)
{
    if (model == "GXP2000"_L1)
        return gxp2000Device(password);
    return model == "PAP2"_L1 ? pap2Device(password) : f1000Device(password);
}

DeviceBehaviour slowly(const DeviceBehaviour& behaviour, int milliseconds)
{
    // What a device remembers is in its behaviour, which must not be copied for each answer.
    return [device = std::make_shared<DeviceBehaviour>(behaviour), milliseconds](QTcpSocket& connection,
                                                                                 const QByteArray& received) {
        QTimer::singleShot(milliseconds, &connection,
                           [device, &connection, received] { (*device)(connection, received); });
    };
}

DeviceBehaviour silentDevice()
{
    return [](QTcpSocket&, const QByteArray&) {};
}

DeviceBehaviour inTurn(const QList<QByteArray>& replies, Afterwards afterwards)
{
    return [left = replies, afterwards](QTcpSocket& connection, const QByteArray& received) mutable {
        bool closes = afterwards != Afterwards::StaysOpen;
        if (received.count(" HTTP/1.") == 1) {
            closes = afterwards == Afterwards::Closes || (closes && left.size() == 1);
            connection.write(left.size() > 1 ? left.takeFirst() : left.first());
        }
        if (closes)
            connection.disconnectFromHost();
    };
}

} // namespace velmora

// Devices that are none: TCP servers on loopback that answer as phones do, and keep every byte they are sent.
#pragma once

#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>

#include <functional>

namespace velmora {

/// What a device does when something has come on a connection: `received` is everything that has come on it.
using DeviceBehaviour = std::function<void(QTcpSocket& connection, const QByteArray& received)>;

/// One device. Its connections live as long as it does.
class DeviceDouble : public QObject {
    Q_OBJECT

public:
    /// Listens on `address`; port 0 chooses a free one.
    explicit DeviceDouble(DeviceBehaviour behaviour, const QString& address = QStringLiteral("127.0.0.1"),
                          quint16 port = 0);

    bool isListening() const { return m_server.isListening(); }
    quint16 port() const { return m_server.serverPort(); }
    /// What came on each connection, in the order of the connections.
    const QList<QByteArray>& received() const { return m_received; }

Q_SIGNALS:
    void requested(const QByteArray& received);

private:
    void accept();

    QTcpServer m_server;
    DeviceBehaviour m_behaviour;
    QList<QByteArray> m_received;
};

/// A GXP2000 that is busy for its first `busyVisits` probes; the password is the one of its owner.
DeviceBehaviour gxp2000Device(const QByteArray& password, int busyVisits = 0);
/// A PAP2 that challenges, and checks the answer. The nonce has grown old for the first `staleVisits` right
/// ones.
DeviceBehaviour pap2Device(const QByteArray& password, int staleVisits = 0);
/// An F1000 that shows its page to whoever knows the password, and takes its form.
DeviceBehaviour f1000Device(const QByteArray& password);
/// Answers the first request of each connection with the next reply, the last one over and over, and closes
/// the connection after so many milliseconds; what else comes on it meets the close.
DeviceBehaviour inTurn(const QList<QByteArray>& replies, int closingAfter = 0);

} // namespace velmora

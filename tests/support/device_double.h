// Devices that are none: TCP servers on loopback that answer as phones do, and keep every byte they are sent.
#pragma once

#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>

#include <functional>
#include <optional>

namespace velmora {

/// What a device does when something has come on a connection, and a whole request is there: `received` is
/// everything that has come on it.
using DeviceBehaviour = std::function<void(QTcpSocket& connection, const QByteArray& received)>;

/// One device. Its connections live as long as it does.
class DeviceDouble : public QObject {
    Q_OBJECT

public:
    /// Listens on `address`; port 0 chooses a free one.
    explicit DeviceDouble(DeviceBehaviour behaviour, const QString& address = QStringLiteral("127.0.0.1"),
                          quint16 port = 0);

    bool isListening() const { return m_server.isListening(); }
    quint16 port() const { return m_port; }
    /// From now on a request that restarts it closes its port for so many milliseconds, or for good.
    void restartsFor(std::optional<int> milliseconds);
    /// What came on each connection, in the order of the connections.
    const QList<QByteArray>& received() const { return m_received; }

Q_SIGNALS:
    void requested(const QByteArray& received);

private:
    void accept();
    void goDown();

    QTcpServer m_server;
    const QHostAddress m_address;
    quint16 m_port = 0;
    bool m_restarts = false;
    std::optional<int> m_downFor;
    DeviceBehaviour m_behaviour;
    QList<QByteArray> m_received;
};

/// A GXP2000 that is busy for its first `busyVisits` probes; the password is the one of its owner.
DeviceBehaviour gxp2000Device(const QByteArray& password, int busyVisits = 0);
/// A PAP2 that challenges, and checks the answer. The nonce has grown old for the first `staleVisits` right
/// ones.
DeviceBehaviour pap2Device(const QByteArray& password, int staleVisits = 0);
/// A device of that model; an F1000 shows its page to whoever knows the password, and takes its form.
DeviceBehaviour deviceOf(const QString& model, const QByteArray& password);

/// Takes that long over each answer.
DeviceBehaviour slowly(const DeviceBehaviour& behaviour, int milliseconds);
/// Takes connections, and says nothing.
DeviceBehaviour silentDevice();

/// What a device does with the connection on which it has answered; one that closes on the next request does
/// so only until its last reply, after which it closes at once.
enum class Afterwards { Closes, ClosesOnNextRequest, StaysOpen };
/// Answers the first request of each connection with the next reply, the last one over and over.
DeviceBehaviour inTurn(const QList<QByteArray>& replies, Afterwards afterwards = Afterwards::Closes);

} // namespace velmora

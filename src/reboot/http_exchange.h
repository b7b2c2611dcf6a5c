// HTTP exchanges with one device at a time over one socket.
#pragma once

#include "startup/run_report.h"

#include <QTcpSocket>
#include <QTimer>

namespace velmora {

class MMain;

/// Requests go out as they are built by the caller. Every exchange runs window events while it waits, and
/// sleeps between them.
///
/// Connecting and replying share one budget of five seconds. What does not succeed is reported as a line:
/// M23 when the budget is used up, and the words of a socket error. A connection that a device resets counts
/// as one that it closes: the socket does not tell them apart.
class HttpExchange : public QObject {
    Q_OBJECT

public:
    /// The port of the devices' web servers.
    static constexpr quint16 webPort = 80;
    /// The budget of one exchange, in milliseconds.
    static constexpr int budget = 5000;
    /// The most that is kept of a reply, in bytes; what comes after it is read and dropped.
    static constexpr qsizetype longestReply = 1 << 20;

    HttpExchange(MMain& main, quint16 port, LineSink line);

    /// Sends the request and waits for the whole reply: until the device closes the connection, or until
    /// "</html>" has come. True when the request was sent; the reply may be cut off then. A connection to
    /// that host that is still open is used again.
    bool GetHttp(const QString& host, const QString& request);
    /// Sends the request. True when it was sent; no reply is awaited, and the connection stays open.
    bool PostHttp(const QString& host, const QString& request);
    /// What has come since the last request was sent, read as Windows-1252.
    QString reply() const;

    /// Waits for as long as an exchange may take.
    void pause();

    /// Makes exchanges and pauses that are going on end, and later ones not begin, until allow().
    void abort();
    void allow() { m_aborted = false; }
    bool isAborted() const { return m_aborted; }
    void close() { m_socket.abort(); }

private:
    bool connectTo(const QString& host);
    void awaitClose();
    bool timedOut();
    void send(const QString& request);
    void receive();
    void failed(QAbstractSocket::SocketError error);

    MMain& m_main;
    const quint16 m_port;
    LineSink m_line;
    QTcpSocket m_socket;
    QTimer m_budget;
    QString m_host;
    QByteArray m_response;
    /// The last bytes that came, for the end of the page.
    QByteArray m_tail;
    bool m_endSeen = false;
    bool m_aborted = false;
    bool m_pausing = false;
};

} // namespace velmora

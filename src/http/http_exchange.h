// HTTP exchanges with one device at a time over one socket.
#pragma once

#include "http/http_reply.h"
#include "runs/run_report.h"

#include <QTcpSocket>
#include <QTimer>

namespace velmora {

class MMain;

/// Requests go out as they are built by the caller. Every exchange runs window events while it waits, and
/// sleeps between them.
///
/// Connecting and replying share one budget. What does not succeed is reported as a line: M23 when the budget
/// is used up, and the words of a socket error. A connection that a device resets counts as one that it
/// closes: the socket does not tell them apart.
///
/// A connection to the same host that is still open is used again. Where it ends without one byte of an
/// answer the device had closed it before, and the request is sent once more, on a new one.
class HttpExchange : public QObject {
    Q_OBJECT

public:
    /// The port of the devices' web servers.
    static constexpr quint16 webPort = 80;
    /// The budget of one exchange, in milliseconds.
    static constexpr int usualBudget = 5000;

    HttpExchange(MMain& main, quint16 port, LineSink line, int budget = usualBudget);

    /// Sends the request and waits for the whole reply, or until the device closes the connection. True when
    /// the request was sent; the reply may be cut off then.
    bool GetHttp(const QString& host, const QString& request);
    /// Sends the request. True when it was sent; no reply is awaited, and the connection stays open.
    bool PostHttp(const QString& host, const QString& request);
    /// Reads what is answered to a request of PostHttp() until the device closes the connection or the
    /// exchange's budget is used up, and closes it then: a device may give up its work where nobody reads
    /// what it answers. False when no answer has come in that time.
    bool finishPost();
    /// What has come since the last request was sent, read as Windows-1252.
    QString reply() const { return m_reply.text(); }

    /// Waits for as long as an exchange may take.
    void pause();

    /// Makes exchanges and pauses that are going on end, and later ones not begin, until allow().
    void abort();
    void allow() { m_aborted = false; }
    bool isAborted() const { return m_aborted; }
    void close() { m_socket.abort(); }

private:
    void begin(const QString& host, const QString& request);
    bool sendRequest();
    bool awaitReply();
    void awaitClose(const QTimer& time);
    bool wasLost() const;
    bool timedOut();
    void receive();
    void failed(QAbstractSocket::SocketError error);

    MMain& m_main;
    const quint16 m_port;
    LineSink m_line;
    QTcpSocket m_socket;
    QTimer m_budget;
    QString m_host;
    QString m_request;
    /// Whether the request went out on a connection that was open already.
    bool m_reused = false;
    HttpReply m_reply;
    bool m_aborted = false;
};

} // namespace velmora

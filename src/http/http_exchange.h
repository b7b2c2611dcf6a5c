// HTTP exchanges with one device at a time over one socket.
#pragma once

#include "http/http_reply.h"
#include "runs/coroutines.h"
#include "runs/run_report.h"

#include <QTcpSocket>
#include <QTimer>

namespace velmora {

class MessageTexts;

/// Requests go out as they are built by the caller. Exchanges are coroutines: while one waits, the thread
/// does other things. They can't be started while another one of the same object is going on.
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

    /// `texts` holds M23, and must live as long as this object.
    HttpExchange(const MessageTexts& texts, quint16 port, LineSink line, int budget = usualBudget);

    /// Sends the request and waits for the whole reply, or until the device closes the connection. True when
    /// the request was sent; the reply may be cut off then.
    QCoro::Task<bool> GetHttp(QString host, QString request);
    /// Sends the request. True when it was sent; no reply is awaited, and the connection stays open.
    QCoro::Task<bool> PostHttp(QString host, QString request);
    /// Reads what is answered to a request of PostHttp() until the device closes the connection or the
    /// exchange's budget is used up, and closes it then: a device may give up its work where nobody reads
    /// what it answers. False when no answer has come in that time.
    QCoro::Task<bool> finishPost();
    /// What has come since the last request was sent, read as Windows-1252.
    QString reply() const { return m_reply.text(); }

    /// Waits for as long as an exchange may take.
    QCoro::Task<> pause();

    /// Makes an exchange or pause that is going on end, and later ones not begin.
    void abort();
    bool isAborted() const { return m_aborted; }
    void close() { m_socket.abort(); }

private:
    QCoro::Task<> begin(QString host, QString request);
    QCoro::Task<bool> sendRequest();
    QCoro::Task<bool> awaitReply();
    QCoro::Task<> awaitClose();
    bool wasLost() const;
    bool hasTime() const;
    bool timedOut();
    void receive();
    void failed(QAbstractSocket::SocketError error);

    const MessageTexts& m_texts;
    const quint16 m_port;
    LineSink m_line;
    /// Before what wakes it, so that it outlives that.
    Wakeup m_changed;
    QTcpSocket m_socket;
    QTimer m_budget;
    /// Runs while an open connection is given the time to be closed.
    QTimer m_grace;
    QString m_host;
    QString m_request;
    /// Whether the request went out on a connection that was open already.
    bool m_reused = false;
    HttpReply m_reply;
    bool m_aborted = false;
};

} // namespace velmora

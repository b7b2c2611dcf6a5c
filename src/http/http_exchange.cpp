#include "http/http_exchange.h"

#include "common/texts/message_texts.h"
#include "files/ansi.h"

#include <QNetworkProxy>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// How long a device may take to close a connection after its page, in milliseconds.
constexpr int closingTime = 200;

/// What is kept of a reply that is not read, in bytes.
constexpr qint64 mostUnread = 1 << 16;

} // namespace

HttpExchange::HttpExchange(const MessageTexts& texts, quint16 port, LineSink line, int budget)
    : m_texts(texts), m_port(port), m_line(std::move(line))
{
    m_budget.setSingleShot(true);
    m_budget.setTimerType(Qt::PreciseTimer);
    m_budget.setInterval(budget);
    m_grace.setSingleShot(true);
    m_socket.setReadBufferSize(mostUnread);
    m_socket.setProxy(QNetworkProxy::NoProxy);
    connect(&m_socket, &QTcpSocket::readyRead, this, &HttpExchange::receive);
    connect(&m_socket, &QTcpSocket::errorOccurred, this, &HttpExchange::failed);
    connect(&m_socket, &QTcpSocket::connected, &m_changed, &Wakeup::wake);
    connect(&m_socket, &QTcpSocket::disconnected, &m_changed, &Wakeup::wake);
    connect(&m_budget, &QTimer::timeout, &m_changed, &Wakeup::wake);
    connect(&m_grace, &QTimer::timeout, &m_changed, &Wakeup::wake);
}

QCoro::Task<bool> HttpExchange::GetHttp(QString host, QString request)
{
    co_await begin(host, request);
    do {
        const bool sent = co_await sendRequest();
        if (!sent)
            co_return false;
        const bool inTime = co_await awaitReply();
        if (!inTime)
            co_return false;
    } while (wasLost());
    m_budget.stop();
    co_return true;
}

QCoro::Task<bool> HttpExchange::PostHttp(QString host, QString request)
{
    co_await begin(host, request);
    const bool sent = co_await sendRequest();
    co_return sent;
}

QCoro::Task<bool> HttpExchange::finishPost()
{
    for (bool sent = true; sent;) {
        co_await awaitClose();
        if (!wasLost())
            break;
        sent = co_await sendRequest();
    }
    const bool inTime = hasTime();
    m_budget.stop();
    close();
    co_return inTime || !m_reply.isEmpty();
}

/// Begins the budget. What an exchange with another device has left open is closed, since it is not for this
/// one's requests. A connection to this one is given the time to be closed by it: a device that has sent its
/// whole page does so, and a request that meets the close has to be sent again.
QCoro::Task<> HttpExchange::begin(QString host, QString request)
{
    if (host != m_host)
        close();
    m_host = host;
    m_request = request;
    m_budget.start();
    if (m_socket.state() != QAbstractSocket::ConnectedState)
        co_return;
    m_grace.start(closingTime);
    while (m_socket.state() == QAbstractSocket::ConnectedState && m_grace.isActive() && !m_aborted)
        co_await m_changed;
    m_grace.stop();
}

/// Sends the request, on a new connection where none is open; waits until it is there.
QCoro::Task<bool> HttpExchange::sendRequest()
{
    m_reused = m_socket.state() == QAbstractSocket::ConnectedState;
    if (!m_reused && !m_aborted)
        m_socket.connectToHost(m_host, m_port);
    while (m_socket.state() != QAbstractSocket::ConnectedState) {
        if (timedOut())
            co_return false;
        if (m_aborted) {
            m_budget.stop();
            co_return false;
        }
        co_await m_changed;
    }
    m_reply = {};
    QByteArray bytes;
    appendAnsi(bytes, m_request);
    m_socket.write(bytes);
    m_socket.flush();
    co_return true;
}

QCoro::Task<bool> HttpExchange::awaitReply()
{
    while (m_socket.state() != QAbstractSocket::UnconnectedState && !m_reply.isWhole()) {
        if (timedOut())
            co_return false;
        if (m_aborted)
            close();
        else
            co_await m_changed;
    }
    co_return true;
}

/// Waits until the device has closed the connection, at most for the budget.
QCoro::Task<> HttpExchange::awaitClose()
{
    while (m_socket.state() == QAbstractSocket::ConnectedState && hasTime() && !m_aborted)
        co_await m_changed;
}

bool HttpExchange::wasLost() const
{
    return m_reused && m_reply.isEmpty() && m_socket.state() == QAbstractSocket::UnconnectedState &&
           !m_aborted;
}

bool HttpExchange::hasTime() const
{
    return m_budget.remainingTime() > 0;
}

bool HttpExchange::timedOut()
{
    if (hasTime())
        return false;
    close();
    m_line(m_texts.line(u"M23"_s));
    return true;
}

QCoro::Task<> HttpExchange::pause()
{
    m_budget.start();
    while (hasTime() && !m_aborted)
        co_await m_changed;
    m_budget.stop();
}

void HttpExchange::abort()
{
    m_aborted = true;
    close();
    m_changed.wake();
}

void HttpExchange::receive()
{
    // Windows tells of what arrives before all else: of a device that sends without end no more is taken when
    // its time is over, so that this is noticed.
    const bool isOverdue = m_budget.remainingTime() == 0;
    if (!isOverdue)
        m_reply.append(m_socket.readAll());
    m_changed.wake();
}

void HttpExchange::failed(QAbstractSocket::SocketError error)
{
    receive();
    if (error != QAbstractSocket::RemoteHostClosedError)
        m_line(u"Socket ERROR %1 / %2"_s.arg(QString::number(error), m_socket.errorString()));
    close();
}

} // namespace velmora

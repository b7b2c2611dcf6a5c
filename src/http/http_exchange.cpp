#include "http/http_exchange.h"

#include "common/MMain.h"
#include "files/ansi.h"

#include <QCoreApplication>
#include <QEvent>
#include <QNetworkProxy>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// How long a device may take to close a connection after its page, in milliseconds.
constexpr int closingTime = 200;

void waitForEvents()
{
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

} // namespace

HttpExchange::HttpExchange(MMain& main, quint16 port, LineSink line, int budget)
    : m_main(main), m_port(port), m_line(std::move(line))
{
    m_budget.setSingleShot(true);
    m_budget.setTimerType(Qt::PreciseTimer);
    m_budget.setInterval(budget);
    m_socket.setProxy(QNetworkProxy::NoProxy);
    connect(&m_socket, &QTcpSocket::readyRead, this, &HttpExchange::receive);
    connect(&m_socket, &QTcpSocket::errorOccurred, this, &HttpExchange::failed);
}

bool HttpExchange::GetHttp(const QString& host, const QString& request)
{
    begin(host, request);
    do {
        if (!sendRequest() || !awaitReply())
            return false;
    } while (wasLost());
    m_budget.stop();
    return true;
}

bool HttpExchange::PostHttp(const QString& host, const QString& request)
{
    begin(host, request);
    return sendRequest();
}

bool HttpExchange::finishPost()
{
    do {
        awaitClose(m_budget);
    } while (wasLost() && sendRequest());
    const bool inTime = m_budget.isActive();
    m_budget.stop();
    close();
    return inTime || !m_reply.isEmpty();
}

/// Begins the budget. What an exchange with another device has left open is closed, since it is not for this
/// one's requests. A connection to this one is given the time to be closed by it: a device that has sent its
/// whole page does so, and a request that meets the close has to be sent again.
void HttpExchange::begin(const QString& host, const QString& request)
{
    if (host != m_host)
        close();
    m_host = host;
    m_request = request;
    m_budget.start();
    QTimer grace;
    grace.setSingleShot(true);
    grace.start(closingTime);
    awaitClose(grace);
}

/// Sends the request, on a new connection where none is open; waits until it is there.
bool HttpExchange::sendRequest()
{
    m_reused = m_socket.state() == QAbstractSocket::ConnectedState;
    if (!m_reused && !m_aborted)
        m_socket.connectToHost(m_host, m_port);
    while (m_socket.state() != QAbstractSocket::ConnectedState) {
        if (timedOut())
            return false;
        if (m_aborted) {
            m_budget.stop();
            return false;
        }
        waitForEvents();
    }
    m_reply = {};
    QByteArray bytes;
    appendAnsi(bytes, m_request);
    m_socket.write(bytes);
    m_socket.flush();
    return true;
}

bool HttpExchange::awaitReply()
{
    while (m_socket.state() != QAbstractSocket::UnconnectedState && !m_reply.isWhole()) {
        if (timedOut())
            return false;
        if (m_aborted)
            close();
        else
            waitForEvents();
    }
    return true;
}

/// Waits until the device has closed the connection, at most for that time.
void HttpExchange::awaitClose(const QTimer& time)
{
    while (m_socket.state() == QAbstractSocket::ConnectedState && time.isActive() && !m_aborted)
        waitForEvents();
}

bool HttpExchange::wasLost() const
{
    return m_reused && m_reply.isEmpty() && m_socket.state() == QAbstractSocket::UnconnectedState &&
           !m_aborted;
}

bool HttpExchange::timedOut()
{
    if (m_budget.isActive())
        return false;
    close();
    m_line(m_main.messageLine(u"M23"_s));
    return true;
}

void HttpExchange::pause()
{
    m_budget.start();
    while (m_budget.isActive() && !m_aborted)
        waitForEvents();
    m_budget.stop();
}

void HttpExchange::abort()
{
    m_aborted = true;
    close();
    // Wakes the waiting loop where closing the socket has sent no event.
    QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

void HttpExchange::receive()
{
    m_reply.append(m_socket.readAll());
}

void HttpExchange::failed(QAbstractSocket::SocketError error)
{
    receive();
    if (error != QAbstractSocket::RemoteHostClosedError)
        m_line(u"Socket ERROR %1 / %2"_s.arg(QString::number(error), m_socket.errorString()));
    close();
}

} // namespace velmora

#include "reboot/http_exchange.h"

#include "files/ansi.h"
#include "startup/MMain.h"

#include <QCoreApplication>
#include <QEvent>
#include <QNetworkProxy>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

constexpr QByteArrayView endOfPage = "</html>";
/// How long a device may take to close a connection after its page, in milliseconds.
constexpr int closingTime = 200;

void waitForEvents()
{
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

} // namespace

HttpExchange::HttpExchange(MMain& main, quint16 port, LineSink line)
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
    if (!connectTo(host))
        return false;
    send(request);
    while (m_socket.state() != QAbstractSocket::UnconnectedState && !m_endSeen) {
        if (timedOut())
            return false;
        if (m_aborted)
            close();
        else
            waitForEvents();
    }
    m_budget.stop();
    return true;
}

bool HttpExchange::PostHttp(const QString& host, const QString& request)
{
    if (!connectTo(host))
        return false;
    m_budget.stop();
    send(request);
    return true;
}

QString HttpExchange::reply() const
{
    return decodeAnsi(m_response);
}

/// Begins the budget, and waits until the socket is connected to `host`.
bool HttpExchange::connectTo(const QString& host)
{
    if (m_aborted && m_socket.state() != QAbstractSocket::ConnectedState)
        return false;
    // What an exchange with another device has left open is not for this one's requests.
    if (host != m_host)
        close();
    m_host = host;
    m_budget.start();
    awaitClose();
    // Stop may have come while the last connection was closing.
    if (m_socket.state() == QAbstractSocket::UnconnectedState && !m_aborted)
        m_socket.connectToHost(host, m_port);
    while (m_socket.state() != QAbstractSocket::ConnectedState) {
        if (timedOut())
            return false;
        if (m_aborted) {
            m_budget.stop();
            return false;
        }
        waitForEvents();
    }
    return true;
}

/// Gives a device that has sent its whole page the time to close the connection. A request that meets the
/// close would be lost.
void HttpExchange::awaitClose()
{
    QTimer grace;
    grace.setSingleShot(true);
    grace.start(closingTime);
    while (m_socket.state() == QAbstractSocket::ConnectedState && grace.isActive() && !m_aborted)
        waitForEvents();
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
    m_pausing = true;
    m_budget.start();
    while (m_budget.isActive())
        waitForEvents();
    m_pausing = false;
}

void HttpExchange::abort()
{
    m_aborted = true;
    close();
    // An exchange finds the flag by itself; it would take a stopped budget for a used one.
    if (m_pausing)
        m_budget.stop();
    // Wakes the waiting loop where closing the socket has sent no event.
    QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

void HttpExchange::send(const QString& request)
{
    m_response.clear();
    m_tail.clear();
    m_endSeen = false;
    QByteArray bytes;
    appendAnsi(bytes, request);
    m_socket.write(bytes);
    m_socket.flush();
}

void HttpExchange::receive()
{
    const QByteArray arrived = m_socket.readAll();
    // The end of the page may come in two pieces.
    m_tail += arrived;
    m_endSeen = m_endSeen || m_tail.contains(endOfPage);
    m_tail = m_tail.last(std::min(m_tail.size(), endOfPage.size() - 1));
    m_response += arrived.first(std::min(arrived.size(), longestReply - m_response.size()));
}

void HttpExchange::failed(QAbstractSocket::SocketError error)
{
    receive();
    if (error != QAbstractSocket::RemoteHostClosedError)
        m_line(u"Socket ERROR %1 / %2"_s.arg(QString::number(error), m_socket.errorString()));
    close();
}

} // namespace velmora

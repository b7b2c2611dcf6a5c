#include "reboot/phone_watch.h"

#include <QNetworkProxy>
#include <QTcpSocket>

namespace velmora {

PhoneWatch::PhoneWatch(QString address, quint16 port, const WatchTimes& times)
    : m_address(std::move(address)), m_port(port), m_times(times)
{
    m_interval.setSingleShot(true);
    m_interval.setInterval(times.interval);
    connect(&m_interval, &QTimer::timeout, &m_changed, &Wakeup::wake);
}

QCoro::Task<WatchResult> PhoneWatch::run()
{
    WatchResult result{WatchOutcome::StayedUp, {}, {}};
    const bool wentDown = co_await becomes(false, m_times.untilDown);
    if (wentDown) {
        result.down = QDateTime::currentDateTime();
        const bool cameBack = co_await becomes(true, m_times.untilUp);
        result.up = QDateTime::currentDateTime();
        result.outcome = cameBack ? WatchOutcome::Restarted : WatchOutcome::StayedDown;
    }
    if (m_aborted)
        result.outcome = WatchOutcome::CutOff;
    co_return result;
}

void PhoneWatch::abort()
{
    m_aborted = true;
    m_changed.wake();
}

/// Tries again and again, until the phone is up or down, as asked, or the time is over.
QCoro::Task<bool> PhoneWatch::becomes(bool isUp, qint64 within)
{
    QElapsedTimer time;
    time.start();
    while (!m_aborted && time.elapsed() <= within) {
        m_interval.start();
        const std::optional<bool> answered = co_await answers();
        if (answered == isUp)
            co_return !m_aborted;
        while (m_interval.isActive() && !m_aborted)
            co_await m_changed;
    }
    co_return false;
}

/// Whether a connection comes about before the interval is over; nothing where none could be tried.
QCoro::Task<std::optional<bool>> PhoneWatch::answers()
{
    QTcpSocket socket;
    socket.setProxy(QNetworkProxy::NoProxy);
    connect(&socket, &QTcpSocket::stateChanged, &m_changed, &Wakeup::wake);
    socket.connectToHost(m_address, m_port);
    const auto isConnecting = [&socket] {
        return socket.state() != QAbstractSocket::ConnectedState &&
               socket.state() != QAbstractSocket::UnconnectedState;
    };
    while (isConnecting() && m_interval.isActive() && !m_aborted)
        co_await m_changed;
    const bool isLacking = socket.error() == QAbstractSocket::SocketResourceError ||
                           socket.error() == QAbstractSocket::UnsupportedSocketOperationError;
    if (isLacking)
        co_return std::nullopt;
    co_return socket.state() == QAbstractSocket::ConnectedState;
}

} // namespace velmora

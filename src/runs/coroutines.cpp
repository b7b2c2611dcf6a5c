#include "runs/coroutines.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>

#include <exception>
#include <utility>

namespace velmora {

void Wakeup::wake()
{
    if (m_waiting && !std::exchange(m_isPosted, true))
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

bool Wakeup::event(QEvent* event)
{
    if (event->type() != QEvent::User)
        return QObject::event(event);
    m_isPosted = false;
    // Last of all: it may destroy this object.
    std::exchange(m_waiting, {}).resume();
    return true;
}

namespace {

struct Ending {
    bool hasEnded = false;
    std::exception_ptr failure;
};

QCoro::Task<> noteEnd(QCoro::Task<> work, Ending& ending)
{
    try {
        co_await work;
    } catch (...) {
        ending.failure = std::current_exception();
    }
    ending.hasEnded = true;
    // On Windows, what is posted is handled just before events are waited for: after such an end, for one
    // more.
    QAbstractEventDispatcher::instance()->wakeUp();
}

} // namespace

void runToItsEnd(QCoro::Task<> work)
{
    Ending ending;
    const QCoro::Task<> noting = noteEnd(std::move(work), ending);
    // No QEventLoop: one that a closing application ends would leave the work behind.
    while (!ending.hasEnded)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    if (ending.failure)
        std::rethrow_exception(ending.failure);
}

} // namespace velmora

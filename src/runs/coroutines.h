// What a run needs that waits for many things at once: its steps are coroutines, all on the one thread.
#pragma once

#include <QCoroTask>

#include <QEvent>
#include <QObject>

namespace velmora {

/// What a coroutine waits on until something may have changed:
///
///     while (!isThere())
///         co_await m_changed;
///
/// Whoever changes something calls wake(). The coroutine goes on from the event loop, never within the call,
/// so that it may destroy what has woken it, and this object too. One coroutine at a time waits on it.
class Wakeup : public QObject {
public:
    void wake();

    auto operator co_await() noexcept { return Waiting{*this}; }

protected:
    bool event(QEvent* event) override;

private:
    struct Waiting {
        Wakeup& wakeup;

        bool await_ready() const noexcept { return false; }
        void await_suspend(std::coroutine_handle<> waiting) noexcept { wakeup.m_waiting = waiting; }
        void await_resume() const noexcept {}
    };

    std::coroutine_handle<> m_waiting;
    bool m_isPosted = false;
};

/// Runs events until the work is done, and throws what it throws.
void runToItsEnd(QCoro::Task<> work);

} // namespace velmora

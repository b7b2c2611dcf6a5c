#include "platform/interruption.h"

#include <QObject>

#include <memory>
#include <utility>

#ifdef Q_OS_WIN
#include <QMutex>
#include <windows.h>
#else
#include <QSocketNotifier>

#include <array>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>
#endif

namespace velmora {

#ifdef Q_OS_WIN

namespace {

// The system calls a handler in a thread of its own.
QMutex guard;
std::unique_ptr<QObject> receiver;
std::function<void()> callback;

/// Whether this is the first call, which the event loop is told of.
bool passOn()
{
    const QMutexLocker locker(&guard);
    if (!receiver || !callback)
        return false;
    return QMetaObject::invokeMethod(receiver.get(), std::exchange(callback, nullptr), Qt::QueuedConnection);
}

BOOL WINAPI interrupt(DWORD event)
{
    if (!passOn())
        return FALSE;
    // When this returns from any other request to end, the process is ended at once: the seconds that the
    // system grants are for the event loop.
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT)
        Sleep(INFINITE);
    return TRUE;
}

} // namespace

Interruption::Interruption(std::function<void()> interrupted)
{
    const QMutexLocker locker(&guard);
    receiver = std::make_unique<QObject>();
    callback = std::move(interrupted);
    // For good: to be told no more may mean to wait for a handler that is just being called.
    [[maybe_unused]] static const BOOL isTold = SetConsoleCtrlHandler(interrupt, TRUE);
}

Interruption::~Interruption()
{
    const QMutexLocker locker(&guard);
    receiver.reset();
    callback = nullptr;
}

#else

namespace {

/// A signal may do next to nothing but write: so it writes here, and the event loop reads there.
std::array<int, 2> ends = {-1, -1};
std::unique_ptr<QSocketNotifier> notifier;
constexpr std::array<int, 2> signalNumbers = {SIGINT, SIGTERM};

void write(int)
{
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = ::write(ends[1], &byte, 1);
}

} // namespace

Interruption::Interruption(std::function<void()> interrupted)
{
    if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    notifier = std::make_unique<QSocketNotifier>(ends[0], QSocketNotifier::Read);
    QObject::connect(notifier.get(), &QSocketNotifier::activated, notifier.get(),
                     [interrupted = std::move(interrupted)] {
                         notifier->setEnabled(false);
                         interrupted();
                     });
    struct sigaction action = {};
    action.sa_handler = write;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
    for (const int number : signalNumbers)
        sigaction(number, &action, nullptr);
}

Interruption::~Interruption()
{
    if (!notifier)
        return;
    for (const int number : signalNumbers)
        std::signal(number, SIG_DFL);
    notifier.reset();
    for (const int end : ends)
        close(end);
}

#endif

} // namespace velmora

#include "platform/interruption.h"

#include <QSocketNotifier>

#ifdef Q_OS_UNIX
#include <array>
#include <csignal>
#include <memory>

#include <fcntl.h>
#include <unistd.h>
#endif

namespace velmora {

#ifdef Q_OS_UNIX

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

#else

Interruption::Interruption(std::function<void()>) {}
Interruption::~Interruption() = default;

#endif

} // namespace velmora

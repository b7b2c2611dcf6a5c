// Whether a phone that has taken its restart really restarts, as its web port tells.
#pragma once

#include "runs/coroutines.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QTimer>

#include <optional>

namespace velmora {

/// In milliseconds.
struct WatchTimes {
    /// From one connection to the next, and how long each may take to come about.
    int interval = 2'000;
    /// From the restart on.
    int untilDown = 60'000;
    /// From the first connection that failed on.
    int untilUp = 300'000;
};

enum class WatchOutcome { Restarted, StayedUp, StayedDown, CutOff };

struct WatchResult {
    WatchOutcome outcome;
    /// When it was first seen down, and up again.
    QDateTime down;
    QDateTime up;
};

/// Watches one phone through connections to its web port, on which nothing is sent. A restart that is over
/// between two of them is not seen. Where this machine has no socket to spare, nothing is seen either.
class PhoneWatch : public QObject {
    Q_OBJECT

public:
    PhoneWatch(QString address, quint16 port, const WatchTimes& times);

    QCoro::Task<WatchResult> run();
    /// Makes it end at once, with nothing known.
    void abort();

private:
    QCoro::Task<bool> becomes(bool isUp, qint64 within);
    QCoro::Task<std::optional<bool>> answers();

    const QString m_address;
    const quint16 m_port;
    const WatchTimes m_times;
    Wakeup m_changed;
    QTimer m_interval;
    bool m_aborted = false;
};

} // namespace velmora

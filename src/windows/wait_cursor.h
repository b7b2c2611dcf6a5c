// The cursor of a program that waits for its database.
#pragma once

#include <QCursor>
#include <QGuiApplication>

namespace velmora {

/// Shown for as long as the object lives, in which no window events run: another program may hold the
/// database for up to half a minute.
class WaitCursor {
    Q_DISABLE_COPY_MOVE(WaitCursor)

public:
    WaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QGuiApplication::restoreOverrideCursor(); }
};

/// Takes the wait cursor away for as long as a box waits for the user.
class NoWaitCursor {
    Q_DISABLE_COPY_MOVE(NoWaitCursor)

public:
    NoWaitCursor() : m_waiting(QGuiApplication::overrideCursor() != nullptr)
    {
        if (m_waiting)
            QGuiApplication::setOverrideCursor(Qt::ArrowCursor);
    }
    ~NoWaitCursor()
    {
        if (m_waiting)
            QGuiApplication::restoreOverrideCursor();
    }

private:
    const bool m_waiting;
};

} // namespace velmora

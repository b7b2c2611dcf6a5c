// One batch at a time: who runs one, who must wait.
#pragma once

#include <QObject>

namespace velmora {

/// Tells whether a long run is going on. Windows connect to runningChanged() to disable their start buttons.
class Batch : public QObject {
    Q_OBJECT

public:
    bool running() const { return m_running; }

    /// Asks the run that is going on to end soon.
    void requestStop() { Q_EMIT stopRequested(); }

    /// Marks a run for as long as it lives. REQUIRES: no other run.
    class Run {
    public:
        explicit Run(Batch& batch);
        ~Run();
        Run(const Run&) = delete;
        Run& operator=(const Run&) = delete;

    private:
        Batch& m_batch;
    };

Q_SIGNALS:
    void runningChanged(bool running);
    void stopRequested();

private:
    void setRunning(bool running);

    bool m_running = false;
};

} // namespace velmora

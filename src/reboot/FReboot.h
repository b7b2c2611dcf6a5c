// The window that restarts phones.
#pragma once

#include "reboot/reboot.h"
#include "runs/BatchWindow.h"
#include "runs/SelectionPanel.h"

#include <QCheckBox>
#include <QTimer>

namespace velmora {

/// Shows what Reboot needs and what it reports, and meanwhile which phone is visited and for how long the run
/// has been going on. A run is stopped at once: the current phone's exchange is cut off. The connection is
/// closed with the window, which goes when it is closed.
class FReboot : public BatchWindow {
    Q_OBJECT

public:
    explicit FReboot(MMain& main, quint16 port = HttpExchange::webPort);

private:
    bool run() override;
    void stop() override;
    QString missing() const override
    {
        return m_selection->phoneCount() > 0 ? QString() : QStringLiteral("M284");
    }
    bool startsByReturn() const override { return false; } // one key must not restart a company
    void phonesChosen();
    RunReport reportOfReboot();
    void showVisit();

    SelectionPanel* m_selection;
    QCheckBox* m_waitIfBusy;
    Reboot m_reboot;
    QElapsedTimer m_sinceStart;
    QTimer m_everySecond;
    QString m_summary;
    /// What the start button says without phones, with one and with more.
    QString m_caption;
    QString m_captionOfOne;
    QString m_captionOfMore;
};

} // namespace velmora

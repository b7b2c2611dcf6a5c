// The window that restarts phones.
#pragma once

#include "reboot/reboot.h"
#include "runs/BatchWindow.h"
#include "runs/SelectionPanel.h"

#include <QCheckBox>
#include <QSpinBox>
#include <QTimer>

namespace velmora {

/// Shows what Reboot needs and what it reports, and meanwhile which phones are visited and for how long the
/// run has been going on. A run is stopped at once: what goes on with its phones is cut off. What failed in a
/// run can be repeated alone.
class FReboot : public BatchWindow {
    Q_OBJECT

public:
    explicit FReboot(MMain& main, quint16 port = HttpExchange::webPort, const WatchTimes& watchTimes = {});

private:
    bool run() override;
    void stop() override;
    QString missing() const override
    {
        return m_selection->phoneCount() > 0 ? QString() : QStringLiteral("M284");
    }
    bool startsByReturn() const override { return false; } // one key must not restart a company
    void enabledChanged(bool free) override { m_repeat->setEnabled(free && !m_failed.isEmpty()); }
    QWidget* options();
    RebootRequest chosenRequest() const;
    RebootRequest requestToRepeat() const;
    void setFailed(const QStringList& codes);
    void phonesChosen();
    RunReport reportOfReboot();
    void showVisit();

    SelectionPanel* m_selection;
    QCheckBox* m_waitIfBusy;
    QSpinBox* m_atOnce;
    QCheckBox* m_confirm;
    QPushButton* m_repeat;
    Reboot m_reboot;
    /// What the run before was to do, and the phones that failed in it.
    RebootRequest m_request;
    QStringList m_failed;
    bool m_repeats = false;
    QElapsedTimer m_sinceStart;
    QTimer m_everySecond;
    QString m_summary;
    /// What the start button says without phones, with one and with more.
    QString m_caption;
    QString m_captionOfOne;
    QString m_captionOfMore;
    QString m_captionOfRepeat;
    /// What the status says of several visits, and of watches.
    QString m_visitsText;
    QString m_watchesText;
};

} // namespace velmora

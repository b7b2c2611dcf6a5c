#include "reboot/FReboot.h"

#include "common/MMain.h"
#include "windows/failure_report.h"

#include <QScopeGuard>

using namespace Qt::StringLiterals;

namespace velmora {

FReboot::FReboot(MMain& main, quint16 port)
    : BatchWindow(main, u"FReboot"_s, u"Velmora Reboot"_s, {u"Lb1"_s, u"Ok"_s, u"Reboot"_s}),
      m_selection(new SelectionPanel(main, 4)),
      m_waitIfBusy(new QCheckBox(u"Wait if Busy"_s)),
      m_reboot(main, port, reportOfReboot()),
      m_caption(main.textOr(u"FREBOOT_OK"_s, u"Reboot"_s)),
      m_captionOfOne(main.messageLine(u"M280"_s)),
      m_captionOfMore(main.messageLine(u"M281"_s, u"$$"_s))
{
    m_waitIfBusy->setObjectName(u"Cbusy"_s);
    addInput(m_selection);
    addInput(m_waitIfBusy);
    connect(m_selection, &SelectionPanel::companyChosen, this, &FReboot::phonesChosen);
    connect(m_selection, &SelectionPanel::equipmentChosen, this, [this] {
        reportFailures(m_main, [this] { m_selection->fillPhones(false); });
        phonesChosen();
    });
    connect(m_selection, &SelectionPanel::rangeChosen, this, &FReboot::phonesChosen);
    connect(&m_everySecond, &QTimer::timeout, this, &FReboot::showVisit);
    complete();
}

/// Says on the button how many phones it would restart.
void FReboot::phonesChosen()
{
    const int phones = m_selection->phoneCount();
    QString caption = phones == 0 ? m_caption : phones == 1 ? m_captionOfOne : m_captionOfMore;
    setStartCaption(caption.replace("$$"_L1, QString::number(phones)));
    enableStart();
}

/// The run waits for its devices with window events running, so none have to run for its progress.
RunReport FReboot::reportOfReboot()
{
    return {[this](const QString& line) { append({line}); },
            [this](qsizetype done, qsizetype total) {
                showProgress(done, total);
                showVisit();
            },
            [this](const QString& line) {
                append({line, true});
            }};
}

bool FReboot::run()
{
    m_sinceStart.start();
    m_everySecond.start(1000);
    // Nobody is visited any more, also where the database was lost.
    const auto finish = qScopeGuard([this] {
        m_everySecond.stop();
        showStatus(m_summary);
    });
    m_summary.clear();
    const RebootCounts counts =
        m_reboot.run({m_selection->company(), m_selection->equipment(), m_selection->phoneFrom(),
                      m_selection->phoneTo(), m_waitIfBusy->isChecked()});
    m_summary = summaryOf(m_main, counts);
    return counts.visited == counts.phones;
}

void FReboot::stop()
{
    m_reboot.abort();
}

void FReboot::showVisit()
{
    if (!isRunning() || m_main.phones.eof())
        return;
    const Phone phone = m_main.currentPhone();
    const qint64 seconds = m_sinceStart.elapsed() / 1000;
    showStatus(u"%1 - %2   %3:%4"_s.arg(phone.code, phone.description, QString::number(seconds / 60),
                                        QString::number(seconds % 60).rightJustified(2, u'0')));
}

} // namespace velmora

#include "reboot/FReboot.h"

#include "common/MMain.h"
#include "windows/failure_report.h"

#include <QHBoxLayout>
#include <QScopeGuard>

#include <utility>

using namespace Qt::StringLiterals;

namespace velmora {

FReboot::FReboot(MMain& main, quint16 port, const WatchTimes& watchTimes)
    : BatchWindow(main, u"FReboot"_s, u"Velmora Reboot"_s, {u"Lb1"_s, u"Ok"_s, u"Reboot"_s}),
      m_selection(new SelectionPanel(main, 4)),
      m_waitIfBusy(new QCheckBox(u"Wait if Busy"_s)),
      m_atOnce(new QSpinBox),
      m_confirm(new QCheckBox(u"Verify Restarts"_s)),
      m_repeat(new QPushButton(u"Repeat the failed ones"_s)),
      m_reboot(main, port, reportOfReboot(), HttpExchange::usualBudget, watchTimes),
      m_caption(main.textOr(u"FREBOOT_OK"_s, u"Reboot"_s)),
      m_captionOfOne(main.messageLine(u"M280"_s)),
      m_captionOfMore(main.messageLine(u"M281"_s, u"$$"_s)),
      m_captionOfRepeat(main.textOr(u"FREBOOT_REPEAT"_s, m_repeat->text())),
      m_visitsText(main.messageLine(u"M393"_s, u"$$"_s)),
      m_watchesText(main.messageLine(u"M394"_s, u"$$"_s))
{
    addInput(m_selection);
    addInput(options());
    addButton(m_repeat);
    connect(m_repeat, &QPushButton::clicked, this, [this] {
        m_repeats = true;
        startRun();
    });
    connect(m_selection, &SelectionPanel::companyChosen, this, &FReboot::phonesChosen);
    connect(m_selection, &SelectionPanel::equipmentChosen, this, [this] {
        reportFailures(m_main, [this] { m_selection->fillPhones(false); });
        phonesChosen();
    });
    connect(m_selection, &SelectionPanel::rangeChosen, this, &FReboot::phonesChosen);
    connect(&m_everySecond, &QTimer::timeout, this, &FReboot::showVisit);
    complete();
}

/// The row with how the phones are visited.
QWidget* FReboot::options()
{
    m_waitIfBusy->setObjectName(u"Cbusy"_s);
    m_confirm->setObjectName(u"Confirm"_s);
    m_repeat->setObjectName(u"Repeat"_s);
    m_repeat->setAutoDefault(true);
    m_repeat->setEnabled(false);
    m_atOnce->setObjectName(u"AtOnce"_s);
    m_atOnce->setRange(1, mostAtOnce);
    auto* label = new QLabel(u"Phones at a time:"_s);
    label->setObjectName(u"AtOnceLab"_s);
    label->setBuddy(m_atOnce);
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_waitIfBusy);
    layout->addWidget(m_confirm);
    layout->addStretch();
    layout->addWidget(label);
    layout->addWidget(m_atOnce);
    return row;
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
    m_request = std::exchange(m_repeats, false) ? requestToRepeat() : chosenRequest();
    setFailed({});
    const RebootCounts counts = m_reboot.run(m_request);
    setFailed(counts.failed);
    m_summary = summaryOf(m_main, counts, m_request.confirm);
    return counts.visited == counts.phones && counts.unknown == 0;
}

RebootRequest FReboot::chosenRequest() const
{
    RebootRequest request{m_selection->company(), m_selection->equipment(), m_selection->phoneFrom(),
                          m_selection->phoneTo(), m_waitIfBusy->isChecked()};
    request.atOnce = m_atOnce->value();
    request.confirm = m_confirm->isChecked();
    return request;
}

/// The same phones' run as before, whatever is chosen meanwhile, for those that failed; how they are visited
/// is what is chosen now.
RebootRequest FReboot::requestToRepeat() const
{
    RebootRequest request = chosenRequest();
    request.company = m_request.company;
    request.equipment = m_request.equipment;
    request.phoneFrom = m_request.phoneFrom;
    request.phoneTo = m_request.phoneTo;
    request.codes = m_failed;
    return request;
}

/// The button says how many there are; it is enabled with the end of the run.
void FReboot::setFailed(const QStringList& codes)
{
    m_failed = codes;
    m_repeat->setText(codes.isEmpty() ? m_captionOfRepeat
                                      : u"%1 (%2)"_s.arg(m_captionOfRepeat, QString::number(codes.size())));
}

void FReboot::stop()
{
    m_reboot.abort();
}

/// Which phone is being visited, or how many are, and how many are watched.
void FReboot::showVisit()
{
    if (!isRunning())
        return;
    const auto saying = [](QString text, qsizetype number) {
        return text.replace("$$"_L1, QString::number(number));
    };
    const QList<Phone> phones = m_reboot.visiting();
    QStringList parts;
    if (phones.size() == 1)
        parts << describe(phones.first());
    else if (phones.size() > 1)
        parts << saying(m_visitsText, phones.size());
    if (m_reboot.watching() > 0)
        parts << saying(m_watchesText, m_reboot.watching());
    const qint64 seconds = m_sinceStart.elapsed() / 1000;
    showStatus(u"%1   %2:%3"_s.arg(parts.join(", "_L1), QString::number(seconds / 60),
                                   QString::number(seconds % 60).rightJustified(2, u'0')));
}

} // namespace velmora

#include "reboot/reboot.h"

#include "common/MMain.h"
#include "platform/open_files.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <exception>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// The codes of what is said after a visit.
const QStringList& messages()
{
    static const QStringList all = {u"M380"_s, u"M381"_s, u"M382"_s, u"M383"_s,
                                    u"M384"_s, u"M385"_s, u"M388"_s};
    return all;
}

/// Says at once what the other one is told piece by piece.
class Together {
public:
    RunReport report()
    {
        return {[this](const QString& line) { m_lines << RunLine{line}; }, [](qsizetype, qsizetype) {},
                [this](const QString& line) {
                    m_lines << RunLine{line, true};
                }};
    }
    void say(const RunReport& report) const
    {
        for (const RunLine& line : m_lines)
            report.tell(line);
    }

private:
    QList<RunLine> m_lines;
};

} // namespace

QString summaryOf(MMain& main, const RebootCounts& counts, bool confirm)
{
    QStringList parts = {main.messageLine(u"M214"_s, QString::number(counts.rebooted)),
                         main.messageLine(u"M215"_s, QString::number(counts.refused)),
                         main.messageLine(u"M216"_s, QString::number(counts.unreachable))};
    if (confirm)
        parts << main.messageLine(u"M386"_s, QString::number(counts.unconfirmed));
    if (counts.unknown > 0)
        parts << main.messageLine(u"M387"_s, QString::number(counts.unknown));
    return parts.join(", "_L1);
}

Reboot::Reboot(MMain& main, quint16 port, RunReport report, int budget, const WatchTimes& watchTimes)
    : m_main(main), m_report(std::move(report)), m_port(port), m_budget(budget), m_watchTimes(watchTimes)
{
    m_pause.setSingleShot(true);
    QObject::connect(&m_pause, &QTimer::timeout, &m_changed, &Wakeup::wake);
}

RebootCounts Reboot::run(const RebootRequest& request)
{
    m_aborted = false;
    m_request = request;
    if (request.confirm)
        allowManyOpenFiles();
    m_counts = {};
    m_texts.emplace(m_main, RebootProcedures::messages() + messages());
    m_files.emplace(m_main);
    m_answers.reset();
    if (request.atOnce > 1)
        m_answers = answersForVisits(m_main, request.company);
    m_chosen = chosenPhones(m_main, request);
    m_main.phones = m_chosen.rows;
    m_counts.phones = m_chosen.count();
    m_counts.missing = m_chosen.missing.size();
    for (const QString& code : m_chosen.missing)
        m_report.tell({m_main.messageLine(u"M389"_s, code), true});
    runToItsEnd(visitAll());
    std::sort(m_counts.failed.begin(), m_counts.failed.end());
    return m_counts;
}

void Reboot::abort()
{
    m_aborted = true;
    m_pause.stop();
    for (const Device& device : m_visits)
        device.exchange->abort();
    for (PhoneWatch* watch : m_watches)
        watch->abort();
    m_changed.wake();
}

QList<Phone> Reboot::visiting() const
{
    QList<Phone> phones;
    for (const Device& device : m_visits)
        phones << device.phone;
    return phones;
}

QCoro::Task<> Reboot::visitAll()
{
    std::exception_ptr failure;
    try {
        co_await beginVisits();
    } catch (...) {
        failure = std::current_exception();
        abort();
    }
    while (!m_visits.isEmpty() || !m_watches.isEmpty())
        co_await m_changed;
    if (failure)
        std::rethrow_exception(failure);
    m_report.progress(m_counts.visited, m_counts.phones);
}

QCoro::Task<> Reboot::beginVisits()
{
    for (; !m_main.phones.eof(); m_main.phones.moveNext()) {
        if (!m_chosen.contains(m_main.currentPhone().code))
            continue;
        while (!m_aborted && (m_visits.size() >= m_request.atOnce || m_pause.isActive()))
            co_await m_changed;
        if (m_aborted)
            co_return;
        beginVisit();
        if (m_stopFlag)
            co_return;
    }
}

/// Looks up what the current phone's visit needs, and lets it go on by itself.
void Reboot::beginVisit()
{
    m_report.progress(m_counts.visited, m_counts.phones);
    const Phone phone = m_main.currentPhone();
    const auto plan = [&] {
        const QScopedValueRollback remembering(m_main.answers, m_answers ? &*m_answers : nullptr);
        return planVisit(m_main, m_request.equipment.isEmpty() ? phone.equipment : m_request.equipment);
    }();
    if (const auto* none = std::get_if<NoVisit>(&plan)) {
        m_stopFlag = m_stopFlag || none->stopsRun;
        ++m_counts.visited;
        count(phone, none->outcome);
        return;
    }
    const Visit& found = std::get<Visit>(plan);
    // Only here: a run that a model has stopped is not forgotten by the Reboot button.
    if (found.restart->forgetsStop)
        m_stopFlag = false;
    if (m_request.pause > 0)
        m_pause.start(m_request.pause);
    visit(found, m_files->pathOf(phone));
}

QCoro::Task<> Reboot::visit(Visit visit, std::optional<QString> file)
{
    Together together;
    const RunReport report = m_request.atOnce > 1 ? together.report() : m_report;
    HttpExchange exchange(
        *m_texts, m_port,
        [&report](const QString& line) {
            report.tell({line, true});
        },
        m_budget);
    m_visits << Device{visit.phone, &exchange};
    m_report.progress(m_counts.visited, m_counts.phones);
    const RebootOutcome outcome = co_await outcomeOf(visit, exchange, report);

    m_visits.removeIf([&exchange](const Device& device) { return device.exchange == &exchange; });
    ++m_counts.visited;
    const bool restarts = outcome == RebootOutcome::Rebooted;
    const QString fingerprint = restarts ? fingerprintOf(file) : QString();
    if (restarts && !m_request.confirm)
        record(visit.phone, fingerprint, report);
    together.say(m_report);
    if (restarts && m_request.confirm)
        watch(visit, fingerprint);
    else
        count(visit.phone, outcome);
    m_report.progress(m_counts.visited, m_counts.phones);
    m_changed.wake();
}

QCoro::Task<RebootOutcome> Reboot::outcomeOf(const Visit& visit, HttpExchange& device,
                                             const RunReport& report)
{
    const RebootProcedures procedures(visit.phone, device, *m_texts, report);
    try {
        const RebootOutcome outcome = co_await visit.restart->procedure(procedures, visit.address,
                                                                        visit.password, m_request.waitIfBusy);
        co_return outcome;
    } catch (const std::invalid_argument& incomprehensible) {
        report.tell({m_texts->line(u"M213"_s, QString::fromUtf8(incomprehensible.what())), true});
    }
    co_return RebootOutcome::Refused;
}

QCoro::Task<> Reboot::watch(Visit visit, QString fingerprint)
{
    PhoneWatch watch(visit.address, m_port, m_watchTimes);
    if (m_aborted)
        watch.abort();
    m_watches << &watch;
    const WatchResult result = co_await watch.run();

    m_watches.removeOne(&watch);
    m_report.tell(lineOf(visit.phone, result));
    if (result.outcome == WatchOutcome::Restarted) {
        record(visit.phone, fingerprint, m_report);
        ++m_counts.rebooted;
    } else if (result.outcome == WatchOutcome::CutOff) {
        ++m_counts.unknown;
    } else {
        ++m_counts.unconfirmed;
        m_counts.failed << visit.phone.code;
    }
    m_report.progress(m_counts.visited, m_counts.phones);
    m_changed.wake();
}

/// What came of the watch of a phone, which is named: other phones' lines stand between.
RunLine Reboot::lineOf(const Phone& phone, const WatchResult& result) const
{
    const QString begin = describe(phone) + " - "_L1;
    const auto at = [](const QDateTime& time) { return time.toString(u"HH:mm:ss"_s); };
    const auto seconds = [](int milliseconds) { return QString::number(milliseconds / 1000); };
    switch (result.outcome) {
    case WatchOutcome::Restarted:
        return {begin + QStringList({m_texts->line(u"M380"_s), m_texts->line(u"M381"_s, at(result.down)),
                                     m_texts->line(u"M382"_s, at(result.up))})
                            .join(", "_L1)};
    case WatchOutcome::StayedUp:
        return {begin + m_texts->line(u"M383"_s, seconds(m_watchTimes.untilDown)), true};
    case WatchOutcome::StayedDown:
        return {begin + QStringList({m_texts->line(u"M381"_s, at(result.down)),
                                     m_texts->line(u"M384"_s, seconds(m_watchTimes.untilUp))})
                            .join(", "_L1),
                true};
    default:
        return {begin + m_texts->line(u"M385"_s), true};
    }
}

void Reboot::count(const Phone& phone, RebootOutcome outcome)
{
    m_counts.rebooted += outcome == RebootOutcome::Rebooted;
    m_counts.refused += outcome == RebootOutcome::Refused;
    m_counts.unreachable += outcome == RebootOutcome::Unreachable;
    if (outcome == RebootOutcome::Refused || outcome == RebootOutcome::Unreachable)
        m_counts.failed << phone.code;
}

/// The phone has restarted all the same where that can't be recorded.
void Reboot::record(const Phone& phone, const QString& fingerprint, const RunReport& report)
{
    try {
        recordRestart(m_main, phone, fingerprint);
    } catch (const DatabaseError& error) {
        report.tell({m_texts->line(u"M388"_s, error.description()), true});
    }
}

} // namespace velmora

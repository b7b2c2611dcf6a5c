// The run that restarts the selected phones.
#pragma once

#include "common/texts/message_texts.h"
#include "http/http_exchange.h"
#include "reboot/chosen_phones.h"
#include "reboot/last_restart.h"
#include "reboot/phone_watch.h"
#include "reboot/visit.h"

#include <optional>

namespace velmora {

/// How many phones ended how.
struct RebootCounts {
    qsizetype phones = 0;
    /// Fewer where the run was stopped.
    qsizetype visited = 0;
    qsizetype rebooted = 0;
    qsizetype refused = 0;
    qsizetype unreachable = 0;
    /// Phones that took the restart and were not seen restarting, or whose watch was cut off.
    qsizetype unconfirmed = 0;
    qsizetype unknown = 0;
    /// Codes that the request names and that no phone has.
    qsizetype missing = 0;
    /// The codes of the refused, unreachable and unconfirmed ones, in their order.
    QStringList failed = {};

    bool allRestarted() const { return failed.isEmpty() && unknown == 0 && missing == 0; }
};

/// The counts in words, with those of the confirmation where it was asked for.
QString summaryOf(MMain& main, const RebootCounts& counts, bool confirm = false);

/// Restarts phones through their web servers. One object serves one run after the other; a model that stopped
/// a run also ends the next one after its first phone, unless that is a PAP2.
///
/// A restart that counts as done is recorded (recordRestart()).
class Reboot {
public:
    /// Each exchange with a phone has that budget, in milliseconds.
    Reboot(MMain& main, quint16 port, RunReport report, int budget = HttpExchange::usualBudget,
           const WatchTimes& watchTimes = {});

    /// Visits the phones in the order of their codes. What goes wrong with a device is a line; a model
    /// without a procedure is a message and no further phone is visited, as after abort(). Window events run
    /// all the time. Throws DatabaseError.
    RebootCounts run(const RebootRequest& request);
    /// Ends the run that is going on: all visits and watches are cut off.
    void abort();
    /// Whether that has ended the latest run.
    bool isAborted() const { return m_aborted; }

    /// The phones that are being visited.
    QList<Phone> visiting() const;
    /// How many phones are being watched.
    qsizetype watching() const { return m_watches.size(); }

private:
    QCoro::Task<> visitAll();
    QCoro::Task<> beginVisits();
    void beginVisit();
    QCoro::Task<> visit(Visit visit, std::optional<QString> file);
    QCoro::Task<RebootOutcome> outcomeOf(const Visit& visit, HttpExchange& device, const RunReport& report);
    QCoro::Task<> watch(Visit visit, QString fingerprint);
    RunLine lineOf(const Phone& phone, const WatchResult& result) const;
    void count(const Phone& phone, RebootOutcome outcome);
    void record(const Phone& phone, const QString& fingerprint, const RunReport& report);

    struct Device {
        Phone phone;
        HttpExchange* exchange;
    };

    MMain& m_main;
    RunReport m_report;
    const quint16 m_port;
    const int m_budget;
    const WatchTimes m_watchTimes;
    /// The rest belongs to the run that is going on, but for the stop flag.
    RebootRequest m_request;
    RebootCounts m_counts;
    ChosenPhones m_chosen;
    std::optional<MessageTexts> m_texts;
    std::optional<DeviceFiles> m_files;
    /// What visits have looked up already. One by one, each asks anew.
    std::optional<MMain::Answers> m_answers;
    Wakeup m_changed;
    QTimer m_pause;
    QList<Device> m_visits;
    QList<PhoneWatch*> m_watches;
    bool m_aborted = false;
    bool m_stopFlag = false;
};

} // namespace velmora

// The run that restarts the selected phones.
#pragma once

#include "http/http_exchange.h"
#include "modules/modules.h"

#include <optional>

namespace velmora {

struct RebootRequest {
    QString company;
    QString equipment;
    /// The first and last phone code.
    QString phoneFrom;
    QString phoneTo;
    /// Whether a GXP2000 that is busy is asked again every five seconds, until the user gives up.
    bool waitIfBusy = false;
};

/// How many phones ended how.
struct RebootCounts {
    qsizetype phones = 0;
    /// Fewer where the run was stopped.
    qsizetype visited = 0;
    qsizetype rebooted = 0;
    qsizetype refused = 0;
    qsizetype unreachable = 0;
};

/// The counts in words.
QString summaryOf(MMain& main, const RebootCounts& counts);

/// Restarts phones through their web servers. One object serves one run after the other; a model that stopped
/// a run also ends the next one after its first phone, unless that is a PAP2.
class Reboot {
public:
    /// Each exchange with a phone has that budget, in milliseconds.
    Reboot(MMain& main, quint16 port, RunReport report, int budget = HttpExchange::usualBudget);

    /// Visits the phones in the order of their codes. What goes wrong with a device is a line; a model
    /// without a procedure is a message and ends the run, as abort() does. Window events run all the time.
    /// Throws DatabaseError.
    RebootCounts run(const RebootRequest& request);
    /// Ends the run that is going on.
    void abort() { m_device.abort(); }

private:
    RebootOutcome visitPhone();
    RebootOutcome dispatch(const QString& name);
    RebootOutcome stop(const QString& message, const QString& substitution);
    RebootOutcome restart(const Restart& restart);
    std::optional<QStringList> valuesNamedBy(const QStringList& keys);

    MMain& m_main;
    RunReport m_report;
    HttpExchange m_device;
    RebootProcedures m_procedures;
    RebootRequest m_request;
    bool m_stopFlag = false;
};

} // namespace velmora

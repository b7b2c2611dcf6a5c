// How each model is made to restart.
#pragma once

#include "runs/run_report.h"

namespace velmora {

class HttpExchange;
class MMain;

/// What became of a phone.
enum class RebootOutcome {
    /// It answered the request that restarts it with a status of success.
    Rebooted,
    /// It answered something else, or closed the connection without an answer.
    Refused,
    /// It did not answer in time, or nobody knows its address.
    Unreachable,
    /// The user gave up first, or its model is not restarted this way.
    LeftOut,
};

/// The current phone's restart, by model. Each procedure begins with a line that names the phone, and reports
/// what came of its exchanges as lines, with one more where the phone does not say that it restarts. They
/// throw std::invalid_argument when a reply lacks the end of a value that is needed, and DatabaseError.
class RebootProcedures {
public:
    RebootProcedures(MMain& main, HttpExchange& device, const RunReport& report);

    /// A device that is busy is left alone, or asked again every five seconds.
    RebootOutcome RebootGXP2000(const QString& address, const QString& password, bool waitIfBusy) const;
    RebootOutcome RebootPAP2(const QString& address, const QString& password) const;
    RebootOutcome RebootF1000(const QString& address, const QString& password) const;

private:
    void announce(const QString& model, const QString& address) const;
    void report(const QString& message, const QString& substitution = {}) const;
    RebootOutcome reported(const QString& message, RebootOutcome outcome) const;
    RebootOutcome concluded(const QString& message, bool restarts) const;
    void explain() const;
    RebootOutcome unanswered() const;

    MMain& m_main;
    HttpExchange& m_device;
    const RunReport& m_report;
};

} // namespace velmora

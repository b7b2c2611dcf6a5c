// How each model is made to restart.
#pragma once

#include "common/phone.h"
#include "runs/coroutines.h"
#include "runs/run_report.h"

#include <QStringList>

namespace velmora {

class HttpExchange;
class MessageTexts;

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

/// One phone's restart, by model. Each procedure begins with a line that names the phone, and reports what
/// came of its exchanges as lines, with one more where the phone does not say that it restarts. No line holds
/// the password. They throw std::invalid_argument when a reply lacks the end of a value that is needed.
class RebootProcedures {
public:
    /// All of these must live until the procedure has ended; `texts` holds messages().
    RebootProcedures(const Phone& phone, HttpExchange& device, const MessageTexts& texts,
                     const RunReport& report);

    /// The codes of all that a visit can say.
    static const QStringList& messages();

    /// A device that is busy is left alone, or asked again every five seconds.
    QCoro::Task<RebootOutcome> RebootGXP2000(QString address, QString password, bool waitIfBusy) const;
    QCoro::Task<RebootOutcome> RebootPAP2(QString address, QString password) const;
    QCoro::Task<RebootOutcome> RebootF1000(QString address, QString password) const;

private:
    void announce(const QString& model, const QString& address) const;
    void report(const QString& message, const QString& substitution = {}) const;
    RebootOutcome reported(const QString& message, RebootOutcome outcome) const;
    RebootOutcome concluded(const QString& message, bool restarts) const;
    void explain() const;
    RebootOutcome unanswered() const;

    const Phone& m_phone;
    HttpExchange& m_device;
    const MessageTexts& m_texts;
    const RunReport& m_report;
};

} // namespace velmora

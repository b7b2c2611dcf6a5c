#include "modules/reboot_procedures.h"

#include "common/texts/message_texts.h"
#include "http/http_exchange.h"
#include "modules/reboot_requests.h"

using namespace Qt::StringLiterals;

namespace velmora {

RebootProcedures::RebootProcedures(const Phone& phone, HttpExchange& device, const MessageTexts& texts,
                                   const RunReport& report)
    : m_phone(phone), m_device(device), m_texts(texts), m_report(report)
{
}

const QStringList& RebootProcedures::messages()
{
    static const QStringList all = {u"M15"_s, u"M21"_s, u"M22"_s, u"M23"_s, u"M213"_s, u"M246"_s, u"M247"_s};
    return all;
}

QCoro::Task<RebootOutcome> RebootProcedures::RebootGXP2000(QString address, QString password,
                                                           bool waitIfBusy) const
{
    announce(u"GXP2000"_s, address);
    for (;;) {
        const bool probed = co_await m_device.GetHttp(address, busyProbe(address));
        if (!probed)
            co_return unanswered();
        if (!m_device.reply().contains("device is busy"_L1))
            break;
        report(u"M21"_s);
        if (!waitIfBusy)
            co_return RebootOutcome::Refused;
        co_await m_device.pause();
    }
    const bool loggedIn = co_await m_device.GetHttp(address, loginRequest(address, password));
    if (!loggedIn)
        co_return unanswered();
    const std::optional<QString> cookie = cookieOf(m_device.reply());
    if (!cookie)
        co_return reported(u"M22"_s, RebootOutcome::Refused);
    const bool asked = co_await m_device.GetHttp(address, restartRequest(address, *cookie));
    if (!asked)
        co_return unanswered();
    co_return concluded(u"M15"_s, isSuccess(m_device.reply()));
}

QCoro::Task<RebootOutcome> RebootProcedures::RebootPAP2(QString address, QString password) const
{
    announce(u"PAP2"_s, address);
    const bool asked = co_await m_device.GetHttp(address, adminRebootRequest(address));
    if (!asked)
        co_return unanswered();
    std::optional<DigestChallenge> challenge = digestChallengeOf(m_device.reply());
    // A device that asks for no credentials has restarted already.
    if (!challenge)
        co_return concluded(u"M15"_s, isSuccess(m_device.reply()));
    // Where only the nonce has grown old, the new one is answered; that is done once.
    for (int answers = 1;; ++answers) {
        const QString authorization = digestAuthorization(*challenge, password);
        const bool answered = co_await m_device.GetHttp(address, adminRebootRequest(address, authorization));
        if (!answered)
            co_return unanswered();
        if (answers == 2 || statusOf(m_device.reply()) != 401)
            break;
        challenge = digestChallengeOf(m_device.reply());
        if (!challenge || !challenge->stale)
            break;
    }
    const bool accepted = m_device.reply().mid(9, 3) == "200"_L1;
    co_return concluded(accepted ? u"M15"_s : u"M22"_s, accepted && isSuccess(m_device.reply()));
}

QCoro::Task<RebootOutcome> RebootProcedures::RebootF1000(QString address, QString password) const
{
    announce(u"F1000"_s, address);
    const bool shown = co_await m_device.GetHttp(address, adminPageRequest(address, password));
    if (!shown)
        co_return unanswered();
    const bool sent = co_await m_device.PostHttp(address, rebootForm(address, password));
    report(u"M15"_s);
    if (!sent)
        co_return unanswered();
    const bool answered = co_await m_device.finishPost();
    if (m_device.isAborted())
        co_return RebootOutcome::LeftOut;
    if (isSuccess(m_device.reply()))
        co_return RebootOutcome::Rebooted;
    explain();
    co_return answered ? RebootOutcome::Refused : RebootOutcome::Unreachable;
}

void RebootProcedures::announce(const QString& model, const QString& address) const
{
    m_report.line(model + u' ' + address + " - "_L1 + describe(m_phone));
}

void RebootProcedures::report(const QString& message, const QString& substitution) const
{
    m_report.tell({m_texts.line(message, substitution), message != "M15"_L1});
}

RebootOutcome RebootProcedures::reported(const QString& message, RebootOutcome outcome) const
{
    // An exchange that the user has cut off ends like any other.
    const bool cutOff = m_device.isAborted();
    report(message);
    return cutOff ? RebootOutcome::LeftOut : outcome;
}

/// The end of the exchange that restarts the phone.
RebootOutcome RebootProcedures::concluded(const QString& message, bool restarts) const
{
    const RebootOutcome outcome =
        reported(message, restarts ? RebootOutcome::Rebooted : RebootOutcome::Refused);
    if (outcome == RebootOutcome::Refused)
        explain();
    return outcome;
}

/// Adds what the phone has answered instead of restarting.
void RebootProcedures::explain() const
{
    const int status = statusOf(m_device.reply());
    if (status == 0)
        report(u"M247"_s);
    else
        report(u"M246"_s, QString::number(status));
}

RebootOutcome RebootProcedures::unanswered() const
{
    return m_device.isAborted() ? RebootOutcome::LeftOut : RebootOutcome::Unreachable;
}

} // namespace velmora

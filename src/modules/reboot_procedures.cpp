#include "modules/reboot_procedures.h"

#include "common/MMain.h"
#include "http/http_exchange.h"
#include "modules/reboot_requests.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace velmora {

RebootProcedures::RebootProcedures(MMain& main, HttpExchange& device, const RunReport& report)
    : m_main(main), m_device(device), m_report(report)
{
}

RebootOutcome RebootProcedures::RebootGXP2000(const QString& address, const QString& password,
                                              bool waitIfBusy) const
{
    announce(u"GXP2000"_s, address);
    for (;;) {
        if (!m_device.GetHttp(address, busyProbe(address)))
            return unanswered();
        if (!m_device.reply().contains("device is busy"_L1))
            break;
        report(u"M21"_s);
        if (!waitIfBusy)
            return RebootOutcome::Refused;
        m_device.pause();
    }
    if (!m_device.GetHttp(address, loginRequest(address, password)))
        return unanswered();
    const std::optional<QString> cookie = cookieOf(m_device.reply());
    if (!cookie)
        return reported(u"M22"_s, RebootOutcome::Refused);
    if (!m_device.GetHttp(address, restartRequest(address, *cookie)))
        return unanswered();
    return concluded(u"M15"_s, isSuccess(m_device.reply()));
}

RebootOutcome RebootProcedures::RebootPAP2(const QString& address, const QString& password) const
{
    announce(u"PAP2"_s, address);
    if (!m_device.GetHttp(address, adminRebootRequest(address)))
        return unanswered();
    std::optional<DigestChallenge> challenge = digestChallengeOf(m_device.reply());
    // A device that asks for no credentials has restarted already.
    if (!challenge)
        return concluded(u"M15"_s, isSuccess(m_device.reply()));
    const auto answer = [&] {
        const QString authorization = digestAuthorization(*challenge, password);
        return m_device.GetHttp(address, adminRebootRequest(address, authorization));
    };
    if (!answer())
        return unanswered();
    // Where only the nonce has grown old, the new one is answered; that is done once.
    challenge = digestChallengeOf(m_device.reply());
    if (statusOf(m_device.reply()) == 401 && challenge && challenge->stale && !answer())
        return unanswered();
    const bool accepted = m_device.reply().mid(9, 3) == "200"_L1;
    return concluded(accepted ? u"M15"_s : u"M22"_s, accepted && isSuccess(m_device.reply()));
}

RebootOutcome RebootProcedures::RebootF1000(const QString& address, const QString& password) const
{
    announce(u"F1000"_s, address);
    if (!m_device.GetHttp(address, adminPageRequest(address, password)))
        return unanswered();
    const bool sent = m_device.PostHttp(address, rebootForm(address, password));
    report(u"M15"_s);
    if (!sent)
        return unanswered();
    const bool answered = m_device.finishPost();
    if (m_device.isAborted())
        return RebootOutcome::LeftOut;
    if (isSuccess(m_device.reply()))
        return RebootOutcome::Rebooted;
    explain();
    return answered ? RebootOutcome::Refused : RebootOutcome::Unreachable;
}

void RebootProcedures::announce(const QString& model, const QString& address) const
{
    const Phone phone = m_main.currentPhone();
    m_report.line(model + u' ' + address + " - "_L1 + phone.code + " - "_L1 + phone.description);
    QCoreApplication::processEvents();
}

void RebootProcedures::report(const QString& message, const QString& substitution) const
{
    m_report.tell({m_main.messageLine(message, substitution), message != "M15"_L1});
    QCoreApplication::processEvents();
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

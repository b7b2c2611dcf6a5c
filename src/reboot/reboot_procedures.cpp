#include "reboot/reboot_procedures.h"

#include "reboot/http_exchange.h"
#include "reboot/reboot_requests.h"
#include "startup/MMain.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace velmora {

RebootProcedures::RebootProcedures(MMain& main, HttpExchange& device, LineSink line)
    : m_main(main), m_device(device), m_line(std::move(line))
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
    if (!m_device.reply().contains("Set-Cookie:"_L1))
        return reported(u"M22"_s, RebootOutcome::Refused);
    const QString cookie = cookieOf(m_device.reply());
    if (!m_device.GetHttp(address, restartRequest(address, cookie)))
        return unanswered();
    return reported(u"M15"_s, RebootOutcome::Rebooted);
}

RebootOutcome RebootProcedures::RebootPAP2(const QString& address, const QString& password) const
{
    announce(u"PAP2"_s, address);
    if (!m_device.GetHttp(address, adminRebootRequest(address)))
        return unanswered();
    // A device that asks for no credentials has restarted already.
    if (!m_device.reply().contains("WWW-Authenticate: Digest"_L1))
        return reported(u"M15"_s, RebootOutcome::Rebooted);
    const QString authorization = digestAuthorization(m_device.reply(), password);
    if (!m_device.GetHttp(address, adminRebootRequest(address, authorization)))
        return unanswered();
    const QString status = m_device.reply().mid(9, 3);
    return status == "200"_L1 ? reported(u"M15"_s, RebootOutcome::Rebooted)
                              : reported(u"M22"_s, RebootOutcome::Refused);
}

RebootOutcome RebootProcedures::RebootF1000(const QString& address, const QString& password) const
{
    announce(u"F1000"_s, address);
    if (!m_device.GetHttp(address, adminPageRequest(address, password)))
        return unanswered();
    // The line is the same for a device that asks for another password; the count is not.
    const bool known = m_device.reply().mid(9, 3) != "401"_L1;
    if (m_device.PostHttp(address, rebootForm(address, password)))
        return reported(u"M15"_s, known ? RebootOutcome::Rebooted : RebootOutcome::Refused);
    report(u"M15"_s);
    return unanswered();
}

void RebootProcedures::announce(const QString& model, const QString& address) const
{
    const Phone phone = m_main.currentPhone();
    m_line(model + u' ' + address + " - "_L1 + phone.code + " - "_L1 + phone.description);
    QCoreApplication::processEvents();
}

void RebootProcedures::report(const QString& message) const
{
    m_line(m_main.messageLine(message));
    QCoreApplication::processEvents();
}

RebootOutcome RebootProcedures::reported(const QString& message, RebootOutcome outcome) const
{
    // An exchange that the user has cut off ends like any other.
    const bool cutOff = m_device.isAborted();
    report(message);
    return cutOff ? RebootOutcome::LeftOut : outcome;
}

RebootOutcome RebootProcedures::unanswered() const
{
    return m_device.isAborted() ? RebootOutcome::LeftOut : RebootOutcome::Unreachable;
}

} // namespace velmora

// What the devices are sent to make them restart, and what is read out of their replies.
#pragma once

#include <QString>

namespace velmora {

/// The value that stands between double quotes after `name` and "=" in `text`, at its first occurrence. Where
/// there is none, whatever stands before the first double quote of the text without its first
/// name.size() + 1 characters. Throws std::invalid_argument, which holds the name, when there is no double
/// quote to end it.
QString RecVal(const QString& name, const QString& text);

/// GXP2000: asks for its first page, which says when the device is busy.
QString busyProbe(const QString& address);
/// GXP2000: logs in. The length in it is fixed, whatever the password's.
QString loginRequest(const QString& address, const QString& password);
/// GXP2000: the cookie of a login's reply, up to its first ";". Throws std::invalid_argument when none
/// follows.
QString cookieOf(const QString& reply);
/// GXP2000: restarts it.
QString restartRequest(const QString& address, const QString& cookie);

/// PAP2: restarts it; `authorization` is a header line of its own, or empty.
QString adminRebootRequest(const QString& address, const QString& authorization = {});
/// PAP2: the answer to the challenge in `reply` (RFC 2617 with a quality of protection), as a header line.
/// Throws std::invalid_argument when a field of the challenge does not end.
QString digestAuthorization(const QString& reply, const QString& password);

/// F1000: asks for its page of settings.
QString adminPageRequest(const QString& address, const QString& password);
/// F1000: sends the form that restarts it.
QString rebootForm(const QString& address, const QString& password);

} // namespace velmora

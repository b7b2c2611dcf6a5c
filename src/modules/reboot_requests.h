// What the devices are sent to make them restart.
#pragma once

#include "http/http_reply.h"

#include <QString>

namespace velmora {

/// GXP2000: asks for its first page, which says when the device is busy.
QString busyProbe(const QString& address);
/// GXP2000: logs in. The length in it is fixed, whatever the password's.
QString loginRequest(const QString& address, const QString& password);
/// GXP2000: restarts it.
QString restartRequest(const QString& address, const QString& cookie);

/// PAP2: restarts it; `authorization` is a header line of its own, or empty.
QString adminRebootRequest(const QString& address, const QString& authorization = {});
/// PAP2: the answer to a challenge (RFC 2617 with a quality of protection), as a header line. Throws
/// std::invalid_argument, which holds the name, when a field of the challenge does not end.
QString digestAuthorization(const DigestChallenge& challenge, const QString& password);

/// F1000: asks for its page of settings.
QString adminPageRequest(const QString& address, const QString& password);
/// F1000: sends the form that restarts it.
QString rebootForm(const QString& address, const QString& password);

} // namespace velmora

#include "modules/reboot_requests.h"

#include "http/CMD5.h"
#include "http/base64.h"

#include <QStringList>

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

constexpr auto lineEnd = "\r\n"_L1;
constexpr auto user = "admin"_L1;
constexpr auto adminReboot = "/admin/reboot"_L1;
constexpr auto adminPage = "/adminprivate/contents_admin.html"_L1;

/// The first line from its version on, and the lines that the GXP2000 and the PAP2 get.
QString head(const QString& address)
{
    return " HTTP/1.0\r\n"
           "Accept: */*\r\n"
           "Accept-Language: fr\r\n"
           "User-Agent: Winsock\r\n"
           "Host: "_L1 +
           address + lineEnd;
}

/// The credentials of the Basic scheme without their padding. Long ones hold the line ends that Encode64
/// inserts, and go out with them.
QString basicAuthorization(const QString& password)
{
    return "Authorization: Basic "_L1 + Encode64(user + u':' + password).remove(u'=') + lineEnd;
}

QString quoted(const QString& value)
{
    return u'"' + value + u'"';
}

} // namespace

QString busyProbe(const QString& address)
{
    return "GET /"_L1 + head(address) + lineEnd;
}

QString loginRequest(const QString& address, const QString& password)
{
    return "POST /dologin.htm"_L1 + head(address) + "Content-Length: 23\r\n\r\nP2="_L1 + password +
           "&gnkey=7c3e\r\n"_L1;
}

QString restartRequest(const QString& address, const QString& cookie)
{
    return "GET /rs.htm"_L1 + head(address) + "Cookie: "_L1 + cookie + lineEnd + lineEnd;
}

QString adminRebootRequest(const QString& address, const QString& authorization)
{
    return "GET "_L1 + adminReboot + head(address) + authorization + lineEnd;
}

QString digestAuthorization(const DigestChallenge& challenge, const QString& password)
{
    if (!challenge.unended.isEmpty())
        throw std::invalid_argument(challenge.unended.toStdString());
    const QString count = u"00000001"_s;
    const QString clientNonce = u"5b0e2d7a91c84f36a2e07d1b9c4f6a83"_s;

    const CMD5 digest;
    const QString one = digest.MD5(user + u':' + challenge.realm + u':' + password);
    const QString two = digest.MD5("GET:"_L1 + adminReboot);
    const QString response =
        digest.MD5(QStringList({one, challenge.nonce, count, clientNonce, challenge.qop, two}).join(u':'));
    return "Authorization: Digest username="_L1 + quoted(user) + ", realm="_L1 + quoted(challenge.realm) +
           ", qop="_L1 + quoted(challenge.qop) + ", algorithm="_L1 + quoted(u"MD5"_s) + ", uri="_L1 +
           quoted(adminReboot) + ", nonce="_L1 + quoted(challenge.nonce) + ", nc="_L1 + count +
           ", cnonce="_L1 + quoted(clientNonce) + ", opaque="_L1 + quoted(challenge.opaque) +
           ", response="_L1 + quoted(response) + lineEnd;
}

QString adminPageRequest(const QString& address, const QString& password)
{
    return "GET "_L1 + adminPage +
           " HTTP/1.1\r\n"
           "Accept: */*\r\n"
           "Accept-Language: fr\r\n"
           "User-Agent: Winsock\r\n"
           "Host: "_L1 +
           address + "\r\nConnection: close\r\n"_L1 + basicAuthorization(password) + lineEnd;
}

QString rebootForm(const QString& address, const QString& password)
{
    constexpr auto body = "rebootcmd=1&reboot=REBOOT"_L1;
    return "POST "_L1 + adminPage +
           " HTTP/1.1\r\n"
           "Accept: */*\r\n"
           "Referer: http://"_L1 +
           address + adminPage +
           "\r\n"
           "Accept-Language: fr\r\n"
           "Content-Type: application/x-www-form-urlencoded\r\n"
           "User-Agent: Winsock\r\n"
           "Host: "_L1 +
           address + "\r\nConnection: close\r\nContent-Length: "_L1 + QString::number(body.size()) + lineEnd +
           basicAuthorization(password) + lineEnd + body;
}

} // namespace velmora

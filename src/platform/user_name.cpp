#include "platform/user_name.h"

#ifdef Q_OS_WIN
#include <array>
#include <lmcons.h>
#include <windows.h>
#else
#include <pwd.h>
#include <unistd.h>
#endif

namespace velmora {

#ifdef Q_OS_WIN

QString systemUserName()
{
    std::array<wchar_t, UNLEN + 1> buffer = {};
    auto size = static_cast<DWORD>(buffer.size());
    return GetUserNameW(buffer.data(), &size) ? QString::fromWCharArray(buffer.data()) : QString();
}

#else

QString systemUserName()
{
    const passwd* entry = getpwuid(geteuid());
    return entry ? QString::fromLocal8Bit(entry->pw_name) : QString();
}

#endif

} // namespace velmora

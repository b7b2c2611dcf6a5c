#include "platform/user_name.h"

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <pwd.h>
#include <unistd.h>
#endif

namespace velmora {

#ifdef Q_OS_WIN

QString systemUserName()
{
    char buffer[100] = {};
    DWORD size = sizeof buffer;
    return GetUserNameA(buffer, &size) ? QString::fromLocal8Bit(buffer) : QString();
}

#else

QString systemUserName()
{
    const passwd* entry = getpwuid(geteuid());
    return entry ? QString::fromLocal8Bit(entry->pw_name) : QString();
}

#endif

} // namespace velmora

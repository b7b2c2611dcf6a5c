#include "platform/process.h"

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <cerrno>
#include <csignal>
#endif

namespace velmora {

bool isRunning(qint64 process)
{
#ifdef Q_OS_WIN
    const HANDLE handle = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, static_cast<DWORD>(process));
    if (!handle)
        return GetLastError() == ERROR_ACCESS_DENIED;
    DWORD status = 0;
    const bool known = GetExitCodeProcess(handle, &status);
    CloseHandle(handle);
    return !known || status == STILL_ACTIVE;
#else
    // Signal 0 only asks; numbers below 1 would name groups of processes.
    return process > 0 && (kill(static_cast<pid_t>(process), 0) == 0 || errno == EPERM);
#endif
}

} // namespace velmora

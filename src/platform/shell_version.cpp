#include "platform/shell_version.h"

#include <QtGlobal>

#ifdef Q_OS_WIN
#include <windows.h>

#include <vector>
#endif

namespace velmora {

#ifdef Q_OS_WIN

bool ShellVersionAtLeast(int major)
{
    DWORD unused = 0;
    const DWORD size = GetFileVersionInfoSizeA("shell32.dll", &unused);
    std::vector<char> resource(size);
    VS_FIXEDFILEINFO* information = nullptr;
    UINT length = 0;
    if (size == 0 || !GetFileVersionInfoA("shell32.dll", 0, size, resource.data()) ||
        !VerQueryValueA(resource.data(), "\\", reinterpret_cast<void**>(&information), &length))
        return false;
    return HIWORD(information->dwFileVersionMS) >= major;
}

#else

bool ShellVersionAtLeast(int)
{
    return false;
}

#endif

} // namespace velmora

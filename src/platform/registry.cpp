#include "platform/registry.h"

#ifdef Q_OS_WIN
#include <windows.h>
#endif

using namespace Qt::StringLiterals;

namespace velmora {

#ifdef Q_OS_WIN

bool GetKeyValue(RegistryRoot, const QString& keyName, const QString& valueName, QString& value)
{
    constexpr REGSAM fullAccess = 0x2003F;
    HKEY key = nullptr;
    char buffer[1024] = {};
    DWORD size = sizeof buffer;
    DWORD type = REG_NONE;
    const bool found = RegOpenKeyExA(HKEY_LOCAL_MACHINE, keyName.toLocal8Bit().constData(), 0, fullAccess,
                                     &key) == ERROR_SUCCESS &&
                       RegQueryValueExA(key, valueName.toLocal8Bit().constData(), nullptr, &type,
                                        reinterpret_cast<BYTE*>(buffer), &size) == ERROR_SUCCESS;
    if (key)
        RegCloseKey(key);
    if (!found)
        return false;
    if (type == REG_DWORD)
        value = "&h"_L1 + QString::number(*reinterpret_cast<const DWORD*>(buffer), 16);
    else
        value = QString::fromLocal8Bit(buffer, static_cast<qsizetype>(qstrnlen(buffer, size)));
    return true;
}

#else

bool GetKeyValue(RegistryRoot, const QString&, const QString&, QString&)
{
    return false;
}

#endif

} // namespace velmora

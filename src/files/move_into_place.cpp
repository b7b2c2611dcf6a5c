#include "files/move_into_place.h"

#ifdef Q_OS_WIN
#include <QDir>
#include <windows.h>
#else
#include <filesystem>
#endif

using namespace Qt::StringLiterals;

namespace velmora {

#ifdef Q_OS_WIN

namespace {

constexpr int mostTries = 11;
constexpr DWORD pause = 100; // milliseconds

/// The name from the drive on, with that of this process where it has none.
QString fullName(const QString& path)
{
    const std::wstring given = QDir::toNativeSeparators(path).toStdWString();
    std::wstring full(GetFullPathNameW(given.c_str(), 0, nullptr, nullptr), L'\0');
    full.resize(GetFullPathNameW(given.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
    return QString::fromStdWString(full);
}

/// The name in the spelling that may be longer than 260 characters.
std::wstring longName(const QString& path)
{
    const QString name = fullName(path);
    if (name.startsWith("\\\\?\\"_L1))
        return name.toStdWString();
    const bool onServer = name.startsWith("\\\\"_L1);
    return (onServer ? "\\\\?\\UNC\\"_L1 + name.sliced(2) : "\\\\?\\"_L1 + name).toStdWString();
}

/// What keeps the file from being replaced now: nothing is ERROR_SUCCESS, also where there is no file.
DWORD obstacle(const std::wstring& name)
{
    const DWORD attributes = GetFileAttributesW(name.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return ERROR_SUCCESS;
    if ((attributes & FILE_ATTRIBUTE_READONLY) != 0)
        return ERROR_FILE_READ_ONLY;
    // Who asks for the removal of a file is told whether another program holds it.
    const HANDLE file =
        CreateFileW(name.c_str(), DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                    OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return GetLastError();
    CloseHandle(file);
    return ERROR_SUCCESS;
}

/// The error of a replacement, which says no more than that the access is denied, or what is behind it.
DWORD reasonBehind(DWORD error, const std::wstring& name)
{
    const DWORD known = error == ERROR_ACCESS_DENIED ? obstacle(name) : ERROR_SUCCESS;
    return known == ERROR_SUCCESS ? error : known;
}

bool mayPass(DWORD error)
{
    return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION || error == ERROR_ACCESS_DENIED;
}

} // namespace

QString moveIntoPlace(const QString& from, const QString& to)
{
    const std::wstring source = longName(from);
    const std::wstring target = longName(to);
    for (int tried = 1; MoveFileExW(source.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING) == 0;
         ++tried) {
        const DWORD reason = reasonBehind(GetLastError(), target);
        if (!mayPass(reason) || tried == mostTries)
            return qt_error_string(static_cast<int>(reason));
        Sleep(pause);
    }
    return {};
}

QString obstacleTo(const QString& path)
{
    const DWORD reason = obstacle(longName(path));
    return reason == ERROR_SUCCESS ? QString() : qt_error_string(static_cast<int>(reason));
}

#else

QString moveIntoPlace(const QString& from, const QString& to)
{
    std::error_code failure;
    std::filesystem::rename(from.toStdU16String(), to.toStdU16String(), failure);
    return failure ? QString::fromLocal8Bit(failure.message().c_str()) : QString();
}

QString obstacleTo(const QString&)
{
    return {}; // it is replaced whoever reads it
}

#endif

} // namespace velmora

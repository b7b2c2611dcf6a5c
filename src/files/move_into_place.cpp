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

/// The name in the spelling that may be longer than 260 characters.
std::wstring longName(const QString& path)
{
    const std::wstring given = QDir::toNativeSeparators(path).toStdWString();
    std::wstring full(GetFullPathNameW(given.c_str(), 0, nullptr, nullptr), L'\0');
    full.resize(GetFullPathNameW(given.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
    if (full.starts_with(L"\\\\?\\"))
        return full;
    const bool isOnServer = full.starts_with(L"\\\\");
    return isOnServer ? L"\\\\?\\UNC\\" + full.substr(2) : L"\\\\?\\" + full;
}

bool isReadOnly(const std::wstring& name)
{
    const DWORD attributes = GetFileAttributesW(name.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
}

/// What keeps the file from being replaced; ERROR_SUCCESS where nothing does, or there is none. A replacement
/// that fails says no more than that the access is denied; who asks for a file that nobody else has open is
/// told more.
DWORD obstacle(const std::wstring& name)
{
    if (isReadOnly(name))
        return ERROR_FILE_READ_ONLY;
    const HANDLE file =
        CreateFileW(name.c_str(), DELETE, 0, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file != INVALID_HANDLE_VALUE)
        CloseHandle(file);
    const DWORD error = file == INVALID_HANDLE_VALUE ? GetLastError() : ERROR_SUCCESS;
    const bool isAbsent = error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
    return isAbsent ? ERROR_SUCCESS : error;
}

/// Whether what is refused now may be granted in a moment.
bool mayPass(DWORD error, const std::wstring& target)
{
    return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION ||
           (error == ERROR_ACCESS_DENIED && !isReadOnly(target));
}

QString textOf(DWORD error)
{
    return error == ERROR_SUCCESS ? QString() : qt_error_string(static_cast<int>(error));
}

} // namespace

QString moveIntoPlace(const QString& from, const QString& to)
{
    const std::wstring source = longName(from);
    const std::wstring target = longName(to);
    for (int tried = 1; MoveFileExW(source.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING) == 0;
         ++tried) {
        const DWORD error = GetLastError();
        if (tried == mostTries || !mayPass(error, target)) {
            const DWORD reason = error == ERROR_ACCESS_DENIED ? obstacle(target) : ERROR_SUCCESS;
            return textOf(reason == ERROR_SUCCESS ? error : reason);
        }
        Sleep(pause);
    }
    return {};
}

QString obstacleTo(const QString& path)
{
    return textOf(obstacle(longName(path)));
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

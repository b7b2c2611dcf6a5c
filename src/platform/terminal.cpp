#include "platform/terminal.h"

#ifdef Q_OS_WIN
#include <array>
#include <atomic>
#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <windows.h>
#else
#include <QTextStream>

#include <csignal>
#include <cstdio>
#include <termios.h>
#include <unistd.h>
#endif

namespace velmora {

#ifdef Q_OS_WIN

namespace {

// What the console shows belongs to it, not to this process, and outlives it: so it is put back before Ctrl+C
// or the like ends the process. That is told in a thread of its own, which can use nothing else.
DWORD shownMode = 0;
std::atomic<bool> isHidden = false;
std::atomic<UINT> codePage = 0;

HANDLE input()
{
    return GetStdHandle(STD_INPUT_HANDLE);
}

void showInput()
{
    if (isHidden.exchange(false))
        SetConsoleMode(input(), shownMode);
}

void putBackCodePage()
{
    if (const UINT before = codePage.exchange(0); before != 0)
        SetConsoleOutputCP(before);
}

BOOL WINAPI putBack(DWORD)
{
    showInput();
    putBackCodePage();
    return FALSE; // the system's own handler comes next, and ends the process
}

/// For good: to be told no more may mean to wait for a handler that is just being called.
void beToldOfTheEnd()
{
    [[maybe_unused]] static const BOOL isTold = SetConsoleCtrlHandler(putBack, TRUE);
}

} // namespace

bool isAtTerminal()
{
    DWORD mode = 0;
    return GetConsoleMode(input(), &mode) != 0;
}

QString terminalLine()
{
    // Not through the standard library: as bytes, letters with accents would not come as they were typed.
    QString line;
    while (!line.endsWith(u'\n')) {
        std::array<wchar_t, 256> part;
        DWORD length = 0;
        SetLastError(ERROR_SUCCESS);
        const bool isRead =
            ReadConsoleW(input(), part.data(), static_cast<DWORD>(part.size()), &length, nullptr) != 0;
        if (GetLastError() == ERROR_OPERATION_ABORTED)
            Sleep(1000); // by Ctrl+C, whose handlers just now end the process
        if (!isRead || length == 0)
            return {};
        line += QString::fromWCharArray(part.data(), static_cast<qsizetype>(length));
    }
    const bool isEnd = line.startsWith(u'\x1a'); // Ctrl+Z
    return isEnd ? QString() : line.chopped(line.endsWith(u"\r\n") ? 2 : 1);
}

HiddenInput::HiddenInput()
{
    if (GetConsoleMode(input(), &shownMode) == 0)
        return;
    beToldOfTheEnd();
    isHidden = true;
    SetConsoleMode(input(), shownMode & ~DWORD{ENABLE_ECHO_INPUT});
}

HiddenInput::~HiddenInput()
{
    showInput();
}

Utf8Output::Utf8Output()
{
    for (std::FILE* stream : {stdout, stderr}) {
        _setmode(_fileno(stream), _O_BINARY);
        // Without one the bytes of a letter come one by one, of which the console knows none.
        std::setvbuf(stream, nullptr, _IOFBF, 0x10000);
    }
    codePage = GetConsoleOutputCP();
    beToldOfTheEnd();
    SetConsoleOutputCP(CP_UTF8);
}

Utf8Output::~Utf8Output()
{
    putBackCodePage();
}

#else

namespace {

// A handler of signals can use nothing else.
termios shownMode = {};
bool isHidden = false;

void showInput()
{
    if (isHidden)
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &shownMode);
    isHidden = false;
}

void showInputAndEnd(int signal)
{
    showInput();
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

} // namespace

bool isAtTerminal()
{
    return isatty(STDIN_FILENO) != 0;
}

QString terminalLine()
{
    return QTextStream(stdin).readLine();
}

HiddenInput::HiddenInput()
{
    if (tcgetattr(STDIN_FILENO, &shownMode) != 0)
        return;
    for (const int ending : {SIGINT, SIGTERM, SIGHUP})
        std::signal(ending, showInputAndEnd);
    termios hidden = shownMode;
    hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    isHidden = true;
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden);
}

HiddenInput::~HiddenInput()
{
    if (!isHidden)
        return;
    showInput();
    for (const int ending : {SIGINT, SIGTERM, SIGHUP})
        std::signal(ending, SIG_DFL);
}

Utf8Output::Utf8Output() = default;
Utf8Output::~Utf8Output() = default;

#endif

} // namespace velmora

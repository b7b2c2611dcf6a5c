#include "platform/hidden_input.h"

#include <QtGlobal>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <csignal>
#include <termios.h>
#include <unistd.h>
#endif

namespace velmora {

#ifdef Q_OS_WIN

namespace {

DWORD shownMode = 0;
bool isHidden = false;

} // namespace

HiddenInput::HiddenInput()
{
    const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
    isHidden = GetConsoleMode(input, &shownMode) != 0 &&
               SetConsoleMode(input, shownMode & ~DWORD{ENABLE_ECHO_INPUT}) != 0;
}

HiddenInput::~HiddenInput()
{
    if (isHidden)
        SetConsoleMode(GetStdHandle(STD_INPUT_HANDLE), shownMode);
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

#endif

} // namespace velmora

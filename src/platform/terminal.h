// The terminal that the program was started in.
#pragma once

#include <QString>

namespace velmora {

/// Whether somebody sits at the standard input.
bool isAtTerminal();

/// The next line that is typed at the terminal of the standard input; null at the end of what is typed.
QString terminalLine();

/// While it lives, the terminal of the standard input does not show what is typed. One that is no terminal is
/// left alone. A signal that ends the program shows it again first.
class HiddenInput {
public:
    HiddenInput();
    ~HiddenInput();
    HiddenInput(const HiddenInput&) = delete;
    HiddenInput& operator=(const HiddenInput&) = delete;
};

/// While it lives, the terminal takes what is written as UTF-8, and files and other programs get it byte for
/// byte, line ends too. Other systems than Windows do so by themselves.
class Utf8Output {
public:
    Utf8Output();
    ~Utf8Output();
    Utf8Output(const Utf8Output&) = delete;
    Utf8Output& operator=(const Utf8Output&) = delete;
};

} // namespace velmora

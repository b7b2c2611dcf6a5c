// What is typed at a terminal without being shown.
#pragma once

namespace velmora {

/// While it lives, the terminal of the standard input does not show what is typed. One that is no terminal is
/// left alone. A signal that ends the program shows it again first.
class HiddenInput {
public:
    HiddenInput();
    ~HiddenInput();
    HiddenInput(const HiddenInput&) = delete;
    HiddenInput& operator=(const HiddenInput&) = delete;
};

} // namespace velmora

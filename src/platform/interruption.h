// Ctrl+C on the terminal, as an event.
#pragma once

#include <functional>

namespace velmora {

/// While it lives, the first Ctrl+C (or the system's request to end) calls back from the event loop; the next
/// one ends the program. One at a time.
class Interruption {
public:
    explicit Interruption(std::function<void()> interrupted);
    ~Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;
};

} // namespace velmora

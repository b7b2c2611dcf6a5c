// What happens in a window when a handler fails.
#pragma once

#include <functional>

namespace velmora {

class MMain;

/// Runs `handler`. A failure of the database or of a file that it does not trap itself is shown in an error
/// report; the handler is abandoned and the window stays usable. True when nothing failed.
bool reportFailures(MMain& main, const std::function<void()>& handler);

} // namespace velmora

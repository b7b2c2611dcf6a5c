// The command line's way of asking and telling.
#pragma once

#include "common/prompts.h"

namespace velmora {

/// Prompts that show texts on standard error. `actAs` answers every question for a text and `yes` every
/// yes/no question; what they leave open is asked on the terminal, and without one the answer is no.
Prompts terminalPrompts(const std::optional<QString>& actAs, bool yes);

} // namespace velmora

// The command line's way of asking and telling.
#pragma once

#include "common/prompts.h"

namespace velmora {

/// The environment variable that answers the question for a password.
constexpr auto passwordVariable = "VELMORA_TABLE_PASSWORD";

/// Prompts that show texts on standard error. `actAs` answers every question for a text and `yes` every
/// yes/no question; what they leave open is asked on the terminal, and without one the answer is no. A
/// password is taken from the environment, else asked on the terminal, which does not show it.
Prompts terminalPrompts(const std::optional<QString>& actAs, bool yes);

} // namespace velmora

// The desktop's way of asking and telling: message boxes and dialogs.
#pragma once

#include "common/prompts.h"

namespace velmora {

/// Prompts that show Qt's dialogs over the active window.
Prompts desktopPrompts();

} // namespace velmora

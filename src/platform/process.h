// Other processes of this machine.
#pragma once

#include <QtGlobal>

namespace velmora {

/// Whether a process of that number lives on this machine, whoever it belongs to.
bool isRunning(qint64 process);

} // namespace velmora

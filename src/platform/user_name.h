// The platform's name of the user.
#pragma once

#include <QString>

namespace velmora {

/// The name of the user who runs the program, as the system has it; empty when it has none.
QString systemUserName();

} // namespace velmora

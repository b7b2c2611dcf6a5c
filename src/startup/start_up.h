// The program's entry: from a program folder to an open, current database.
#pragma once

#include <QString>

namespace velmora {

class MMain;

/// Runs the start-up for the user of that system name. True when the program may go on to its main window or
/// command; false when a message has been shown and the program must end. Never throws.
bool StartUp(MMain& main, const QString& systemUserName);

} // namespace velmora

// The registry of Windows.
#pragma once

#include <QString>

namespace velmora {

/// The roots of the registry that are read.
enum class RegistryRoot { LocalMachine };

/// Reads one value: a text, or a number in hexadecimal with the prefix "&h". False when there is none, and on
/// other systems.
bool GetKeyValue(RegistryRoot root, const QString& keyName, const QString& valueName, QString& value);

} // namespace velmora

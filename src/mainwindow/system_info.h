// The system information tool of Windows.
#pragma once

#include <functional>

#include <QString>

namespace velmora {

class MMain;

/// Reads a value of the registry of the local machine; see GetKeyValue().
using ReadRegistry = std::function<bool(const QString& keyName, const QString& valueName, QString& value)>;

/// The path of the tool that the registry names; an empty text when there is none.
QString systemInfoTool(const ReadRegistry& read);

/// Starts the tool, or says that it is not available.
void StartSysInfo(MMain& main);

} // namespace velmora

// Writing the factory database.
#pragma once

#include "factory/factory_data.h"

namespace velmora {

/// Writes `data` into a new database file at `path`, stamped with the program's version. The file can be read
/// from a folder that nobody may write to. Throws DatabaseError; an earlier file at `path` is replaced.
void writeFactoryDatabase(const QString& path, const QList<TableRows>& data);

} // namespace velmora

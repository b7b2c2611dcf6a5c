// The key-and-value file of the F1000.
#pragma once

#include "modules/reader.h"
#include "modules/writer.h"

namespace velmora {

/// One "key=value" line per parameter, in ascending code order; Windows-1252, CR LF, no section header. The
/// source copy has a line in markup comment form before each.
extern const Writer F1000;

/// Reads such a file. A line without "=" belongs to the value before it.
FileContents readF1000(QByteArrayView bytes);

} // namespace velmora

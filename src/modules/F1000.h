// The key-and-value file of the F1000.
#pragma once

#include "modules/writer.h"

namespace velmora {

/// One "key=value" line per parameter, in ascending code order; Windows-1252, CR LF, no section header. The
/// source copy has a line in markup comment form before each.
extern const Writer F1000;

} // namespace velmora

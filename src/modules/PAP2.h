// The XML profile of the PAP2 adapter.
#pragma once

#include "modules/reader.h"
#include "modules/writer.h"

namespace velmora {

/// One element per parameter inside "<flat-profile>", in ascending code order; Windows-1252, CR LF, no XML
/// declaration, no indentation and no escaping. The source copy has a comment line before each element.
extern const Writer PAP2;

/// Reads such a profile, as the device file has it: without comments.
FileContents readPAP2(QByteArrayView bytes);

} // namespace velmora

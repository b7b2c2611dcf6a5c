// A short hash of a text.
#pragma once

#include <QString>

namespace velmora {

/// 8 uppercase hexadecimal digits. From h = 0, each Windows-1252 byte makes h = the low 24 bits of h times 8,
/// plus the byte, plus the top byte of h as a signed number; h is a signed 32-bit number.
QString hash_string(const QString& text);

} // namespace velmora

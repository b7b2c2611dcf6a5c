// Base64 with the padding and line breaks that the devices are sent.
#pragma once

#include <QString>

namespace velmora {

/// The Windows-1252 bytes of `text` in the digits of RFC 4648. After every 40 digits stands a CR LF, also at
/// the very end. The padding is not that of the RFC: for k = (number of digits + 2) mod 3 it is "==" for k =
/// 1,
/// "=" for k = 2 and nothing for k = 0.
QString Encode64(const QString& text);

/// Decodes what Encode64 made; characters that are no digits are skipped. `text` is overwritten from its
/// start with the result, whose end is returned cut off.
QString Decode64(QString& text);

} // namespace velmora

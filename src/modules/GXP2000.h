// The byte image of the GXP2000.
#pragma once

#include "modules/reader.h"
#include "modules/writer.h"

#include <cstdint>
#include <functional>
#include <stdexcept>

namespace velmora {

/// The image of a configuration, parameters in descending code order:
///
///     bytes 0-3   length in 16-bit words, big-endian (bytes 0 and 1 are always 0)
///     bytes 4-5   checksum, big-endian: the 16-bit words of the whole image sum to 0 modulo 65536
///     bytes 6-11  MAC address
///     bytes 12-15 CR LF CR LF
///     from 16     "P" code "=" value, joined with "&", then "&gnkey=7c3e"; Windows-1252, no escaping
///     last        one byte 0 where the length would be odd
///
/// The source copy holds, in ascending order, a "# description" and a "Pcode = value" line for each.
extern const Writer GXP2000;

/// Reads such an image. A piece between two "&" that is no parameter belongs to the value before it.
FileContents readGXP2000(QByteArrayView bytes);

/// The largest image, in bytes.
constexpr qsizetype largestImage = 32768;

/// Thrown by GXP2000.device where the image would be larger than `largestImage`.
class ImageTooLarge : public std::length_error {
public:
    ImageTooLarge() : std::length_error("The image is larger than 32,768 bytes") {}
};

/// The number that a hexadecimal text of at most seven digits stands for. A character that is no digit is
/// passed to `rejected` and counts as the term before it (0 for the last character) times its weight. Throws
/// std::overflow_error where the number or a weight leaves 32 bits.
std::int32_t HexDec(QStringView text, const std::function<void(QChar)>& rejected);

} // namespace velmora

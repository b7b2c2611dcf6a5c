#include "http/CMD5.h"

#include <QByteArray>
#include <QtEndian>

#include <array>
#include <bit>

namespace velmora {

namespace {

using State = std::array<quint32, 4>;

constexpr qsizetype blockSize = 64;

/// How far each of a round's four repeating steps rotates (RFC 1321, section 3.4).
constexpr int rotations[4][4] = {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};

/// The integer parts of 2^32 * abs(sin(n)), n = 1 to 64 (RFC 1321, section 3.4).
constexpr quint32 sines[64] = {
    0xd76aa478, 0xe8c7b756, 0x242070db, 0xc1bdceee, 0xf57c0faf, 0x4787c62a, 0xa8304613, 0xfd469501,
    0x698098d8, 0x8b44f7af, 0xffff5bb1, 0x895cd7be, 0x6b901122, 0xfd987193, 0xa679438e, 0x49b40821,
    0xf61e2562, 0xc040b340, 0x265e5a51, 0xe9b6c7aa, 0xd62f105d, 0x02441453, 0xd8a1e681, 0xe7d3fbc8,
    0x21e1cde6, 0xc33707d6, 0xf4d50d87, 0x455a14ed, 0xa9e3e905, 0xfcefa3f8, 0x676f02d9, 0x8d2a4c8a,
    0xfffa3942, 0x8771f681, 0x6d9d6122, 0xfde5380c, 0xa4beea44, 0x4bdecfa9, 0xf6bb4b60, 0xbebfbc70,
    0x289b7ec6, 0xeaa127fa, 0xd4ef3085, 0x04881d05, 0xd9d4d039, 0xe6db99e5, 0x1fa27cf8, 0xc4ac5665,
    0xf4292244, 0x432aff97, 0xab9423a7, 0xfc93a039, 0x655b59c3, 0x8f0ccc92, 0xffeff47d, 0x85845dd1,
    0x6fa87e4f, 0xfe2ce6e0, 0xa3014314, 0x4e0811a1, 0xf7537e82, 0xbd3af235, 0x2ad7d2bb, 0xeb86d391};

/// The message with 0x80, zeros up to 56 modulo 64 bytes, and its length in bits (sections 3.1 and 3.2).
QByteArray padded(QByteArray message)
{
    const quint64 bits = static_cast<quint64>(message.size()) * 8;
    message.append('\x80');
    while (message.size() % blockSize != blockSize - 8)
        message.append('\0');
    char length[8];
    qToLittleEndian(bits, length);
    return message.append(length, sizeof length);
}

State afterBlock(const State& before, const char* block)
{
    auto [a, b, c, d] = before;
    for (quint32 step = 0; step < 64; ++step) {
        const quint32 round = step / 16;
        const quint32 mix = round == 0   ? (b & c) | (~b & d)
                            : round == 1 ? (b & d) | (c & ~d)
                            : round == 2 ? b ^ c ^ d
                                         : c ^ (b | ~d);
        const quint32 word = round == 0   ? step
                             : round == 1 ? (5 * step + 1) % 16
                             : round == 2 ? (3 * step + 5) % 16
                                          : 7 * step % 16;
        const quint32 sum = a + mix + qFromLittleEndian<quint32>(block + 4 * word) + sines[step];
        a = d;
        d = c;
        c = b;
        b += std::rotl(sum, rotations[round][step % 4]);
    }
    return {before[0] + a, before[1] + b, before[2] + c, before[3] + d};
}

} // namespace

QString CMD5::MD5(const QString& text) const
{
    QByteArray message;
    for (const QChar character : text)
        message.append(static_cast<char>(character.unicode() & 0xFF));
    message = padded(message);
    State state = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476};
    for (qsizetype start = 0; start < message.size(); start += blockSize)
        state = afterBlock(state, message.constData() + start);
    QByteArray digest(16, '\0');
    for (qsizetype word = 0; word < 4; ++word)
        qToLittleEndian(state[static_cast<size_t>(word)], digest.data() + 4 * word);
    return QString::fromLatin1(digest.toHex());
}

} // namespace velmora

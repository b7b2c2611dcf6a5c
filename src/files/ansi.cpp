#include "files/ansi.h"

#include <QStringDecoder>

#include <algorithm>
#include <array>

namespace velmora {

namespace {

/// The characters of the bytes 0x80 to 0x9F; all other bytes are the characters of the same number.
constexpr std::array<char16_t, 32> upperControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

/// The byte of a character, or -1 when Windows-1252 has none.
int ansiByte(char16_t character)
{
    if (character < 0x80 || (character >= 0xA0 && character <= 0xFF))
        return character;
    const auto found = std::find(upperControls.begin(), upperControls.end(), character);
    return found == upperControls.end() ? -1 : 0x80 + static_cast<int>(found - upperControls.begin());
}

} // namespace

bool appendAnsi(QByteArray& bytes, QStringView text)
{
    bool complete = true;
    const qsizetype before = bytes.size();
    bytes.resize(before + text.size());
    char* end = bytes.data() + before;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const int byte = ansiByte(text[i].unicode());
        *end++ = byte < 0 ? '?' : static_cast<char>(byte);
        complete = complete && byte >= 0;
        // A character beyond the basic plane is two code units but one "?".
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            ++i;
    }
    bytes.truncate(end - bytes.constData());
    return complete;
}

bool fitsAnsi(QStringView text)
{
    return std::all_of(text.begin(), text.end(),
                       [](QChar character) { return ansiByte(character.unicode()) >= 0; });
}

QString decodeAnsi(const QByteArray& bytes)
{
    QString text = QString::fromLatin1(bytes);
    for (QChar& character : text)
        if (character.unicode() >= 0x80 && character.unicode() <= 0x9F)
            character = upperControls[character.unicode() - 0x80U];
    return text;
}

QString decodeText(const QByteArray& bytes)
{
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = utf8(bytes);
    return utf8.hasError() ? decodeAnsi(bytes) : text;
}

} // namespace velmora

#include "http/base64.h"

#include "files/ansi.h"

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

constexpr auto alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/"_L1;
constexpr qsizetype lineLength = 40;

QString digitsOf(const QByteArray& bytes)
{
    QString digits;
    quint32 held = 0;
    int bits = 0;
    for (const char byte : bytes) {
        held = (held << 8 | static_cast<uchar>(byte)) & 0xFFFF;
        for (bits += 8; bits >= 6; bits -= 6)
            digits += alphabet[held >> (bits - 6) & 0x3F];
    }
    if (bits > 0)
        digits += alphabet[held << (6 - bits) & 0x3F];
    return digits;
}

QLatin1StringView padding(qsizetype digits)
{
    constexpr QLatin1StringView paddings[] = {""_L1, "=="_L1, "="_L1};
    return paddings[(digits + 2) % 3];
}

} // namespace

QString Encode64(const QString& text)
{
    QByteArray bytes;
    appendAnsi(bytes, text);
    const QString digits = digitsOf(bytes);
    QString lines;
    for (qsizetype start = 0; start < digits.size(); start += lineLength) {
        lines += QStringView(digits).mid(start, lineLength);
        if (start + lineLength <= digits.size())
            lines += "\r\n"_L1;
    }
    return lines + padding(digits.size());
}

QString Decode64(QString& text)
{
    qsizetype produced = 0;
    quint32 held = 0;
    int bits = 0;
    // Output never runs ahead of input.
    for (qsizetype place = 0; place < text.size(); ++place) {
        const qsizetype digit = alphabet.indexOf(text[place]);
        if (digit < 0)
            continue;
        held = (held << 6 | static_cast<quint32>(digit)) & 0xFFF;
        bits += 6;
        if (bits >= 8) {
            bits -= 8;
            text[produced++] = decodeAnsi(QByteArray(1, static_cast<char>(held >> bits & 0xFF))).front();
        }
    }
    return text.first(produced);
}

} // namespace velmora

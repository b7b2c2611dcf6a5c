#include "http/hash_string.h"

#include "files/ansi.h"

using namespace Qt::StringLiterals;

namespace velmora {

QString hash_string(const QString& text)
{
    QByteArray bytes;
    appendAnsi(bytes, text);
    qint32 hash = 0;
    for (const char byte : bytes)
        hash = (hash & 0x00FFFFFF) * 8 + static_cast<uchar>(byte) + (hash >> 24);
    return u"%1"_s.arg(static_cast<quint32>(hash), 8, 16, QLatin1Char('0')).toUpper();
}

} // namespace velmora

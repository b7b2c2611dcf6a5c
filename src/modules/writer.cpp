#include "modules/writer.h"

#include "files/ansi.h"

#include <numeric>

using namespace Qt::StringLiterals;

namespace velmora {

QString templateBaseName(const Phone& phone, const Levels& levels)
{
    return levels.company ? phone.equipment + " - "_L1 + phone.company : phone.equipment;
}

QString sourceCopyName(const Phone& phone)
{
    return phone.code + " - "_L1 + phone.mac + ".TXT"_L1;
}

Piece pieceOf(const Parameter& parameter, std::initializer_list<QStringView> texts)
{
    Piece piece{parameter.code, {}, false};
    qsizetype size = 0;
    for (const QStringView text : texts)
        size += text.size();
    piece.bytes.reserve(size);
    for (const QStringView text : texts)
        if (!appendAnsi(piece.bytes, text))
            piece.isLossy = true;
    return piece;
}

qsizetype sizeOf(const Pieces& pieces)
{
    return std::accumulate(pieces.begin(), pieces.end(), qsizetype{0},
                           [](qsizetype sum, const Piece* piece) { return sum + piece->bytes.size(); });
}

DeviceFile joined(const Pieces& pieces)
{
    DeviceFile file;
    file.bytes.reserve(sizeOf(pieces));
    for (const Piece* piece : pieces) {
        file.bytes += piece->bytes;
        file.noteLoss(*piece);
    }
    return file;
}

} // namespace velmora

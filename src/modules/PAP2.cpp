#include "modules/PAP2.h"

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

DeviceFileNames names(const Phone& phone, const Levels& levels)
{
    if (levels.phone)
        return {phone.mac + ".txt"_L1, sourceCopyName(phone)};
    const QString name = templateBaseName(phone, levels) + ".txt"_L1;
    return {name, name};
}

Piece devicePiece(const Parameter& parameter)
{
    return pieceOf(parameter, {u"<", parameter.code, u">", parameter.value, u"</", parameter.code, u">\r\n"});
}

Piece sourcePiece(const Parameter& parameter)
{
    Piece piece = pieceOf(parameter, {u"<!-- ", parameter.description, u" -->\r\n"});
    const Piece element = devicePiece(parameter);
    piece.bytes += element.bytes;
    piece.isLossy = piece.isLossy || element.isLossy;
    return piece;
}

DeviceFile source(const Pieces& pieces)
{
    DeviceFile profile = joined(pieces);
    profile.bytes = "<flat-profile>\r\n" + profile.bytes + "</flat-profile>\r\n";
    return profile;
}

DeviceFile device(const Phone&, const Pieces& pieces)
{
    return source(pieces);
}

} // namespace

const Writer PAP2 = {names, devicePiece, sourcePiece, device, source};

} // namespace velmora

#include "modules/F1000.h"

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

DeviceFileNames names(const Phone& phone, const Levels& levels)
{
    if (levels.phone)
        return {"ut"_L1 + phone.mac + ".ini"_L1, sourceCopyName(phone)};
    const QString name = templateBaseName(phone, levels);
    return {name + ".ini"_L1, name + ".txt"_L1};
}

Piece devicePiece(const Parameter& parameter)
{
    return pieceOf(parameter, {parameter.code, u"=", parameter.value, u"\r\n"});
}

Piece sourcePiece(const Parameter& parameter)
{
    return pieceOf(parameter, {u"<!-- ", parameter.description, u" -->\r\n", parameter.code, u"=",
                               parameter.value, u"\r\n"});
}

DeviceFile device(const Phone&, const Pieces& pieces)
{
    return joined(pieces);
}

} // namespace

const Writer F1000 = {names, devicePiece, sourcePiece, device, joined};

} // namespace velmora

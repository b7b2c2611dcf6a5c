#include "modules/F1000.h"

#include "files/ansi.h"

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

FileContents readF1000(const QByteArray& bytes)
{
    if (bytes.isEmpty() || bytes.contains('\0'))
        return {{}, Unreadable::Foreign};
    FileContents file;
    QString code;
    for (qsizetype begin = 0; begin < bytes.size();) {
        const qsizetype end = bytes.indexOf("\r\n", begin);
        if (end < 0)
            return {{}, code.isEmpty() ? Unreadable::Foreign : Unreadable::CutOff};
        const QByteArray line = bytes.sliced(begin, end - begin);
        const qsizetype equals = line.indexOf('=');
        if (equals > 0)
            file.values[code = decodeAnsi(line.first(equals))] = decodeAnsi(line.sliced(equals + 1));
        else if (code.isEmpty())
            return {{}, Unreadable::Foreign};
        else
            file.values[code] += "\r\n"_L1 + decodeAnsi(line);
        begin = end + 2;
    }
    return file;
}

} // namespace velmora

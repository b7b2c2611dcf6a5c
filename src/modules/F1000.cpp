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

FileContents readF1000(QByteArrayView bytes)
{
    if (bytes.isEmpty() || bytes.contains('\0'))
        return {{}, Unreadable::Foreign};
    FileContents file;
    for (qsizetype begin = 0; begin < bytes.size();) {
        const qsizetype end = bytes.indexOf("\r\n", begin);
        if (end < 0)
            return {{}, file.parameters.isEmpty() ? Unreadable::Foreign : Unreadable::CutOff};
        const QByteArrayView line = bytes.sliced(begin, end - begin);
        const qsizetype equals = line.indexOf('=');
        if (equals > 0) {
            file.parameters << FileParameter{line.first(equals), line.sliced(equals + 1)};
        } else if (file.parameters.isEmpty()) {
            return {{}, Unreadable::Foreign};
        } else {
            // No parameter: it belongs to the value before it, as the line end between them does.
            QByteArrayView& value = file.parameters.last().value;
            value = QByteArrayView(value.data(), value.size() + 2 + line.size());
        }
        begin = end + 2;
    }
    return file;
}

} // namespace velmora

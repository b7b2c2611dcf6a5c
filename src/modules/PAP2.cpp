#include "modules/PAP2.h"

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

constexpr QByteArrayView startTag("<flat-profile>\r\n");
constexpr QByteArrayView endTag("</flat-profile>\r\n");
/// No parameter has a longer code.
constexpr qsizetype longestCode = 255;

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
    profile.bytes = startTag.toByteArray() + profile.bytes + endTag.toByteArray();
    return profile;
}

DeviceFile device(const Phone&, const Pieces& pieces)
{
    return source(pieces);
}

/// The elements of a profile, without its outer tags; nothing where there is something else.
std::optional<QList<FileParameter>> elementsIn(QByteArrayView text)
{
    QList<FileParameter> parameters;
    for (qsizetype begin = 0; begin < text.size();) {
        const qsizetype codeEnd = text.indexOf('>', begin);
        if (text[begin] != '<' || codeEnd < begin + 2 || codeEnd - begin > longestCode)
            return std::nullopt;
        const QByteArrayView code = text.sliced(begin + 1, codeEnd - begin - 1);
        const QByteArray close = "</" + code.toByteArray() + ">\r\n";
        // Only at the end or before another element: a value may hold all but that.
        const qsizetype next = text.indexOf(QByteArray(close + '<'), codeEnd + 1);
        const qsizetype valueEnd = next >= 0 ? next : text.size() - close.size();
        if (valueEnd <= codeEnd || (next < 0 && !text.endsWith(close)))
            return std::nullopt;
        parameters << FileParameter{code, text.sliced(codeEnd + 1, valueEnd - codeEnd - 1)};
        begin = valueEnd + close.size();
    }
    return parameters;
}

} // namespace

const Writer PAP2 = {names, devicePiece, sourcePiece, device, source};

FileContents readPAP2(QByteArrayView bytes)
{
    if (!bytes.startsWith(startTag))
        return {{}, Unreadable::Foreign};
    if (bytes.size() < startTag.size() + endTag.size() || !bytes.endsWith(endTag))
        return {{}, Unreadable::CutOff};
    const auto parameters =
        elementsIn(bytes.sliced(startTag.size(), bytes.size() - startTag.size() - endTag.size()));
    return parameters ? FileContents{*parameters, {}} : FileContents{{}, Unreadable::Foreign};
}

} // namespace velmora

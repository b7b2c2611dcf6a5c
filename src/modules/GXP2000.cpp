#include "modules/GXP2000.h"

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

constexpr qsizetype headerSize = 16;
constexpr qsizetype addressPosition = 6;
constexpr QByteArrayView endOfHeader("\r\n\r\n");
constexpr QByteArrayView endOfParameters("&gnkey=7c3e");

DeviceFileNames names(const Phone& phone, const Levels& levels)
{
    if (levels.phone)
        return {"cfg"_L1 + phone.mac, sourceCopyName(phone)};
    const QString name = templateBaseName(phone, levels) + ".txt"_L1;
    return {name, name};
}

std::uint32_t wordAt(QByteArrayView image, qsizetype position)
{
    return static_cast<std::uint8_t>(image[position]) * 256U + static_cast<std::uint8_t>(image[position + 1]);
}

void setWord(QByteArray& image, qsizetype position, std::uint32_t word)
{
    image[position] = static_cast<char>(word / 256);
    image[position + 1] = static_cast<char>(word % 256);
}

/// The header up to the parameters. An address of another length than 12 digits moves what follows it.
DeviceFile startImage(const Phone& phone)
{
    DeviceFile image;
    image.bytes = QByteArray(addressPosition, '\0');
    for (qsizetype digit = 0; digit < phone.mac.size(); digit += 2) {
        const QStringView pair = QStringView(phone.mac).mid(digit, 2);
        image.bytes +=
            static_cast<char>(HexDec(pair, [&](QChar character) { image.rejectedDigits += character; }));
    }
    image.bytes += endOfHeader;
    return image;
}

Piece devicePiece(const Parameter& parameter)
{
    return pieceOf(parameter, {u"P", parameter.code, u"=", parameter.value});
}

Piece sourcePiece(const Parameter& parameter)
{
    return pieceOf(parameter, {u"# ", parameter.description, u"\r\nP", parameter.code, u" = ",
                               parameter.value, u"\r\n"});
}

/// In one piece of memory, since it is half the work of an image.
void appendParameters(DeviceFile& image, const Pieces& pieces)
{
    const qsizetype before = image.bytes.size();
    image.bytes.resize(before + sizeOf(pieces) + pieces.size());
    char* const start = image.bytes.data();
    char* end = start + before;
    for (auto piece = pieces.rbegin(); piece != pieces.rend(); ++piece) {
        if (end - start > headerSize)
            *end++ = '&';
        end = std::copy((*piece)->bytes.begin(), (*piece)->bytes.end(), end);
        image.noteLoss(**piece);
    }
    image.bytes.truncate(end - start);
    image.bytes += endOfParameters;
}

/// What the words of the image lack to a sum of 0, once the length, still 0, is filled in.
std::uint32_t checksum(const QByteArray& image)
{
    std::uint32_t sum = 0;
    for (qsizetype position = 0; position < image.size(); position += 2)
        sum += 65535 - wordAt(image, position);
    return sum % 65536;
}

DeviceFile device(const Phone& phone, const Pieces& pieces)
{
    DeviceFile image = startImage(phone);
    appendParameters(image, pieces);
    if (image.bytes.size() % 2 != 0)
        image.bytes += '\0';
    if (image.bytes.size() > largestImage)
        throw ImageTooLarge();
    // Each word adds one less than its complement, so the sum comes out right only when the number of words
    // is filled in afterwards.
    setWord(image.bytes, 4, checksum(image.bytes));
    setWord(image.bytes, 2, static_cast<std::uint32_t>(image.bytes.size() / 2));
    return image;
}

/// The sum of the words of an image of even length, modulo 65536.
std::uint32_t sumOfWords(QByteArrayView image)
{
    std::uint32_t sum = 0;
    for (qsizetype position = 0; position < image.size(); position += 2)
        sum += wordAt(image, position);
    return sum % 65536;
}

/// Where the parameters of an image begin; -1 where there is no end of a header. The usual place comes first,
/// since an address may look like that end.
qsizetype parametersPosition(QByteArrayView image)
{
    if (image.sliced(headerSize - endOfHeader.size()).startsWith(endOfHeader))
        return headerSize;
    const qsizetype end = image.indexOf(endOfHeader, addressPosition);
    return end < 0 ? -1 : end + endOfHeader.size();
}

/// The parameters of the text between header and key; nothing where it does not begin with one.
std::optional<QList<FileParameter>> parametersIn(QByteArrayView text)
{
    QList<FileParameter> parameters;
    // What follows a longer header begins with "&".
    for (qsizetype begin = text.startsWith('&') ? 1 : 0; begin <= text.size();) {
        const qsizetype end = text.indexOf('&', begin) < 0 ? text.size() : text.indexOf('&', begin);
        const QByteArrayView piece = text.sliced(begin, end - begin);
        const qsizetype equals = piece.indexOf('=');
        if (piece.startsWith('P') && equals > 1) {
            parameters << FileParameter{piece.sliced(1, equals - 1), piece.sliced(equals + 1)};
        } else if (parameters.isEmpty()) {
            return std::nullopt;
        } else {
            // No parameter: it belongs to the value before it, as the "&" between them does.
            QByteArrayView& value = parameters.last().value;
            value = QByteArrayView(value.data(), value.size() + 1 + piece.size());
        }
        begin = end + 1;
    }
    return parameters;
}

} // namespace

const Writer GXP2000 = {names, devicePiece, sourcePiece, device, joined};

FileContents readGXP2000(QByteArrayView bytes)
{
    if (bytes.size() < headerSize || wordAt(bytes, 0) != 0)
        return {{}, Unreadable::Foreign};
    const qsizetype begin = parametersPosition(bytes);
    if (begin < 0)
        return {{}, Unreadable::Foreign};
    if (wordAt(bytes, 2) * 2 != bytes.size())
        return {{}, Unreadable::CutOff};
    if (sumOfWords(bytes) != 0)
        return {{}, Unreadable::WrongChecksum};
    const qsizetype end = bytes.lastIndexOf(endOfParameters);
    if (end < begin || bytes.size() - end > endOfParameters.size() + 1)
        return {{}, Unreadable::Foreign};
    const auto parameters = parametersIn(bytes.sliced(begin, end - begin));
    return parameters ? FileContents{*parameters, {}} : FileContents{{}, Unreadable::Foreign};
}

std::int32_t HexDec(QStringView text, const std::function<void(QChar)>& rejected)
{
    std::int32_t result = 0;
    std::int32_t weight = 1;
    std::int32_t term = 0;
    // Each factor fits in 32 bits, so a product or sum that does not is seen before it is kept.
    const auto kept = [](std::int64_t number) {
        if (number > std::numeric_limits<std::int32_t>::max())
            throw std::overflow_error("A hexadecimal text has more than seven digits");
        return static_cast<std::int32_t>(number);
    };
    for (auto character = text.rbegin(); character != text.rend(); ++character) {
        const char16_t digit = character->toUpper().unicode();
        if (digit >= u'A' && digit <= u'F')
            term = digit - u'A' + 10;
        else if (digit >= u'0' && digit <= u'9')
            term = digit - u'0';
        else
            rejected(*character);
        term = kept(std::int64_t{term} * weight);
        result = kept(std::int64_t{result} + term);
        weight = kept(std::int64_t{weight} * 16);
    }
    return result;
}

} // namespace velmora

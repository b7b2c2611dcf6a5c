#include "common/macros.h"

#include <QList>

#include <algorithm>
#include <string>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// The part of `text` that the arguments of the token name; nothing when they are not two numbers.
std::optional<QString> cutByArguments(const QString& text, const QList<QStringView>& arguments)
{
    if (arguments.isEmpty())
        return text;
    if (arguments.size() != 2)
        return std::nullopt;
    bool startIsNumber = false;
    bool lengthIsNumber = false;
    const int start = arguments[0].toInt(&startIsNumber);
    const int length = arguments[1].toInt(&lengthIsNumber);
    if (!startIsNumber || !lengthIsNumber || start < 1 || length < 0)
        return std::nullopt;
    // In whole characters: of one beyond 16 bits, half would be none.
    const std::u32string characters = text.toStdU32String();
    const std::size_t before = std::min(characters.size(), static_cast<std::size_t>(start - 1));
    return QString::fromStdU32String(characters.substr(before, static_cast<std::size_t>(length)));
}

} // namespace

QString macroToken(const QString& value)
{
    const qsizetype start = value.indexOf("$$"_L1);
    if (start < 0)
        return {};
    for (const QChar end : {QChar(u'\''), QChar(u' ')})
        if (const qsizetype position = value.indexOf(end, start); position >= 0)
            return value.sliced(start, position - start);
    return value.sliced(start);
}

MacroReplacement macroReplacement(const QString& token, const Phone& phone)
{
    QList<QStringView> arguments = QStringView(token).split(u',');
    const QStringView name = arguments.takeFirst();
    std::optional<QString> text =
        cutByArguments(name == "$$N"_L1 ? phone.description : phone.code, arguments);
    const bool unknownName = text && name != "$$P"_L1 && name != "$$N"_L1;
    return {unknownName ? std::nullopt : std::move(text), unknownName};
}

MacroExpansion expandMacros(const QString& value, const Phone& phone, MacroContext context)
{
    const QString token = macroToken(value);
    if (token.isEmpty())
        return {value, {}, false};
    MacroReplacement replacement = macroReplacement(token, phone);
    if (!replacement.text)
        return {value, token, replacement.unknownName};
    if (context == MacroContext::Statement)
        replacement.text->replace(u'\'', "''"_L1);
    return {QString(value).replace(token, *replacement.text), {}, false};
}

} // namespace velmora

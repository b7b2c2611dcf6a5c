#include "common/macros.h"

#include <QStringList>

#include <algorithm>
#include <optional>
#include <string>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

QString firstToken(const QString& value)
{
    const QString rest = value.sliced(value.indexOf("$$"_L1));
    for (const QChar end : {QChar(u'\''), QChar(u' ')})
        if (const qsizetype position = rest.indexOf(end); position >= 0)
            return rest.first(position);
    return rest;
}

/// The part of `text` that the arguments of the token name; nothing when they are not two numbers.
std::optional<QString> cutByArguments(const QString& text, const QStringList& arguments)
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

MacroExpansion expandMacros(const QString& value, const Phone& phone, MacroContext context)
{
    if (!value.contains("$$"_L1))
        return {value, {}, false};
    const QString token = firstToken(value);
    QStringList arguments = token.split(u',');
    const QString name = arguments.takeFirst();

    std::optional<QString> replacement =
        cutByArguments(name == "$$N"_L1 ? phone.description : phone.code, arguments);
    if (!replacement)
        return {value, token, false};
    if (name != "$$P"_L1 && name != "$$N"_L1)
        return {value, token, true};
    if (context == MacroContext::Statement)
        replacement->replace(u'\'', "''"_L1);
    return {QString(value).replace(token, *replacement), {}, false};
}

} // namespace velmora

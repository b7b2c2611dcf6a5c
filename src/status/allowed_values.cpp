#include "status/allowed_values.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

bool isNumber(QStringView text)
{
    static const QRegularExpression number(u"^-?([0-9]+(\\.[0-9]+)?|\\.[0-9]+)$"_s);
    return number.match(text.toString()).hasMatch();
}

/// Whether `range` is one and holds the value.
bool isInRange(QStringView value, QStringView range)
{
    const qsizetype dash = range.indexOf(u'-', 1); // the first number may be negative
    if (dash < 0 || !isNumber(value) || !isNumber(range.first(dash)) || !isNumber(range.sliced(dash + 1)))
        return false;
    const double number = value.toDouble();
    return number >= range.first(dash).toDouble() && number <= range.sliced(dash + 1).toDouble();
}

} // namespace

bool isAllowed(QStringView value, QStringView allowed)
{
    if (value.isEmpty() || allowed.isEmpty())
        return true;
    const QList<QStringView> entries = allowed.split(u',');
    return std::any_of(entries.begin(), entries.end(), [value](QStringView entry) {
        const qsizetype equals = entry.indexOf(u'=');
        const QStringView code = (equals < 0 ? entry : entry.first(equals)).trimmed();
        return value == code || isInRange(value, code);
    });
}

bool isOfType(QStringView value, QStringView type)
{
    return value.isEmpty() || type != "N"_L1 || isNumber(value);
}

} // namespace velmora

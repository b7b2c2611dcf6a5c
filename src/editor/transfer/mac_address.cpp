#include "editor/transfer/mac_address.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

QString withoutSeparators(const QString& address)
{
    QString bare = address;
    bare.removeIf([](QChar each) { return each == u':' || each == u'-' || each == u'.' || each.isSpace(); });
    return bare.isEmpty() && !address.isNull() ? u""_s : bare;
}

bool isMacAddress(const QString& address)
{
    constexpr qsizetype digits = 12;
    return address.size() == digits && std::all_of(address.begin(), address.end(), [](QChar each) {
               return each.unicode() < 0x80 && std::isxdigit(each.unicode()) != 0;
           });
}

} // namespace velmora

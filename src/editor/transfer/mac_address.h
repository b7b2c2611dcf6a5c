// The address of a phone as people write it.
#pragma once

#include <QString>

namespace velmora {

/// The column that holds such addresses.
constexpr auto addressColumn = QLatin1StringView("PH_MAC");

/// The address without what people put between its digits: ":", "-", "." and blanks.
QString withoutSeparators(const QString& address);

/// Whether it is twelve hexadecimal digits.
bool isMacAddress(const QString& address);

} // namespace velmora

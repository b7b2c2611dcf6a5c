// What the catalogue says about the values of a parameter: pure functions.
#pragma once

#include <QStringView>

namespace velmora {

/// Whether `value` is one of `allowed`, as the catalogue lists them: codes apart by ",", each followed by "="
/// and what it stands for, or by nothing; two numbers with "-" between them mean every number from one to the
/// other. An empty list allows everything, and an empty value is always allowed.
bool isAllowed(QStringView value, QStringView allowed);

/// Whether `value` is of the type: of "N", numbers alone are. An empty value is of every type.
bool isOfType(QStringView value, QStringView type);

} // namespace velmora

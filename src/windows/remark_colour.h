// The colour of what is not in order.
#pragma once

#include <QColor>

namespace velmora {

/// Stands out on the background of lists, be it light or dark.
QColor remarkColour();

} // namespace velmora

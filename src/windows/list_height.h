// How high a drop-down list opens.
#pragma once

#include <QComboBox>

namespace velmora {

/// Lets a list of many entries open with twenty of them in sight, where some styles cover the whole screen.
void limitHeight(QComboBox& list);

} // namespace velmora

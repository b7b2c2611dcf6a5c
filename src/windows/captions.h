// Captions of windows in the current language.
#pragma once

#include <QString>

class QWidget;

namespace velmora {

class MMain;

/// Replaces the title of `window` and the captions of all labels and buttons in it by the texts whose codes
/// are the upper-case object names: of the window, or of the window and the control joined with "_". What has
/// no text keeps its design caption.
void translateCaptions(MMain& main, QWidget& window);

} // namespace velmora

#include "windows/remark_colour.h"

#include <QApplication>
#include <QPalette>

namespace velmora {

QColor remarkColour()
{
    const bool dark = QApplication::palette().color(QPalette::Base).lightness() < 128;
    return dark ? QColor(255, 170, 90) : QColor(165, 60, 0);
}

} // namespace velmora

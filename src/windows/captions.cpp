#include "windows/captions.h"

#include "common/MMain.h"

#include <QAbstractButton>
#include <QLabel>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

template <typename Control> void translateControls(MMain& main, QWidget& window)
{
    const QString prefix = window.objectName().toUpper() + u'_';
    for (Control* control : window.findChildren<Control*>())
        if (!control->objectName().isEmpty())
            control->setText(main.textOr(prefix + control->objectName().toUpper(), control->text()));
}

} // namespace

void translateCaptions(MMain& main, QWidget& window)
{
    window.setWindowTitle(main.textOr(window.objectName().toUpper(), window.windowTitle()));
    translateControls<QLabel>(main, window);
    translateControls<QAbstractButton>(main, window);
}

} // namespace velmora

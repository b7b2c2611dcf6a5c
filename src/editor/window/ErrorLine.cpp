#include "editor/window/ErrorLine.h"

using namespace Qt::StringLiterals;

namespace velmora {

ErrorLine::ErrorLine(QWidget* parent) : QLabel(parent)
{
    setObjectName(u"LErr"_s);
    setTextFormat(Qt::PlainText);
    setTextInteractionFlags(Qt::TextSelectableByMouse);
    QFont bold = font();
    bold.setBold(true);
    setFont(bold);
}

void ErrorLine::tell(const QString& text)
{
    setToolTip(text);
    setText(QString(text).replace(u'\n', u' '));
    show();
}

} // namespace velmora

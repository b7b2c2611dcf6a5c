#include "editor/window/FindBox.h"

#include <QKeyEvent>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// How narrow it may become, in characters.
constexpr int leastCharacters = 12;

} // namespace

FindBox::FindBox(const QString& caption, QWidget* parent) : QLineEdit(parent)
{
    setObjectName(u"Find"_s);
    setPlaceholderText(caption);
    setAccessibleName(caption);
    setToolTip(caption);
    setClearButtonEnabled(true);
    setMinimumWidth(leastCharacters * fontMetrics().averageCharWidth());
}

void FindBox::begin()
{
    setFocus(Qt::ShortcutFocusReason);
    selectAll();
}

void FindBox::keyPressEvent(QKeyEvent* event)
{
    const int key = event->key();
    if (key == Qt::Key_Escape && !text().isEmpty())
        clear();
    else if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Down)
        Q_EMIT left();
    else
        QLineEdit::keyPressEvent(event);
}

} // namespace velmora

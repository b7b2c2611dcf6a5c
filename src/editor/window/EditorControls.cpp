#include "editor/window/EditorControls.h"

#include "common/MMain.h"
#include "editor/list/RecordCount.h"
#include "editor/window/editor_layout.h"

#include <QHBoxLayout>
#include <QMdiSubWindow>

#include <algorithm>
#include <tuple>

using namespace Qt::StringLiterals;

namespace velmora {

EditorControls::EditorControls(MMain& main, QWidget& window)
    : m_window(window),
      m_topRow(new QWidget(&window)),
      m_rowHeight(std::max(QComboBox().sizeHint().height(), QLineEdit().sizeHint().height())),
      strip(new TabStrip(main, &window)),
      pane(new TablePane(main, &window)),
      list(&pane->list()),
      actions(new RecordActions(main, *list)),
      transfer(new TransferActions(main, *pane)),
      find(new FindBox(main.textOr(u"FPARAMETERS_FIND"_s, u"Find (Ctrl+F)"_s))),
      panel(new RecordPanel(&window)),
      ok(new QPushButton(&window)),
      cancel(new QPushButton(u"Cancel"_s, &window)),
      goOn(new QPushButton(u"Add and Go On"_s, &window)),
      error(new ErrorLine(&window))
{
    auto* layout = new QHBoxLayout(m_topRow);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(actions);
    layout->addWidget(find, 1);
    layout->addWidget(transfer);
    layout->addWidget(new RecordCount(main, *pane));
    ok->setObjectName(u"Ok"_s);
    ok->setDefault(true);
    cancel->setObjectName(u"Cancel"_s);
    cancel->setAutoDefault(true);
    goOn->setObjectName(u"GoOn"_s);
    goOn->setAutoDefault(true);
    goOn->setToolTip(QKeySequence(Qt::CTRL | Qt::Key_Return).toString(QKeySequence::NativeText));
    panel->hide();
}

void EditorControls::arrange() const
{
    const int dotsPerInch = m_window.logicalDpiX();
    const auto* frame = qobject_cast<const QMdiSubWindow*>(m_window.parentWidget());
    const int frameHeight = (frame ? frame->height() : m_window.frameGeometry().height()) - m_window.height();
    const QSize button = ok->sizeHint().expandedTo(cancel->sizeHint());
    const EditorLayout at = layOutEditor({
        .inside = m_window.size(),
        .frame = std::max(0, frameHeight),
        .dotsPerInch = dotsPerInch,
        .topRow = m_topRow->sizeHint().height(),
        .tabRow = strip->sizeHint().height(),
        .label = error->fontMetrics().height(),
        .row = m_rowHeight,
        .ok = button,
        .cancel = button,
        .filters = pane->filters().count(),
        .fields = panel->count(),
    });

    m_topRow->setGeometry(at.topRow);
    strip->setGeometry(at.strip.left(), at.strip.top(), at.strip.width(), strip->sizeHint().height());
    pane->place(at, m_rowHeight);
    panel->setGeometry(at.panel);
    panel->setRowHeights(at.fieldStep, m_rowHeight);
    ok->setGeometry(at.ok);
    cancel->setGeometry(at.cancel);
    goOn->setGeometry(at.goOn);
    error->setGeometry(at.errorLine);
    SortTabFields();
}

/// Lets the Tab key follow the positions: from top to bottom, and in a row from left to right.
void EditorControls::SortTabFields() const
{
    QList<QWidget*> controls = m_window.findChildren<QWidget*>();
    controls.removeIf([this](const QWidget* control) {
        // A window that stands over it has an order of its own.
        return !control->isVisibleTo(&m_window) || control->window() != m_window.window() ||
               !(control->focusPolicy() & Qt::TabFocus);
    });
    const auto position = [this](const QWidget* control) {
        // In a very low window list and fields lie out of sight, where their tops say nothing.
        const int zone = panel->isAncestorOf(control)         ? 1
                         : control == ok || control == cancel ? 2
                         : control == goOn                    ? 3
                                                              : 0;
        const QPoint at = control->mapTo(&m_window, QPoint(0, 0));
        return std::tuple(zone, at.y(), at.x());
    };
    std::stable_sort(controls.begin(), controls.end(), [&position](const QWidget* one, const QWidget* other) {
        return position(one) < position(other);
    });
    for (qsizetype place = 1; place < controls.size(); ++place)
        QWidget::setTabOrder(controls[place - 1], controls[place]);
}

} // namespace velmora

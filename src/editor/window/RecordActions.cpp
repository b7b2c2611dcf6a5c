#include "editor/window/RecordActions.h"

#include "common/MMain.h"
#include "editor/list/RecordView.h"

#include <QHBoxLayout>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// A button for the action: it follows its text and whether it can be used.
QPushButton* buttonFor(QAction* action)
{
    auto* button = new QPushButton;
    const auto follow = [action, button] {
        button->setText(action->text());
        button->setEnabled(action->isEnabled());
        button->setToolTip(action->shortcut().toString(QKeySequence::NativeText));
    };
    follow();
    QObject::connect(action, &QAction::changed, button, follow);
    QObject::connect(button, &QPushButton::clicked, action, &QAction::trigger);
    return button;
}

} // namespace

RecordActions::RecordActions(MMain& main, RecordView& list, QWidget* parent)
    : QWidget(parent), m_main(main), m_list(list), m_popup(new QMenu(this))
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_popup->setObjectName(u"MnuRecord"_s);
    m_popup->setTitle(main.textOr(u"FPARAMETERS_MNURECORD"_s, u"Record"_s));
    m_new = add(RecordMode::Insert, u"New"_s, {Qt::Key_Insert});
    m_edit = add(RecordMode::Update, u"Edit"_s, {Qt::Key_Return, Qt::Key_Enter});
    m_delete = add(RecordMode::Delete, u"Delete"_s, {Qt::Key_Delete});
    list.setContextMenuPolicy(Qt::CustomContextMenu);
    connect(&list, &QAbstractItemView::doubleClicked, m_edit, &QAction::trigger);
}

QAction* RecordActions::add(RecordMode mode, const QString& caption, const QList<QKeySequence>& keys)
{
    auto* action = new QAction(m_main.textOr("FPARAMETERS_"_L1 + caption.toUpper(), caption), this);
    action->setObjectName(caption);
    action->setShortcuts(keys);
    action->setShortcutContext(Qt::WidgetShortcut);
    connect(action, &QAction::triggered, this, [this, mode] { Q_EMIT chosen(mode); });
    m_list.addAction(action);
    m_popup->addAction(action);
    layout()->addWidget(buttonFor(action));
    return action;
}

void RecordActions::allow(bool any, bool onRecord)
{
    m_new->setEnabled(any);
    m_edit->setEnabled(any && onRecord);
    m_delete->setEnabled(any && onRecord);
}

void RecordActions::popup(const QPoint& position)
{
    if (m_list.indexAt(position).isValid())
        m_popup->popup(m_list.viewport()->mapToGlobal(position));
}

} // namespace velmora

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

/// An action, and where it is offered.
struct RecordActions::Offer {
    RecordAction action;
    QString name;
    QString caption;
    QList<QKeySequence> keys;
    /// How many records it works on; no most where it takes any number.
    qsizetype least = 0;
    std::optional<qsizetype> most = {};
    bool button = false;
};

RecordActions::RecordActions(MMain& main, RecordView& list, QWidget* parent)
    : QWidget(parent),
      m_main(main),
      m_list(list),
      m_popup(new QMenu(this)),
      m_more(new QPushButton(main.textOr(u"FPARAMETERS_MORE"_s, u"More"_s)))
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_popup->setObjectName(u"MnuRecord"_s);
    m_popup->setTitle(main.textOr(u"FPARAMETERS_MNURECORD"_s, u"Record"_s));
    add({.action = RecordAction::New,
         .name = u"New"_s,
         .caption = u"New"_s,
         .keys = {Qt::Key_Insert},
         .button = true});
    add({.action = RecordAction::Duplicate,
         .name = u"Duplicate"_s,
         .caption = u"Duplicate"_s,
         .keys = {Qt::CTRL | Qt::Key_D},
         .least = 1,
         .most = 1});
    add({.action = RecordAction::Edit,
         .name = u"Edit"_s,
         .caption = u"Edit"_s,
         .keys = {Qt::Key_Return, Qt::Key_Enter},
         .least = 1,
         .most = 1,
         .button = true});
    add({.action = RecordAction::Delete,
         .name = u"Delete"_s,
         .caption = u"Delete"_s,
         .keys = {Qt::Key_Delete},
         .least = 1,
         .button = true});
    add({.action = RecordAction::SetColumn,
         .name = u"SetColumn"_s,
         .caption = u"Set Column..."_s,
         .keys = {Qt::CTRL | Qt::Key_E},
         .least = 1});
    add({.action = RecordAction::Copy,
         .name = u"Copy"_s,
         .caption = u"Copy"_s,
         .keys = {QKeySequence::Copy},
         .least = 1});
    add({.action = RecordAction::Paste,
         .name = u"Paste"_s,
         .caption = u"Paste..."_s,
         .keys = {QKeySequence::Paste}});
    m_more->setObjectName(u"More"_s);
    m_more->setMenu(m_popup);
    layout->addWidget(m_more);
    list.setContextMenuPolicy(Qt::CustomContextMenu);
    connect(&list, &QAbstractItemView::doubleClicked, findChild<QAction*>(u"Edit"_s), &QAction::trigger);
}

void RecordActions::add(const Offer& offer)
{
    auto* action = new QAction(m_main.textOr("FPARAMETERS_"_L1 + offer.name.toUpper(), offer.caption), this);
    action->setObjectName(offer.name);
    action->setShortcuts(offer.keys);
    action->setShortcutContext(Qt::WidgetShortcut);
    action->setEnabled(false);
    connect(action, &QAction::triggered, this,
            [this, chosen = offer.action] { Q_EMIT this->chosen(chosen); });
    connect(
        this, &RecordActions::allowed, action, [action, offer](bool any, qsizetype selected, bool settable) {
            action->setEnabled(any && selected >= offer.least && selected <= offer.most.value_or(selected) &&
                               (settable || offer.action != RecordAction::SetColumn));
        });
    m_list.addAction(action);
    m_popup->addAction(action);
    if (offer.button)
        layout()->addWidget(buttonFor(action));
}

void RecordActions::allow(bool any, qsizetype selected, bool settable)
{
    m_more->setEnabled(any);
    Q_EMIT allowed(any, selected, settable);
}

void RecordActions::popup(const QPoint& position)
{
    if (m_list.indexAt(position).isValid())
        m_popup->popup(m_list.viewport()->mapToGlobal(position));
}

} // namespace velmora

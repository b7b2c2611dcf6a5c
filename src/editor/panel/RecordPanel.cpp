#include "editor/panel/RecordPanel.h"

#include "windows/SearchableList.h"
#include "windows/list_height.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QSignalBlocker>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// Between a label and its field, in pixels.
constexpr int labelGap = 8;

/// A locked text can be read and copied, and looks as if it can't be changed.
void setLocked(QLineEdit& text, bool locked)
{
    QPalette palette;
    if (locked)
        palette.setColor(QPalette::Base, palette.color(QPalette::Window));
    text.setPalette(palette);
    text.setReadOnly(locked);
}

} // namespace

RecordPanel::RecordPanel(QWidget* parent) : QScrollArea(parent)
{
    setFrameStyle(NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidget(new QWidget);
    widget()->installEventFilter(this); // it gets the clicks on fields that are not open yet
}

void RecordPanel::show(RecordForm form)
{
    clear();
    m_form = std::move(form);
    for (qsizetype field = 0; field < m_form->fields().size(); ++field)
        m_rows << addRow(field);
    showState();
    placeRows();
    QScrollArea::show();
}

void RecordPanel::clear()
{
    hide();
    for (const Row& row : m_rows)
        for (QWidget* control : {static_cast<QWidget*>(row.label), static_cast<QWidget*>(row.text),
                                 static_cast<QWidget*>(row.combo)}) {
            control->hide();
            control->setObjectName(QString());
            control->deleteLater(); // it may be the one whose signal led here
        }
    m_rows.clear();
    m_form.reset();
}

RecordPanel::Row RecordPanel::addRow(qsizetype field)
{
    const RecordField& shown = m_form->fields()[field];
    const Row row{new QLabel(shown.caption, widget()), new QLineEdit(widget()), new SearchableList(widget())};
    const QString number = u"_%1"_s.arg(field + 1);
    row.label->setObjectName("Label"_L1 + number);
    row.label->setTextFormat(Qt::PlainText);
    row.text->setObjectName("Text"_L1 + number);
    row.combo->setObjectName("Combo"_L1 + number);
    for (QWidget* control : {static_cast<QWidget*>(row.text), static_cast<QWidget*>(row.combo)}) {
        control->setAccessibleName(shown.caption);
        control->installEventFilter(this);
    }
    row.combo->setFocusPolicy(Qt::StrongFocus);
    row.combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    limitHeight(*row.combo);
    row.label->show();
    row.text->setVisible(!shown.dropDown);
    row.combo->setVisible(shown.dropDown);
    connect(row.text, &QLineEdit::textEdited, this, [this, field](const QString& text) {
        m_form->changeText(field, text);
        showState();
    });
    connect(row.combo, &QComboBox::activated, this, [this, field, combo = row.combo] {
        m_form->choose(field, combo->currentText());
        showState();
    });
    return row;
}

void RecordPanel::showState()
{
    for (qsizetype field = 0; field < m_rows.size(); ++field) {
        const RecordField& shown = m_form->fields()[field];
        const Row& row = m_rows[field];
        if (row.text->text() != shown.text)
            row.text->setText(shown.text);
        // A field that is not open yet is grey; one that stays locked can still be read and copied.
        const bool notYet = m_form->mode() == RecordMode::Insert && !shown.enabled;
        row.text->setEnabled(!notYet);
        setLocked(*row.text, !notYet && !shown.enabled);
        row.combo->setEnabled(shown.enabled);
        QStringList entries;
        for (int entry = 0; entry < row.combo->count(); ++entry)
            entries << row.combo->itemText(entry);
        if (entries != shown.entries) {
            row.combo->clear();
            row.combo->addItems(shown.entries);
        }
        row.combo->setCurrentIndex(
            shown.text.isEmpty() ? -1 : static_cast<int>(shown.entries.indexOf(shown.text)));
    }
    Q_EMIT changed();
}

void RecordPanel::setRowHeights(int step, int height)
{
    m_step = step;
    m_height = height;
    placeRows();
}

void RecordPanel::placeRows()
{
    int labelWidth = 0;
    for (const Row& row : m_rows)
        labelWidth = std::max(labelWidth, row.label->sizeHint().width());
    const int fieldLeft = labelWidth + labelGap;
    const int wanted = count() * m_step;
    widget()->resize(viewport()->width(), std::max(wanted - (m_step - m_height), 0));
    int top = 0;
    for (const Row& row : m_rows) {
        row.label->setGeometry(0, top, labelWidth, m_height);
        row.text->setGeometry(fieldLeft, top, widget()->width() - fieldLeft, m_height);
        row.combo->setGeometry(row.text->geometry());
        top += m_step;
    }
}

/// What of a row the user can change now; null where it is nothing.
QWidget* RecordPanel::changeable(const Row& row)
{
    for (QWidget* control : {static_cast<QWidget*>(row.text), static_cast<QWidget*>(row.combo)})
        if (!control->isHidden() && control->isEnabled() && !(control == row.text && row.text->isReadOnly()))
            return control;
    return nullptr;
}

bool RecordPanel::focus(QWidget* control)
{
    if (!control)
        return false;
    control->setFocus(Qt::TabFocusReason);
    ensureWidgetVisible(control);
    return true;
}

bool RecordPanel::focusFieldFrom(qsizetype first)
{
    for (const Row& row : m_rows.sliced(first))
        if (focus(changeable(row)))
            return true;
    return false;
}

bool RecordPanel::focusField(int wanted)
{
    if (m_form->mode() == RecordMode::Insert)
        return focusFieldFrom(wanted);
    if (wanted >= 0 && wanted < count() && focus(changeable(m_rows[wanted])))
        return true;
    // A letter typed into a drop-down would choose another entry.
    for (const Row& row : m_rows)
        if (changeable(row) == row.text && focus(row.text))
            return true;
    return focusFieldFrom(0);
}

/// A click opens a field that Tab would open now.
void RecordPanel::openClicked(const QPoint& position)
{
    for (qsizetype field = 1; field < m_rows.size(); ++field) {
        if (changeable(m_rows[field]) || !m_rows[field].text->geometry().contains(position))
            continue;
        m_form->leave(field - 1);
        showState();
        focus(changeable(m_rows[field]));
    }
}

bool RecordPanel::focusNextField()
{
    const QWidget* left = window()->focusWidget();
    leave(left);
    const auto row = std::find_if(m_rows.begin(), m_rows.end(),
                                  [left](const Row& one) { return one.text == left || one.combo == left; });
    return row != m_rows.end() && focusFieldFrom(row - m_rows.begin() + 1);
}

void RecordPanel::leave(const QObject* widget)
{
    for (qsizetype field = 0; field < m_rows.size(); ++field)
        if (m_rows[field].text == widget) {
            m_form->leave(field);
            showState();
        }
}

bool RecordPanel::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == widget()) {
        if (event->type() == QEvent::MouseButtonPress && m_form)
            openClicked(static_cast<QMouseEvent*>(event)->position().toPoint());
        return QScrollArea::eventFilter(watched, event);
    }
    // Before the focus moves, so that it finds the next field open.
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Tab)
        leave(watched);
    // Turning the wheel over the panel scrolls it; only a drop-down that has the focus is changed by it.
    if (event->type() == QEvent::Wheel && !static_cast<QWidget*>(watched)->hasFocus()) {
        event->ignore();
        return true;
    }
    return QScrollArea::eventFilter(watched, event);
}

void RecordPanel::resizeEvent(QResizeEvent* event)
{
    QScrollArea::resizeEvent(event);
    placeRows();
}

} // namespace velmora

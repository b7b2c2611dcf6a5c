#include "editor/windows/FParameters.h"

#include "common/MMain.h"
#include "editor/pick_list.h"
#include "windows/captions.h"
#include "windows/failure_report.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLocale>
#include <QMdiSubWindow>
#include <QShortcut>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// How many columns can be sorted by from the keyboard: Ctrl+1 to Ctrl+9.
constexpr int sortKeys = 9;
/// The widest that a filter grows, in twips.
constexpr int filterWidth = 6000;

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

FParameters::FParameters(MMain& main, QWidget* parent)
    : QWidget(parent),
      m_main(main),
      m_topRow(new QWidget(this)),
      m_record(new QMenu(this)),
      m_count(new QLabel),
      m_strip(new QTabBar(this)),
      m_pane(new QWidget(this)),
      m_list(new RecordView(main, m_pane)),
      m_filters(new FilterPanel(main.textOr(u"ALL"_s, u"All"_s), m_pane)),
      m_panel(new RecordPanel(this)),
      m_ok(new QPushButton(this)),
      m_cancel(new QPushButton(u"Cancel"_s, this)),
      m_error(new QLabel(this)),
      m_rowHeight(std::max(QComboBox().sizeHint().height(), QLineEdit().sizeHint().height()))
{
    setObjectName(u"FParameters"_s);
    setWindowTitle(u"Velmora Configuration"_s);
    m_strip->setObjectName(u"TabStrip"_s);
    m_strip->setExpanding(false);
    m_strip->setDocumentMode(true);
    m_strip->setElideMode(Qt::ElideNone);
    m_strip->installEventFilter(this);
    m_list->setObjectName(u"ListCom"_s);
    m_ok->setObjectName(u"Ok"_s);
    m_ok->setDefault(true);
    m_cancel->setObjectName(u"Cancel"_s);
    m_cancel->setAutoDefault(true);
    m_error->setObjectName(u"LErr"_s);
    m_error->setTextFormat(Qt::PlainText);
    m_error->setTextInteractionFlags(Qt::TextSelectableByMouse);
    QFont bold = m_error->font();
    bold.setBold(true);
    m_error->setFont(bold);
    m_panel->hide();
    createActions();
    translate();
    createTabs();
    connectControls();
    closePanel();
}

QSize FParameters::sizeHint() const
{
    return leastEditorSize(logicalDpiX())
        .expandedTo({fromTwips(13500, logicalDpiX()), fromTwips(8500, logicalDpiX())});
}

void FParameters::createActions()
{
    auto* layout = new QHBoxLayout(m_topRow);
    layout->setContentsMargins(0, 0, 0, 0);
    const auto add = [&](const QString& caption, const QList<QKeySequence>& keys) {
        auto* action = new QAction(caption, this);
        action->setObjectName(caption);
        action->setShortcuts(keys);
        action->setShortcutContext(Qt::WidgetShortcut);
        m_list->addAction(action);
        m_record->addAction(action);
        layout->addWidget(buttonFor(action));
        return action;
    };
    m_new = add(u"New"_s, {Qt::Key_Insert});
    m_edit = add(u"Edit"_s, {Qt::Key_Return, Qt::Key_Enter});
    m_delete = add(u"Delete"_s, {Qt::Key_Delete});
    layout->addStretch();
    layout->addWidget(m_count);
    m_record->setObjectName(u"MnuRecord"_s);
    m_list->setContextMenuPolicy(Qt::CustomContextMenu);
}

void FParameters::translate()
{
    const QString title = m_main.GetDescription(u"FPARAMETERS"_s);
    translateCaptions(m_main, *this);
    if (!title.isEmpty())
        setWindowTitle(title + " - "_L1 + m_main.userName);
    for (QAction* action : {m_new, m_edit, m_delete})
        action->setText(
            m_main.textOr("FPARAMETERS_"_L1 + action->objectName().toUpper(), action->objectName()));
    m_record->setTitle(m_main.textOr(u"FPARAMETERS_MNURECORD"_s, u"Record"_s));
    const QString kept = u"$$"_s;
    m_countText = m_main.messageLine(u"M209"_s, kept);
    m_loadingText = m_main.messageLine(u"M210"_s, kept);
    m_stoppedText = m_main.messageLine(u"M211"_s, kept);
    m_discardQuestion = m_main.messageLine(u"M212"_s, kept);
}

void FParameters::createTabs()
{
    m_tabs = tableTabs(m_main);
    const QSignalBlocker quiet(m_strip);
    for (const TableTab& tab : m_tabs)
        m_strip->setTabToolTip(m_strip->addTab(tab.caption), tab.table);
}

void FParameters::connectControls()
{
    const auto guarded = [this](auto handler) {
        return [this, handler] { reportFailures(m_main, handler); };
    };
    connect(m_strip, &QTabBar::currentChanged, this, guarded([this] { chooseTab(); }));
    // A click on a tab that could not be opened tries again: another password.
    connect(m_strip, &QTabBar::tabBarClicked, this, [this](int tab) {
        if (tab == m_strip->currentIndex() && !isOpen())
            reportFailures(m_main, [this] { chooseTab(); });
    });
    connect(m_new, &QAction::triggered, this, guarded([this] { edit(RecordMode::Insert); }));
    connect(m_edit, &QAction::triggered, this, guarded([this] { edit(RecordMode::Update); }));
    connect(m_delete, &QAction::triggered, this, guarded([this] { edit(RecordMode::Delete); }));
    connect(m_list, &QAbstractItemView::doubleClicked, m_edit, &QAction::trigger);
    connect(m_list, &QWidget::customContextMenuRequested, this, [this](const QPoint& position) {
        if (!editing() && m_list->indexAt(position).isValid())
            m_record->popup(m_list->viewport()->mapToGlobal(position));
    });
    connect(m_list, &RecordView::loaded, this, [this] {
        showCount();
        enableControls();
    });
    connect(m_list->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { enableControls(); });
    connect(m_panel, &RecordPanel::changed, this, [this] { enableControls(); });
    connect(m_filters, &FilterPanel::chosen, this, guarded([this] { RempList(); }));
    connect(m_ok, &QPushButton::clicked, this, guarded([this] { write(); }));
    connect(m_cancel, &QPushButton::clicked, this, &FParameters::closePanel);
    connect(&m_main.batch, &Batch::runningChanged, this, [this] {
        // A batch may write, and an unfinished reading would stand in its way.
        stopLoading();
        enableControls();
    });
    for (const auto& [key, step] : {std::pair(Qt::Key_PageDown, 1), std::pair(Qt::Key_PageUp, -1)})
        connect(new QShortcut(QKeySequence(Qt::CTRL | key), this), &QShortcut::activated, this,
                [this, step = step] { goToTab(m_strip->currentIndex() + step); });
    for (int column = 0; column < sortKeys; ++column)
        connect(new QShortcut(QKeySequence(Qt::CTRL | (Qt::Key_1 + column)), this), &QShortcut::activated,
                this, [this, column] {
                    if (!editing() && column < m_table.columns.size())
                        m_list->sortBy(column);
                });
}

void FParameters::selectFirstTab()
{
    if (editing())
        return;
    if (m_strip->currentIndex() == 0 && m_table.name.isEmpty())
        reportFailures(m_main, [this] { chooseTab(); });
    m_strip->setCurrentIndex(0);
}

void FParameters::chooseTab()
{
    // First of all: whatever fails below, nothing of the table before may stay.
    m_error->hide();
    m_access = Access::False;
    const TableTab tab = m_tabs[m_strip->currentIndex()];
    m_table = {tab.table, {}, {}};
    m_list->setTable(m_table);
    showCount();
    clearFilters();
    setWindowTitle("Configuration - "_L1 + tab.caption);
    arrange();
    enableControls();
    askPassword();
    FormList();
}

void FParameters::askPassword()
{
    const TablePasswords passwords = passwordsOf(m_main, m_table.name);
    QString entry;
    if (passwords.first)
        entry = m_main.prompts
                    .askPassword(m_main.textOr(u"PASSWORD_REQUIRED"_s, u"Password Required"_s),
                                 m_main.textOr(u"PASSWORD"_s, u"Password"_s))
                    .value_or(QString());
    m_access = accessFor(passwords, entry);
    if (m_access == Access::False)
        showError(m_main.messageLine(u"M100"_s));
}

void FParameters::FormList(const QList<KeyFilter>& chosen)
{
    // Everything that can fail, before anything changes.
    const TableDescription table = describeTable(m_main, m_table.name);
    QList<QStringList> values;
    for (const QString& key : table.keys)
        values << distinctValues(m_main, table.name, key);

    m_table = table;
    m_list->setTable(m_table);
    clearFilters();
    m_filters->show(m_table, values, chosen);
    arrange();
    enableControls();
    RempList();
}

void FParameters::clearFilters()
{
    // The focus would go with them.
    if (m_filters->isAncestorOf(focusWidget()))
        m_list->setFocus();
    m_filters->clear();
}

void FParameters::RempList()
{
    if (m_access == Access::False)
        return;
    const QList<KeyFilter> filters = m_filters->filters();
    const auto broken = std::find_if(filters.begin(), filters.end(), [](const KeyFilter& filter) {
        return filter.index != 0 && filter.text.contains(u'\'');
    });
    const QString statement = listStatement(m_table, filters, m_access);
    if (broken == filters.end()) {
        m_list->load(statement);
        return;
    }
    // Its statement would fail, or list other records than those that were asked for.
    m_list->clear();
    m_main.sqlText = statement;
    m_main.showMessage(u"M234"_s, m_filters->caption(broken->column));
}

void FParameters::edit(RecordMode mode)
{
    const int row = m_list->selectedRow();
    if (editing() || (mode != RecordMode::Insert && row < 0))
        return;
    m_error->hide();
    m_list->selectNothingLater();
    m_editedRow = m_list->currentIndex();
    const QHash<RecordMode, QString> captions = {{RecordMode::Insert, u"OK_INS"_s},
                                                 {RecordMode::Update, u"OK_UPD"_s},
                                                 {RecordMode::Delete, u"OK_DEL"_s}};
    m_ok->setText(m_main.messageLine(captions[mode]));
    m_form.emplace(mode, m_table, pickListStatements(m_main, m_table),
                   mode == RecordMode::Insert ? QStringList() : m_list->records().record(row), pickLists());
    m_ok->show();
    m_cancel->show();
    m_panel->show(*m_form);
    arrange();
    if (mode == RecordMode::Delete || !m_panel->focusFirstField())
        m_ok->setFocus();
    if (row >= 0)
        m_list->scrollTo(m_list->currentIndex());
}

/// Reads the pick lists of one panel. One that fails is filled anew with every letter, and reported once.
RecordForm::Fill FParameters::pickLists()
{
    return
        [this, failed = QStringList()](const QString& statement, const QList<RecordField>& fields) mutable {
            try {
                return pickListEntries(m_main, substitutePlaceholders(statement, fields));
            } catch (const DatabaseError& error) {
                if (!failed.contains(statement) || error.reason() == DatabaseError::Reason::ConnectionLost)
                    reportFailures(m_main, [] { throw; });
                failed << statement;
                return QStringList();
            }
        };
}

void FParameters::write()
{
    if (!editing() || !m_ok->isEnabled())
        return;
    // An engine may refuse to write while a reading that began before another user's writing goes on.
    const bool wasLoading = stopLoading();
    const QString failure = writeRecord(m_main, *m_form);
    if (failure.isEmpty()) {
        finishWriting(RecordForm(*m_form), wasLoading);
        return;
    }
    // What was typed stays, to be put right or copied. A deletion has nothing to put right.
    if (m_form->mode() == RecordMode::Delete)
        closePanel();
    showError(failure);
}

/// `written` is a copy: the panel's own form goes with the panel.
void FParameters::finishWriting(const RecordForm& written, bool reload)
{
    const int row = m_editedRow.row();
    const RecordMode mode = written.mode();
    const QStringList values = written.values();
    closePanel();
    if (mode == RecordMode::Insert) {
        m_filters->offer(values);
        tellIfHidden(values);
    }
    if (mode == RecordMode::Insert || reload) {
        RempList();
        m_list->selectRecord(values);
    } else if (mode == RecordMode::Delete) {
        m_list->records().removeRows(row, 1);
    } else if (written.changed()) {
        m_list->updateRecord(row, storedRecord(m_main, written).value_or(values));
    }
    showCount();
}

/// Filters don't hide a new record, since they have been given up; the rule about system rows may.
void FParameters::tellIfHidden(const QStringList& values)
{
    if (!listsRecord(m_table, values, m_access))
        showError(m_main.messageLine(m_access == Access::Admin ? u"M233"_s : u"M232"_s, u"$$"_s));
}

/// Whether nothing would be lost, or the user does not mind.
bool FParameters::mayDiscard()
{
    const bool unsaved = editing() && m_form->mode() != RecordMode::Delete && m_form->changed();
    return !unsaved || m_main.prompts.askYesNo(m_discardQuestion, windowTitle());
}

void FParameters::closePanel()
{
    m_panel->clear();
    m_form.reset();
    m_ok->hide();
    m_cancel->hide();
    m_error->hide();
    arrange();
    enableControls();
    m_list->setFocus();
}

void FParameters::closeEvent(QCloseEvent* event)
{
    event->setAccepted(mayDiscard());
}

void FParameters::keyPressEvent(QKeyEvent* event)
{
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && editing() && m_panel->isAncestorOf(focusWidget()))
        enterPressed(event->modifiers().testFlag(Qt::ControlModifier));
    else if (event->key() == Qt::Key_Escape && m_list->isLoading())
        stopLoading();
    else if (event->key() == Qt::Key_Escape && editing())
        closePanel();
    else if (event->key() == Qt::Key_F5 && !editing())
        reportFailures(m_main, [this] { refresh(); });
    else
        QWidget::keyPressEvent(event);
}

/// A new record is gone through to its last field, so that none is left out by mistake.
void FParameters::enterPressed(bool atOnce)
{
    const bool goOn = m_form->mode() == RecordMode::Insert && !atOnce;
    if (!goOn || !m_panel->focusNextField())
        m_ok->click();
}

void FParameters::refresh()
{
    if (!isOpen()) {
        chooseTab();
        return;
    }
    FormList(m_filters->filters());
}

void FParameters::goToTab(int tab)
{
    if (!editing() && tab >= 0 && tab < m_strip->count())
        m_strip->setCurrentIndex(tab);
}

/// Whether something was still being read.
bool FParameters::stopLoading()
{
    if (!m_list->isLoading())
        return false;
    m_list->stopLoading();
    showCount();
    return true;
}

bool FParameters::eventFilter(QObject* watched, QEvent* event)
{
    // Turning the wheel over the tabs must not choose another table by accident.
    if (event->type() == QEvent::Wheel)
        return true;
    return QWidget::eventFilter(watched, event);
}

void FParameters::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    arrange();
}

void FParameters::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    arrange();
}

void FParameters::arrange()
{
    setMinimumSize(leastEditorSize(logicalDpiX()));
    const auto* frame = qobject_cast<const QMdiSubWindow*>(parentWidget());
    const int frameHeight = (frame ? frame->height() : frameGeometry().height()) - height();
    const QSize button = m_ok->sizeHint().expandedTo(m_cancel->sizeHint());
    const EditorLayout at = layOutEditor({
        .inside = size(),
        .frame = std::max(0, frameHeight),
        .dotsPerInch = logicalDpiX(),
        .topRow = m_topRow->sizeHint().height(),
        .tabRow = m_strip->sizeHint().height(),
        .label = m_error->fontMetrics().height(),
        .row = m_rowHeight,
        .ok = button,
        .cancel = button,
        .filters = m_filters->count(),
        .fields = editing() ? static_cast<int>(m_form->fields().size()) : 0,
    });

    m_topRow->setGeometry(at.topRow);
    m_strip->setGeometry(at.strip.left(), at.strip.top(), at.strip.width(), m_strip->sizeHint().height());
    m_pane->setGeometry(at.frame);
    m_list->setGeometry(at.list.translated(-at.frame.topLeft()));
    m_filters->setGeometry(0, 0, at.frame.width(), m_filters->count() * at.fieldStep);
    m_filters->setRowHeights(at.fieldStep, m_rowHeight, fromTwips(filterWidth, logicalDpiX()));
    m_panel->setGeometry(at.panel);
    m_panel->setRowHeights(at.fieldStep, m_rowHeight);
    m_ok->setGeometry(at.ok);
    m_cancel->setGeometry(at.cancel);
    m_error->setGeometry(at.errorLine);
    SortTabFields();
}

/// Lets the Tab key follow the positions: from top to bottom, and in a row from left to right.
void FParameters::SortTabFields()
{
    QList<QWidget*> controls = findChildren<QWidget*>();
    controls.removeIf([this](const QWidget* control) {
        return !control->isVisibleTo(this) || !(control->focusPolicy() & Qt::TabFocus);
    });
    const auto position = [this](const QWidget* control) {
        // In a very low window list and fields lie out of sight, where their tops say nothing.
        const int zone = m_panel->isAncestorOf(control) ? 1 : control == m_ok || control == m_cancel ? 2 : 0;
        const QPoint at = control->mapTo(this, QPoint(0, 0));
        return std::tuple(zone, at.y(), at.x());
    };
    std::stable_sort(controls.begin(), controls.end(), [&position](const QWidget* one, const QWidget* other) {
        return position(one) < position(other);
    });
    for (qsizetype place = 1; place < controls.size(); ++place)
        setTabOrder(controls[place - 1], controls[place]);
}

void FParameters::enableControls()
{
    const bool free = !editing() && isOpen() && !m_main.batch.running();
    const bool onRecord = m_list->selectedRow() >= 0;
    m_new->setEnabled(free);
    m_edit->setEnabled(free && onRecord);
    m_delete->setEnabled(free && onRecord);
    m_strip->setEnabled(!editing());
    m_filters->setEnabled(!editing());
    m_list->setEnabled(!editing() || m_form->mode() == RecordMode::Insert);
    // A batch may be in the middle of a transaction, which the record must not become part of.
    m_ok->setEnabled(editing() && m_form->complete() && !m_main.batch.running());
}

void FParameters::showCount()
{
    if (!isOpen()) {
        m_count->clear();
        return;
    }
    const QString number = QLocale(m_main.language.toLower()).toString(m_list->records().rowCount());
    const QString& text = m_list->isLoading()    ? m_loadingText
                          : m_list->wasStopped() ? m_stoppedText
                                                 : m_countText;
    m_count->setText(QString(text).replace("$$"_L1, number));
}

/// The error line is one line high: a longer text is cut there and stands whole in the tool tip.
void FParameters::showError(const QString& text)
{
    m_error->setToolTip(text);
    m_error->setText(QString(text).replace(u'\n', u' '));
    m_error->show();
}

} // namespace velmora

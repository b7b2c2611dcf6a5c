#include "editor/window/FParameters.h"

#include "common/MMain.h"
#include "editor/panel/record_opening.h"
#include "editor/record/record_proposal.h"
#include "editor/record/record_writing.h"
#include "editor/window/editor_layout.h"
#include "windows/captions.h"
#include "windows/failure_report.h"
#include "windows/wait_cursor.h"

#include <QClipboard>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QShortcut>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// How many columns can be sorted by from the keyboard: Ctrl+1 to Ctrl+9.
constexpr int sortKeys = 9;

} // namespace

FParameters::FParameters(MMain& main, QWidget* parent)
    : QWidget(parent),
      m_main(main),
      m_ui(main, *this),
      m_showStatus(new QAction(main.textOr(u"FPARAMETERS_SHOWSTATUS"_s, u"Show status"_s), this))
{
    setObjectName(u"FParameters"_s);
    setWindowTitle(u"Velmora Configuration"_s);
    translate();
    connectTable();
    connectRecord();
    connectTransfer();
    connectKeys();
    closePanel();
}

QSize FParameters::sizeHint() const
{
    return usualEditorSize(logicalDpiX());
}

void FParameters::translate()
{
    const QString title = m_main.GetDescription(u"FPARAMETERS"_s);
    translateCaptions(m_main, *this);
    if (!title.isEmpty())
        setWindowTitle(title + " - "_L1 + m_main.userName);
    m_discardQuestion = m_main.messageLine(u"M212"_s, u"$$"_s);
}

void FParameters::connectTable()
{
    connect(m_ui.strip, &QTabBar::currentChanged, this,
            [this] { reportFailures(m_main, [this] { chooseTab(); }); });
    // A click on a tab that could not be opened tries again: another password.
    connect(m_ui.strip, &QTabBar::tabBarClicked, this, [this](int tab) {
        if (tab == m_ui.strip->currentIndex() && !m_ui.pane->isOpen())
            reportFailures(m_main, [this] { chooseTab(); });
    });
    connect(m_ui.pane, &TablePane::tableChanged, this, [this] {
        arrange();
        enableControls();
    });
    connect(m_ui.list, &RecordView::loaded, this, &FParameters::enableControls);
    connect(m_ui.find, &QLineEdit::textChanged, m_ui.list, &RecordView::search);
    connect(m_ui.find, &FindBox::left, m_ui.list, [this] { m_ui.list->takeFocus(); });
    connect(&m_ui.pane->filters(), &FilterPanel::chosen, m_ui.error, &QWidget::hide);
    connect(m_ui.list->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &FParameters::enableControls);
    connect(&m_main.batch, &Batch::runningChanged, this, [this] {
        // A batch may write, and an unfinished reading would stand in its way.
        m_ui.list->stopLoading();
        enableControls();
    });
}

void FParameters::connectRecord()
{
    connect(m_ui.actions, &RecordActions::chosen, this,
            [this](RecordAction action) { reportFailures(m_main, [this, action] { carryOut(action); }); });
    connect(m_ui.list, &QWidget::customContextMenuRequested, this, [this](const QPoint& position) {
        if (!editing())
            m_ui.actions->popup(position);
    });
    m_showStatus->setShortcut(Qt::CTRL | Qt::Key_I);
    m_showStatus->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    addAction(m_showStatus);
    m_ui.actions->addToPopup(m_showStatus);
    connect(m_showStatus, &QAction::triggered, this, &FParameters::askForStatus);
    connect(m_ui.panel, &RecordPanel::changed, this, &FParameters::enableControls);
    connect(m_ui.ok, &QPushButton::clicked, this,
            [this] { reportFailures(m_main, [this] { write(false); }); });
    connect(m_ui.goOn, &QPushButton::clicked, this,
            [this] { reportFailures(m_main, [this] { write(true); }); });
    connect(m_ui.cancel, &QPushButton::clicked, this, &FParameters::closePanel);
}

void FParameters::connectTransfer()
{
    connect(m_ui.transfer, &TransferActions::told, m_ui.error, &ErrorLine::tell);
    connect(m_ui.transfer, &TransferActions::written, this,
            [this] { reportFailures(m_main, [this] { refresh(); }); });
}

void FParameters::connectKeys()
{
    const auto onKey = [this](int key, const auto& handler) {
        connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key(key)), this), &QShortcut::activated, this,
                handler);
    };
    onKey(Qt::Key_F, [this] {
        if (m_ui.find->isEnabled())
            m_ui.find->begin();
    });
    onKey(Qt::Key_PageDown, [this] { goToTab(m_ui.strip->currentIndex() + 1); });
    onKey(Qt::Key_PageUp, [this] { goToTab(m_ui.strip->currentIndex() - 1); });
    for (int column = 0; column < sortKeys; ++column)
        onKey(Qt::Key_1 + column, [this, column] {
            if (!editing())
                m_ui.pane->sortBy(column);
        });
}

void FParameters::selectFirstTab()
{
    if (editing())
        return;
    if (m_ui.strip->currentIndex() == 0 && m_ui.pane->table().name.isEmpty())
        reportFailures(m_main, [this] { chooseTab(); });
    m_ui.strip->setCurrentIndex(0);
}

void FParameters::showRecord(const QString& table, const QHash<QString, QString>& key)
{
    const int tab = m_ui.strip->tabOf(table);
    if (editing() || tab < 0)
        return;
    m_ui.strip->setCurrentIndex(tab);
    if (!m_ui.pane->isOpen())
        return;
    QStringList values;
    for (const TableColumn& column : m_ui.pane->table().columns)
        values << key.value(column.name);
    // The neighbours stay: the other parameters of the model or phone.
    QList<KeyFilter> filters;
    for (const QString& column : m_ui.pane->table().keys)
        filters << (column == "PA_CODE"_L1 ? KeyFilter() : KeyFilter{column, -1, key.value(column)});
    reportFailures(m_main, [&] {
        m_ui.pane->FormList(filters);
        m_ui.list->selectRecord(values);
    });
    m_ui.list->setFocus();
}

/// Of the selected phone.
void FParameters::askForStatus()
{
    const TableDescription& table = m_ui.pane->table();
    const QStringList values = m_ui.list->selectedRecord();
    if (table.name != "PHONES"_L1 || values.isEmpty())
        return;
    const auto valueOf = [&](QLatin1StringView column) {
        for (qsizetype place = 0; place < table.columns.size(); ++place)
            if (table.columns[place].name == column)
                return values.value(place);
        return QString();
    };
    Q_EMIT statusWanted(valueOf("CO_CODE"_L1), valueOf("PH_CODE"_L1));
}

void FParameters::chooseTab()
{
    const WaitCursor waiting;
    m_ui.error->hide();
    m_ui.find->clear();
    const TableTab& tab = m_ui.strip->currentTab();
    setWindowTitle("Configuration - "_L1 + tab.caption);
    m_ui.list->setAccessibleName(tab.caption);
    // Before anything is asked: whatever fails below, nothing of the table before may stay.
    m_ui.pane->setTable(tab.table);
    if (!m_ui.pane->askPassword())
        m_ui.error->tell(m_main.messageLine(u"M100"_s));
    m_ui.pane->FormList();
}

void FParameters::refresh()
{
    const WaitCursor waiting;
    if (m_ui.pane->isOpen()) {
        m_ui.error->hide();
        m_ui.pane->refresh();
    } else {
        chooseTab();
    }
}

void FParameters::goToTab(int tab)
{
    if (!editing() && tab >= 0 && tab < m_ui.strip->count())
        m_ui.strip->setCurrentIndex(tab);
}

void FParameters::carryOut(RecordAction action)
{
    if (editing())
        return;
    m_ui.error->hide();
    m_ui.list->selectNothingLater();
    switch (action) {
    case RecordAction::New:
    case RecordAction::Duplicate:
        enter(m_ui.list->selectedRecord(), action == RecordAction::Duplicate);
        break;
    case RecordAction::Edit:
        edit(RecordMode::Update);
        break;
    case RecordAction::Delete:
        if (m_ui.list->selectedCount() > 1)
            changeMany(FManyRecords::Kind::Delete);
        else
            edit(RecordMode::Delete);
        break;
    case RecordAction::SetColumn:
        changeMany(FManyRecords::Kind::SetColumn);
        break;
    case RecordAction::Copy:
        copy();
        break;
    case RecordAction::Paste:
        m_ui.transfer->importPasted(QGuiApplication::clipboard()->text());
        break;
    }
}

/// Changes or deletes the selected record.
void FParameters::edit(RecordMode mode)
{
    if (m_ui.list->selectedRow() < 0)
        return;
    const WaitCursor waiting;
    m_editedRow = m_ui.list->records().index(m_ui.list->selectedRow(), m_ui.list->currentIndex().column());
    openPanel(openRecord(m_main, mode, m_ui.pane->table(), m_ui.list->selectedRecord()),
              m_editedRow.column());
}

/// Opens the window that deletes the selected records or gives all of them one value.
void FParameters::changeMany(FManyRecords::Kind kind)
{
    auto* window = new FManyRecords(m_main, m_ui.pane->table(), m_ui.list->selectedRecords(), kind,
                                    m_ui.list->currentIndex().column(), this);
    // An engine may refuse to write while a reading goes on.
    connect(window, &FManyRecords::writing, m_ui.list, &RecordView::stopLoading);
    connect(window, &FManyRecords::written, this, [this](const QString& summary) {
        reportFailures(m_main, [this] { refresh(); });
        m_ui.error->tell(summary);
    });
    window->open();
}

void FParameters::copy() const
{
    QGuiApplication::clipboard()->setText(tabbedText(m_ui.pane->table(), m_ui.list->selectedRecords()));
}

/// Opens a new record, beginning with the key of that one or, in a duplicate, with all of it.
void FParameters::enter(const QStringList& record, bool all)
{
    const WaitCursor waiting;
    m_duplicating = all;
    const TableDescription& table = m_ui.pane->table();
    RecordForm form = openRecord(m_main, RecordMode::Insert, table, {});
    const RecordProposal proposal = proposalFrom(table, m_ui.pane->filters().filters(), record, all);
    const qsizetype field = propose(m_main, form, proposal);
    openPanel(std::move(form), static_cast<int>(field));
}

/// Shows the form, and moves the focus to that field of it.
void FParameters::openPanel(RecordForm form, int field)
{
    const RecordMode mode = form.mode();
    m_ui.ok->setText(writeCaption(m_main, mode));
    m_ui.panel->show(std::move(form));
    m_ui.ok->show();
    m_ui.cancel->show();
    m_ui.goOn->setVisible(mode == RecordMode::Insert);
    arrange();
    if (mode == RecordMode::Delete || !m_ui.panel->focusField(field))
        m_ui.ok->setFocus();
    if (m_ui.list->selectedRow() >= 0)
        m_ui.list->scrollTo(m_ui.list->currentIndex());
}

/// Writes the record, and goes on with another new one after it.
void FParameters::write(bool goOn)
{
    if (!editing() || !m_ui.ok->isEnabled())
        return;
    // The panel's own form goes with the panel.
    const RecordForm form = *m_ui.panel->form();
    // An engine may refuse to write while a reading that began before another user's writing goes on.
    const bool wasLoading = m_ui.list->stopLoading();
    const WaitCursor waiting;
    const QString failure = writeRecord(m_main, form);
    if (failure.isEmpty()) {
        finishWriting(form, wasLoading);
        if (goOn)
            enter(form.values(), m_duplicating);
        return;
    }
    // What was typed stays, to be put right or copied. A deletion has nothing to put right.
    if (form.mode() == RecordMode::Delete)
        closePanel();
    m_ui.error->tell(failure);
}

void FParameters::finishWriting(const RecordForm& written, bool reload)
{
    closePanel();
    if (written.mode() == RecordMode::Insert) {
        tellIfHidden(written.values());
        if (!m_ui.list->records().finds(written.values()))
            m_ui.find->clear();
    }
    m_ui.pane->showWritten(written, m_editedRow.row(), reload);
}

/// Filters don't hide a new record, since they are given up; the rule about system rows may.
void FParameters::tellIfHidden(const QStringList& values)
{
    const Access access = m_ui.pane->access();
    if (!listsRecord(m_ui.pane->table(), values, access))
        m_ui.error->tell(m_main.messageLine(access == Access::Admin ? u"M233"_s : u"M232"_s, u"$$"_s));
}

void FParameters::closePanel()
{
    m_ui.panel->clear();
    m_ui.ok->hide();
    m_ui.cancel->hide();
    m_ui.goOn->hide();
    m_ui.error->hide();
    arrange();
    enableControls();
    m_ui.list->setFocus();
}

/// Escape is pressed by mistake more easily than Cancel.
void FParameters::giveUp()
{
    if (mayDiscard())
        closePanel();
}

/// Whether nothing would be lost, or the user does not mind.
bool FParameters::mayDiscard()
{
    const auto& form = m_ui.panel->form();
    const bool unsaved = form && form->mode() != RecordMode::Delete && form->changed();
    return !unsaved || m_main.prompts.askYesNo(m_discardQuestion, windowTitle());
}

void FParameters::closeEvent(QCloseEvent* event)
{
    event->setAccepted(mayDiscard());
}

void FParameters::keyPressEvent(QKeyEvent* event)
{
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && editing() && m_ui.panel->isAncestorOf(focusWidget()))
        enterPressed(*event);
    else if (event->key() == Qt::Key_Escape && m_ui.list->isLoading())
        m_ui.list->stopLoading();
    else if (event->key() == Qt::Key_Escape && editing())
        giveUp();
    else if (event->key() == Qt::Key_Escape && !m_ui.find->text().isEmpty())
        m_ui.find->clear();
    else if (event->key() == Qt::Key_F5 && !editing())
        reportFailures(m_main, [this] { refresh(); });
    else
        QWidget::keyPressEvent(event);
}

/// A new record is gone through to its last field, so that none is left out by mistake.
void FParameters::enterPressed(const QKeyEvent& event)
{
    // Held down, it would add one record after the other.
    if (event.isAutoRepeat())
        return;
    const bool atOnce = event.modifiers().testFlag(Qt::ControlModifier);
    const bool isNew = m_ui.panel->form()->mode() == RecordMode::Insert;
    if (isNew && atOnce)
        m_ui.goOn->click();
    else if (!isNew || !m_ui.panel->focusNextField())
        m_ui.ok->click();
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
    m_ui.arrange();
}

void FParameters::enableControls()
{
    const bool running = m_main.batch.running();
    const auto& form = m_ui.panel->form();
    m_ui.actions->allow(!form && m_ui.pane->isOpen() && !running, m_ui.list->selectedCount(),
                        mayBeSet(m_ui.pane->table().name));
    m_showStatus->setEnabled(!form && !running && m_ui.pane->table().name == "PHONES"_L1 &&
                             m_ui.list->selectedCount() == 1);
    m_ui.transfer->allow(!form && m_ui.pane->isOpen() && !running);
    m_ui.strip->setEnabled(!form);
    m_ui.pane->filters().setEnabled(!form);
    m_ui.find->setEnabled(!form && m_ui.pane->isOpen());
    m_ui.list->setEnabled(!form || form->mode() == RecordMode::Insert);
    // A batch may be in the middle of a transaction, which the record must not become part of.
    m_ui.ok->setEnabled(form && form->complete() && !running);
    m_ui.goOn->setEnabled(m_ui.ok->isEnabled());
}

} // namespace velmora

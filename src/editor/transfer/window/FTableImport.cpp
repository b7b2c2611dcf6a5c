#include "editor/transfer/window/FTableImport.h"

#include "common/MMain.h"
#include "common/texts/schema_captions.h"
#include "windows/captions.h"
#include "windows/failure_report.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScopeGuard>
#include <QShortcut>
#include <QTimer>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// How long window events wait at most, in milliseconds.
constexpr qint64 eventInterval = 30;

QLabel* createText(const QString& name)
{
    auto* text = new QLabel;
    text->setObjectName(name);
    text->setTextFormat(Qt::PlainText);
    text->setWordWrap(true);
    text->hide();
    return text;
}

void tell(QLabel* label, const QString& text)
{
    label->setText(text);
    label->setVisible(!text.isEmpty());
}

} // namespace

FTableImport::FTableImport(MMain& main, OpenTable table, TableFile file, const QString& source,
                           QWidget* parent)
    : QDialog(parent),
      m_main(main),
      m_table(std::move(table)),
      m_file(std::move(file)),
      m_texts(main, {}),
      m_lines(new VerdictModel(main, m_table.description, this))
{
    setObjectName(u"FTableImport"_s);
    setWindowTitle(u"Import"_s);
    createControls(source);
    placeControls();
    translateCaptions(main, *this);
    setWindowTitle(windowTitle() + " - "_L1 + tableCaption(main, m_table.description.name));
    m_stopCaption = main.textOr(u"CANCEL_ABO"_s, u"Stop"_s);
    m_cancelCaption = m_cancel->text();
    m_closeCaption = main.textOr(u"CANCEL_END"_s, u"Close"_s);
    m_nothingText = main.messageLine(u"M337"_s);
    connect(m_write, &QPushButton::clicked, this, &FTableImport::write);
    connect(m_cancel, &QPushButton::clicked, this, &FTableImport::reject);
    connect(m_onlyRefused, &QCheckBox::toggled, m_lines, &VerdictModel::showOnlyRefused);
    connect(m_skipRefused, &QCheckBox::toggled, this, [this] {
        askForSkipping();
        enableControls();
    });
    connect(m_addRanges, &QCheckBox::toggled, this, &FTableImport::check);
    connect(&main.batch, &Batch::stopRequested, this, [this] { m_stopped = true; });
    enableControls();
    resize(sizeHint());
}

void FTableImport::createControls(const QString& source)
{
    m_source = createText(u"Source"_s);
    tell(m_source, source);
    m_further = createText(u"Further"_s);
    tell(m_further, m_texts.furtherColumns(m_file));
    m_list = createList();
    m_onlyRefused = new QCheckBox(u"Only Refused"_s);
    m_onlyRefused->setObjectName(u"OnlyRefused"_s);
    m_skipRefused = new QCheckBox(u"Skip Refused"_s);
    m_skipRefused->setObjectName(u"SkipRefused"_s);
    m_addRanges = new QCheckBox(u"Add missing codes to the ranges"_s);
    m_addRanges->setObjectName(u"AddRanges"_s);
    m_addRanges->setVisible(m_table.description.name == "PHONES"_L1 && mayAddRanges(m_main));
    m_counts = createText(u"Counts"_s);
    m_status = createText(u"Status"_s);
    m_progress = new QProgressBar;
    m_progress->setObjectName(u"Progress"_s);
    m_progress->setAccessibleName(m_main.textOr(u"BATCH_PROGRESS"_s, u"Progress"_s));
    m_progress->setFormat(u"%p %"_s);
    QSizePolicy keptPlace = m_progress->sizePolicy();
    keptPlace.setRetainSizeWhenHidden(true);
    m_progress->setSizePolicy(keptPlace);
    m_write = new QPushButton(u"Write"_s);
    m_write->setObjectName(u"Write"_s);
    m_write->setDefault(true);
    m_cancel = new QPushButton(u"Cancel"_s);
    m_cancel->setObjectName(u"Cancel"_s);
}

QTreeView* FTableImport::createList()
{
    auto* list = new QTreeView;
    list->setObjectName(u"Verdicts"_s);
    list->setModel(m_lines);
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setAllColumnsShowFocus(true);
    list->setAlternatingRowColors(true);
    list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    list->setIconSize({fontMetrics().height(), fontMetrics().height()});
    list->setAccessibleName(m_main.textOr(u"IMPORT_VERDICT"_s, u"Verdict"_s));
    list->header()->setResizeContentsPrecision(200);
    connect(new QShortcut(QKeySequence::Copy, list, nullptr, nullptr, Qt::WidgetShortcut),
            &QShortcut::activated, this, &FTableImport::copyLines);
    return list;
}

void FTableImport::placeControls()
{
    auto* boxes = new QHBoxLayout;
    boxes->addWidget(m_counts, 1);
    boxes->addWidget(m_onlyRefused);
    boxes->addWidget(m_skipRefused);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_progress, 1);
    buttons->addWidget(m_write);
    buttons->addWidget(m_cancel);
    auto* layout = new QVBoxLayout(this);
    for (QLabel* text : {m_source, m_further})
        layout->addWidget(text);
    layout->addWidget(m_addRanges);
    layout->addWidget(m_list, 1);
    layout->addLayout(boxes);
    layout->addWidget(m_status);
    layout->addLayout(buttons);
}

/// Does something long, during which window events run and `Cancel` stops it.
void FTableImport::run(const std::function<void(const TransferProgress& progress)>& work)
{
    m_running = true;
    m_stopped = false;
    tell(m_status, {});
    enableControls();
    const auto finish = qScopeGuard([this] {
        m_running = false;
        enableControls();
    });
    const Batch::Run batch(m_main.batch);
    QElapsedTimer sinceEvents;
    sinceEvents.start();
    reportFailures(m_main, [&] {
        work([&](qsizetype done, qsizetype total) {
            if (sinceEvents.elapsed() >= eventInterval) {
                m_progress->setRange(0, static_cast<int>(total));
                m_progress->setValue(static_cast<int>(done));
                m_main.prompts.letEventsRun();
                sinceEvents.restart();
            }
            return !m_stopped;
        });
    });
}

void FTableImport::check()
{
    if (m_running || m_written)
        return;
    const bool first = m_lines->lines().empty();
    bool complete = false;
    run([&](const TransferProgress& progress) {
        auto lines = checkLines(m_main, m_table, m_file, m_addRanges->isChecked(), progress);
        complete = lines.has_value();
        show(std::move(lines).value_or(CheckedLines()));
    });
    if (!complete)
        return reject();
    askForSkipping();
    if (!first)
        m_addRanges->setFocus();
    else if (m_onlyRefused->isEnabled())
        m_onlyRefused->setFocus();
    else
        (m_write->isEnabled() ? m_write : m_cancel)->setFocus();
}

void FTableImport::write()
{
    bool ended = false;
    run([&](const TransferProgress& progress) {
        const CheckedLines shown = m_lines->lines();
        const ImportOptions options{m_skipRefused->isChecked(), m_addRanges->isChecked()};
        showEnd(importLines(m_main, m_table, m_file, options, progress, shown));
        ended = true;
    });
    if (!ended)
        tell(m_status, m_nothingText);
    if (m_written)
        Q_EMIT written();
}

void FTableImport::showEnd(const std::optional<TableImport>& end)
{
    if (!end) {
        tell(m_status, m_main.messageLine(u"M219"_s));
        return;
    }
    m_written = end->written;
    show(end->lines);
    if (end->written)
        tell(m_status, m_main.messageLine(u"M310"_s, m_counts->text()));
    else if (m_skipRefused->isChecked() || count(end->lines, Verdict::Refused) == 0)
        tell(m_status, m_main.messageLine(u"M339"_s));
    else
        tell(m_status, m_nothingText);
}

/// Says what keeps `Write` grey.
void FTableImport::askForSkipping()
{
    const qsizetype refused = count(m_lines->lines(), Verdict::Refused);
    const bool keepsAll = refused > 0 && !m_skipRefused->isChecked();
    tell(m_status, keepsAll ? m_main.messageLine(u"M338"_s, QString::number(refused)) : QString());
}

void FTableImport::show(CheckedLines lines)
{
    m_lines->reset(std::move(lines));
    tell(m_counts, m_texts.counts(m_lines->lines()));
    for (int column = 0; column < m_lines->columnCount(); ++column)
        m_list->resizeColumnToContents(column);
}

void FTableImport::enableControls()
{
    const CheckedLines& lines = m_lines->lines();
    const bool anything = count(lines, Verdict::New) + count(lines, Verdict::Changed) > 0;
    const bool anyRefused = count(lines, Verdict::Refused) > 0;
    const bool open = !m_running && !m_written;
    m_write->setEnabled(open && anything && (!anyRefused || m_skipRefused->isChecked()));
    m_addRanges->setEnabled(open);
    m_skipRefused->setEnabled(open && anyRefused && anything);
    m_onlyRefused->setEnabled(anyRefused || m_onlyRefused->isChecked());
    m_progress->setVisible(m_running);
    m_cancel->setText(m_running ? m_stopCaption : m_written ? m_closeCaption : m_cancelCaption);
    if (m_written)
        m_cancel->setFocus();
}

void FTableImport::reject()
{
    if (m_running)
        m_stopped = true;
    else
        QDialog::reject();
}

void FTableImport::keyPressEvent(QKeyEvent* event)
{
    // A Return that is pressed too long must not write what it has opened.
    if (!event->isAutoRepeat())
        QDialog::keyPressEvent(event);
}

/// The selected lines, for whoever has made the file.
void FTableImport::copyLines() const
{
    QString text;
    for (const QModelIndex& row : m_list->selectionModel()->selectedRows()) {
        QStringList cells;
        for (int column = 0; column < m_lines->columnCount(); ++column)
            cells << row.siblingAtColumn(column).data().toString();
        text += cells.join(u'\t') + u'\n';
    }
    QGuiApplication::clipboard()->setText(text);
}

FTableImport* openImport(MMain& main, const OpenTable& table, const QByteArray& text, const QString& source,
                         QWidget* parent)
{
    try {
        auto* window = new FTableImport(main, table, readTableFile(text, table.description), source, parent);
        window->setAttribute(Qt::WA_DeleteOnClose);
        window->open();
        // Once it is shown, and whoever has opened it knows it.
        QTimer::singleShot(0, window, &FTableImport::check);
        return window;
    } catch (const TableFileError& error) {
        main.prompts.show(source + ": "_L1 + VerdictTexts(main, {}).text(error.why()), {});
        return nullptr;
    }
}

} // namespace velmora

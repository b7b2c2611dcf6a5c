#include "status/window/FStatus.h"

#include "common/MMain.h"
#include "generation/destination.h"
#include "generation/generate.h"
#include "status/status_lines.h"
#include "windows/failure_report.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLocale>
#include <QScopeGuard>
#include <QShortcut>
#include <QSplitter>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace velmora {

FStatus::FStatus(MMain& main, quint16 port)
    : BatchWindow(main, u"FStatus"_s, u"Status of Phones"_s, {u"List1"_s, u"Refresh"_s, u"Refresh"_s}),
      m_selection(new SelectionPanel(main, 2)),
      m_allModels(new QCheckBox(u"All models"_s)),
      m_folder(new FolderPicker(main)),
      m_states(new QComboBox),
      m_find(new QLineEdit),
      m_count(new QLabel),
      m_table(new PhoneTable(main, this)),
      m_rows(new ChosenRows(*m_table, this)),
      m_phones(new QTreeView),
      m_pages(new PhonePages(main)),
      m_generate(new QPushButton(u"Generate"_s)),
      m_restart(new QPushButton(u"Restart"_s)),
      m_copy(new QPushButton(u"Copy"_s)),
      m_reboot(main, port, report()),
      m_copyCaption(main.textOr(u"FSTATUS_COPYROWS"_s, m_copy->text())),
      m_generateCaption(main.textOr(u"FSTATUS_GENERATEROWS"_s, m_generate->text())),
      m_restartCaption(main.textOr(u"FSTATUS_RESTARTROWS"_s, m_restart->text()))
{
    addInput(createSelection());
    addInput(m_folder);
    addInput(createFilters());
    addInput(createLists(), 4);
    for (QPushButton* button : {m_copy, m_generate, m_restart}) {
        button->setAutoDefault(true);
        addButton(button);
    }
    m_copy->setObjectName(u"CopyRows"_s);
    m_generate->setObjectName(u"GenerateRows"_s);
    m_restart->setObjectName(u"RestartRows"_s);
    connectControls();
    showLog(false);
    complete();
    m_allModels->setChecked(true); // also where a model was chosen last
    fillStates();
    rowsChosen();
    enableStart();
}

QWidget* FStatus::createSelection()
{
    m_allModels->setObjectName(u"AllModels"_s);
    m_allModels->setChecked(true);
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_selection, 1);
    layout->addWidget(m_allModels, 0, Qt::AlignBottom);
    return row;
}

QWidget* FStatus::createFilters()
{
    auto* stateLabel = new QLabel(u"State"_s);
    stateLabel->setObjectName(u"StateLab"_s);
    stateLabel->setBuddy(m_states);
    m_states->setObjectName(u"StateFilter"_s);
    m_states->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    auto* findLabel = new QLabel(u"Find"_s);
    findLabel->setObjectName(u"FindLab"_s);
    findLabel->setBuddy(m_find);
    m_find->setObjectName(u"FindText"_s);
    m_find->setClearButtonEnabled(true);
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(stateLabel);
    layout->addWidget(m_states);
    layout->addWidget(findLabel);
    layout->addWidget(m_find, 1);
    layout->addWidget(m_count);
    return row;
}

QWidget* FStatus::createLists()
{
    m_phones->setObjectName(u"Phones"_s);
    m_phones->setAccessibleName(m_main.textOr(u"FSTATUS"_s, windowTitle()));
    m_phones->setModel(m_rows);
    m_phones->setRootIsDecorated(false);
    m_phones->setAlternatingRowColors(true);
    m_phones->setUniformRowHeights(true);
    m_phones->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_phones->setSortingEnabled(true);
    m_phones->header()->setSortIndicator(-1, Qt::AscendingOrder);
    fitColumns();
    auto* splitter = new QSplitter(Qt::Vertical);
    splitter->addWidget(m_phones);
    splitter->addWidget(m_pages);
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 2);
    splitter->setChildrenCollapsible(false);
    return splitter;
}

void FStatus::connectControls()
{
    const auto guarded = [this](void (FStatus::*handler)()) {
        return [this, handler] { reportFailures(m_main, [this, handler] { (this->*handler)(); }); };
    };
    connect(m_selection, &SelectionPanel::companyChosen, this, guarded(&FStatus::companyOrModelChosen));
    connect(m_selection, &SelectionPanel::equipmentChosen, this, [this, guarded] {
        m_allModels->setChecked(false);
        guarded (&FStatus::companyOrModelChosen)();
    });
    connect(m_allModels, &QCheckBox::clicked, this, guarded(&FStatus::companyOrModelChosen));
    connect(m_folder, &FolderPicker::rememberWanted, this, guarded(&FStatus::rememberFolder));
    connect(m_states, &QComboBox::currentIndexChanged, this, [this](int entry) {
        const QVariant state = m_states->itemData(entry);
        m_rows->setState(state.isValid() ? std::optional(static_cast<FileState>(state.toInt()))
                                         : std::nullopt);
        showCounts();
    });
    connect(m_find, &QLineEdit::textChanged, this, [this](const QString& words) {
        m_rows->find(words);
        showCounts();
    });
    connect(m_phones->selectionModel(), &QItemSelectionModel::currentChanged, this,
            guarded(&FStatus::phoneChosen));
    connect(m_phones->selectionModel(), &QItemSelectionModel::selectionChanged, this, &FStatus::rowsChosen);
    connect(m_pages, &PhonePages::recordWanted, this, &FStatus::recordWanted);
    const auto starts = [this](Task task) {
        return [this, task] {
            m_task = task;
            startRun();
        };
    };
    connect(m_generate, &QPushButton::clicked, this, starts(Task::Generate));
    connect(m_restart, &QPushButton::clicked, this, starts(Task::Restart));
    connect(m_copy, &QPushButton::clicked, this, &FStatus::copyRows);
    const auto* find =
        new QShortcut(QKeySequence::Find, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
    connect(find, &QShortcut::activated, m_find, qOverload<>(&QLineEdit::setFocus));
    const auto* again =
        new QShortcut(QKeySequence::Refresh, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
    connect(again, &QShortcut::activated, this, [this] {
        if (missing().isEmpty() && !m_main.batch.running())
            startRun();
    });
    const auto* copy =
        new QShortcut(QKeySequence::Copy, m_phones, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
    connect(copy, &QShortcut::activated, this, &FStatus::copyRows);
}

/// Forgets what was shown of another company or model.
void FStatus::companyOrModelChosen()
{
    m_folder->setBrowsable(!m_selection->company().isEmpty());
    m_folder->setFolder({});
    m_table->reset({});
    fillStates();
    enableStart();
}

/// For each of the models.
void FStatus::rememberFolder()
{
    for (const GenerationRequest& request : requestsFor(m_main, choice()))
        remember(m_main, request.company + request.equipment, u"$$GENPATH"_s, m_folder->folder());
    showStatus(m_main.messageLine(u"M314"_s));
}

PhoneChoice FStatus::choice() const
{
    return {m_selection->company(), m_allModels->isChecked() ? QString() : m_selection->equipment()};
}

QString FStatus::missing() const
{
    const bool isChosen = !m_selection->company().isEmpty() &&
                          (m_allModels->isChecked() || !m_selection->equipment().isEmpty());
    return isChosen ? QString() : u"M282"_s;
}

/// Return in a list opens what is current there.
bool FStatus::startsByReturn() const
{
    const QWidget* focus = focusWidget();
    return focus != m_phones && !m_pages->isFocus(focus);
}

void FStatus::enabledChanged(bool)
{
    rowsChosen();
}

QList<GenerationRequest> FStatus::requests(const PhoneChoice& choice)
{
    QList<GenerationRequest> requests = requestsFor(m_main, choice);
    if (!m_folder->folder().isEmpty())
        for (GenerationRequest& request : requests)
            request.folder = m_folder->folder();
    return requests;
}

bool FStatus::run()
{
    const Task task = std::exchange(m_task, Task::Refresh);
    showLog(task != Task::Refresh);
    switch (task) {
    case Task::Generate:
        return generate();
    case Task::Restart:
        return restart();
    default:
        return refreshAll();
    }
}

bool FStatus::refreshAll()
{
    m_shown = choice();
    QList<PhoneStatus> statuses;
    const bool wentThrough = compare(m_shown, statuses);
    m_table->reset(statuses);
    fitColumns();
    fillStates();
    if (m_rows->rowCount() > 0)
        m_phones->setCurrentIndex(m_rows->index(0, 0));
    return wentThrough;
}

void FStatus::fitColumns()
{
    for (int column = 0; column < m_table->columnCount(); ++column)
        m_phones->resizeColumnToContents(column);
}

bool FStatus::compare(const PhoneChoice& choice, QList<PhoneStatus>& statuses)
{
    return comparePhones(
        m_main, requests(choice),
        [&statuses](const PhoneStatus& status, const QList<Difference>&) { statuses << status; },
        report().progress);
}

/// Reads anew what has become of the phones of a run.
void FStatus::refreshPhones(const QStringList& codes)
{
    PhoneChoice choice = m_shown;
    choice.codes = codes;
    QList<PhoneStatus> statuses;
    comparePhones(
        m_main, requests(choice),
        [&statuses](const PhoneStatus& status, const QList<Difference>&) { statuses << status; },
        [](qsizetype, qsizetype) {});
    m_table->update(statuses);
    fillStates();
    phoneChosen();
}

bool FStatus::generate()
{
    const QStringList codes = selectedCodes();
    const auto finish =
        qScopeGuard([this, &codes] { reportFailures(m_main, [&] { refreshPhones(codes); }); });
    PhoneChoice choice = m_shown;
    choice.codes = codes;
    bool wentThrough = true;
    for (const GenerationRequest& request : requests(choice))
        if (writerOf(m_main, request.equipment))
            wentThrough = Generate(m_main, request, report()).has_value() && wentThrough;
    return wentThrough;
}

bool FStatus::restart()
{
    const QStringList codes = selectedCodes();
    const auto finish =
        qScopeGuard([this, &codes] { reportFailures(m_main, [&] { refreshPhones(codes); }); });
    RebootRequest request;
    request.company = m_shown.company;
    request.phoneFrom = *std::min_element(codes.begin(), codes.end());
    request.phoneTo = *std::max_element(codes.begin(), codes.end());
    request.codes = codes;
    const RebootCounts counts = m_reboot.run(request);
    showStatus(summaryOf(m_main, counts));
    return counts.visited == counts.phones;
}

void FStatus::stop()
{
    m_main.stopFlag = true;
    m_reboot.abort();
}

QList<PhoneStatus> FStatus::selected() const
{
    QList<PhoneStatus> statuses;
    for (const QModelIndex& row : m_phones->selectionModel()->selectedRows())
        statuses << m_table->at(m_rows->mapToSource(row).row());
    return statuses;
}

QStringList FStatus::selectedCodes() const
{
    QStringList codes;
    for (const PhoneStatus& status : selected())
        if (status.phone)
            codes << status.phone->code;
    return codes;
}

/// Says on the buttons how many phones they are for.
void FStatus::rowsChosen()
{
    const qsizetype rows = m_phones->selectionModel()->selectedRows().size();
    const qsizetype phones = selectedCodes().size();
    const bool isFree = !m_main.batch.running();
    const auto set = [isFree](QPushButton* button, const QString& caption, qsizetype number) {
        button->setText(number == 0 ? caption : u"%1 (%2)"_s.arg(caption, QLocale().toString(number)));
        button->setEnabled(isFree && number > 0);
    };
    set(m_copy, m_copyCaption, rows);
    set(m_generate, m_generateCaption, phones);
    set(m_restart, m_restartCaption, phones);
}

/// Shows what there is to know about the current phone.
void FStatus::phoneChosen()
{
    m_pages->forgetPhone();
    const QModelIndex current = m_phones->currentIndex();
    if (!current.isValid())
        return;
    const PhoneStatus& status = m_table->at(m_rows->mapToSource(current).row());
    if (!status.phone)
        return;
    std::optional<GenerationRequest> request;
    if (status.state == FileState::Different)
        request = requests({status.phone->company, status.phone->equipment, {}, {}, {{status.phone->code}}})
                      .first();
    m_pages->showPhone(*status.phone, request);
}

void FStatus::copyRows()
{
    QStringList lines;
    for (const PhoneStatus& status : selected())
        lines << lineOf(status);
    QGuiApplication::clipboard()->setText(lines.join(u'\n') + u'\n');
}

/// Offers the states that there are, and keeps the one that is chosen.
void FStatus::fillStates()
{
    QMap<FileState, qsizetype> counts;
    for (const PhoneStatus& status : m_table->all())
        ++counts[status.state];
    const QVariant chosen = m_states->currentData();
    {
        const QSignalBlocker quiet(m_states);
        m_states->clear();
        m_states->addItem(m_main.textOr(u"FSTATUS_ALLSTATES"_s, u"All"_s));
        for (const auto& [state, number] : counts.asKeyValueRange())
            m_states->addItem(u"%1 (%2)"_s.arg(m_table->caption(state), QLocale().toString(number)),
                              static_cast<int>(state));
    }
    const int entry = chosen.isValid() ? m_states->findData(chosen) : 0;
    m_states->setCurrentIndex(-1);
    m_states->setCurrentIndex(std::max(entry, 0));
    showCounts();
}

void FStatus::showCounts()
{
    const int shown = m_rows->rowCount();
    const int all = m_table->rowCount();
    m_count->setText(shown == all ? QLocale().toString(all)
                                  : u"%1 / %2"_s.arg(QLocale().toString(shown), QLocale().toString(all)));
}

void FStatus::showPhone(const QString& company, const QString& code)
{
    if (isRunning() || m_main.batch.running())
        return;
    reportFailures(m_main, [&] { m_selection->chooseCompany(company); });
    m_allModels->setChecked(true);
    m_find->clear();
    m_states->setCurrentIndex(0);
    startRun();
    for (int row = 0; row < m_rows->rowCount(); ++row)
        if (m_rows->index(row, PhoneTable::Code).data().toString() == code) {
            m_phones->setCurrentIndex(m_rows->index(row, 0));
            m_phones->setFocus();
        }
}

} // namespace velmora

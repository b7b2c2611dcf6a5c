#include "generation/FGenerate.h"

#include "files/stored_path.h"
#include "generation/generate.h"
#include "startup/MMain.h"
#include "startup/captions.h"
#include "startup/failure_report.h"

#include <QCloseEvent>
#include <QDir>
#include <QElapsedTimer>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QScopeGuard>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// How long a run may go on before window events run again, in milliseconds.
constexpr qint64 eventInterval = 30;

/// The folder of a path. One that holds a macro differs from phone to phone: then the part before the macro.
QString fixedPart(const QString& path)
{
    const QString folder = localFolder(path);
    const qsizetype macro = folder.indexOf("$$"_L1);
    if (macro < 0)
        return folder;
    return folder.first(std::max(folder.lastIndexOf(u'/', macro), folder.lastIndexOf(u'\\', macro)) + 1);
}

bool folderExists(const QString& path)
{
    const QString folder = fixedPart(path);
    return !folder.isEmpty() && QDir(folder).exists();
}

} // namespace

FGenerate::FGenerate(MMain& main, QWidget* parent)
    : QWidget(parent), m_main(main), m_selection(new SelectionPanel(main, 4))
{
    setObjectName(u"FGenerate"_s);
    setWindowTitle(u"Velmora Generation"_s);
    m_inputs = {m_selection, createLevels(), createPath()};
    auto* layout = new QVBoxLayout(this);
    for (QWidget* input : m_inputs)
        layout->addWidget(input);
    layout->addWidget(createProgress(), 1);
    connectControls();
    translateCaptions(m_main, *this);
    m_stopCaption = m_main.textOr(u"CANCEL_ABO"_s, m_cancel->text());
    m_closeCaption = m_main.textOr(u"CANCEL_END"_s, m_cancel->text());
    setRunning(false);
    setFocusProxy(m_selection);
}

QWidget* FGenerate::createLevels()
{
    auto* box = new QWidget;
    auto* layout = new QHBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    const QStringList captions = {u"Level                                       Phone"_s, u"Company"_s,
                                  u"Equipment"_s};
    for (int level = 0; level < 3; ++level) {
        auto* check = new QCheckBox(captions[level]);
        check->setObjectName(u"CLev_%1"_s.arg(level));
        check->setChecked(true);
        layout->addWidget(check);
        m_levels << check;
    }
    m_withSource = new QCheckBox(u"Generate Source"_s);
    m_withSource->setObjectName(u"GenSrc"_s);
    layout->addStretch();
    layout->addWidget(m_withSource);
    return box;
}

QWidget* FGenerate::createPath()
{
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* caption = new QLabel(u"Path"_s);
    caption->setObjectName(u"PLab"_s);
    m_path = new QLabel;
    m_path->setObjectName(u"LPath"_s);
    m_path->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    m_path->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_path->setTextFormat(Qt::PlainText);
    m_path->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_browse = new QPushButton(u"..."_s);
    m_browse->setObjectName(u"BtPath"_s);
    m_browse->setEnabled(false);
    m_browse->setAutoDefault(true);
    layout->addWidget(caption);
    layout->addWidget(m_path, 1);
    layout->addWidget(m_browse);
    return row;
}

QWidget* FGenerate::createProgress()
{
    auto* box = new QWidget;
    auto* layout = new QVBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    m_list = new QListWidget;
    m_list->setObjectName(u"List1"_s);
    m_list->setUniformItemSizes(true);
    m_progress = new QProgressBar;
    m_progress->setObjectName(u"Progress"_s);
    m_progress->setFormat(u"%v / %m"_s);
    QSizePolicy keptPlace = m_progress->sizePolicy();
    keptPlace.setRetainSizeWhenHidden(true);
    m_progress->setSizePolicy(keptPlace);
    m_progress->hide();
    m_generate = new QPushButton(u"Generate"_s);
    m_generate->setObjectName(u"Generate"_s);
    m_generate->setAutoDefault(true);
    m_generate->setDefault(true);
    m_generate->setEnabled(false);
    m_cancel = new QPushButton(u"Cancel"_s);
    m_cancel->setObjectName(u"Cancel"_s);
    m_cancel->setAutoDefault(true);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_progress, 1);
    buttons->addWidget(m_generate);
    buttons->addWidget(m_cancel);
    layout->addWidget(m_list, 1);
    layout->addLayout(buttons);
    return box;
}

void FGenerate::connectControls()
{
    const auto guarded = [this](void (FGenerate::*handler)()) {
        return [this, handler] { reportFailures(m_main, [this, handler] { (this->*handler)(); }); };
    };
    connect(m_selection, &SelectionPanel::companyChosen, this, guarded(&FGenerate::clearPath));
    connect(m_selection, &SelectionPanel::equipmentChosen, this, guarded(&FGenerate::chooseEquipment));
    connect(m_selection, &SelectionPanel::rangeChosen, this, &FGenerate::enableGenerate);
    for (int level = 0; level < m_levels.size(); ++level)
        connect(m_levels[level], &QCheckBox::clicked, this,
                [this, level] { reportFailures(m_main, [this, level] { levelClicked(level); }); });
    connect(m_browse, &QPushButton::clicked, this, guarded(&FGenerate::browse));
    connect(m_generate, &QPushButton::clicked, this, guarded(&FGenerate::run));
    connect(m_cancel, &QPushButton::clicked, this, &FGenerate::cancel);
    connect(&m_main.batch, &Batch::runningChanged, this, &FGenerate::enableGenerate);
    connect(&m_main.batch, &Batch::stopRequested, this, [this] { m_main.stopFlag = true; });
}

void FGenerate::clearPath()
{
    m_browse->setEnabled(false);
    setPath({});
}

void FGenerate::chooseEquipment()
{
    // First of all: what is looked up next can fail, and then nothing of the model before may stay.
    clearPath();
    const Levels remembered =
        rememberedLevels(m_main, m_selection->company(), m_selection->equipment(), levels());
    m_levels[0]->setChecked(remembered.phone);
    m_levels[1]->setChecked(remembered.company);
    m_levels[2]->setChecked(remembered.equipment);
    m_browse->setEnabled(true);
    setPath(rememberedFolder(m_main, m_selection->company() + m_selection->equipment(), u"$$GENPATH"_s));
}

void FGenerate::levelClicked(int level)
{
    const bool noneLeft =
        std::none_of(m_levels.begin(), m_levels.end(), [](QCheckBox* box) { return box->isChecked(); });
    if (noneLeft)
        m_levels[level]->setChecked(true);
    else if (level == 0)
        pathChanged();
}

void FGenerate::browse()
{
    const QString before = fixedPart(m_path->text());
    const QString chosen = m_main.BrowseFolder(before);
    if (chosen != before)
        setPath(chosen);
}

void FGenerate::setPath(const QString& path)
{
    m_path->setText(path);
    m_path->setToolTip(path);
    pathChanged();
}

void FGenerate::pathChanged()
{
    m_selection->clearPhones();
    m_folderExists = folderExists(m_path->text()) && !m_selection->equipment().isEmpty();
    if (m_folderExists && levels().phone)
        m_selection->fillPhones();
    enableGenerate();
}

void FGenerate::run()
{
    setRunning(true);
    const auto finish = qScopeGuard([this] { setRunning(false); });
    const Batch::Run batch(m_main.batch);
    m_list->clear();
    QElapsedTimer sinceEvents;
    sinceEvents.start();
    const auto progress = [this, &sinceEvents](qsizetype done, qsizetype total) {
        if (done > 0 && done < total && sinceEvents.elapsed() < eventInterval)
            return;
        showProgress(done, total);
        m_main.prompts.letEventsRun();
        sinceEvents.restart();
    };
    Generate(m_main, request(), {[this](const QString& line) { appendLine(line); }, progress});
}

void FGenerate::cancel()
{
    if (m_running)
        m_main.stopFlag = true;
    else
        closeWindow();
}

void FGenerate::closeEvent(QCloseEvent* event)
{
    event->setAccepted(!m_running);
    if (!m_running)
        return;
    m_main.stopFlag = true;
    m_closeAfterRun = true;
}

void FGenerate::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        m_cancel->click();
    else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        m_generate->click();
    else
        QWidget::keyPressEvent(event);
}

void FGenerate::closeWindow()
{
    (parentWidget() ? parentWidget() : this)->close();
}

void FGenerate::setRunning(bool running)
{
    m_running = running;
    for (QWidget* input : m_inputs)
        input->setEnabled(!running);
    m_cancel->setText(running ? m_stopCaption : m_closeCaption);
    // Disabling the start button takes the focus from it; Stop has it meanwhile, where the user stayed here.
    if (running)
        m_cancel->setFocus();
    enableGenerate();
    if (!running && m_cancel->hasFocus())
        m_generate->setFocus();
    if (!running && m_closeAfterRun)
        QMetaObject::invokeMethod(this, &FGenerate::closeWindow, Qt::QueuedConnection);
}

void FGenerate::enableGenerate()
{
    m_generate->setEnabled(m_folderExists && !m_main.batch.running());
}

void FGenerate::showProgress(qsizetype done, qsizetype total)
{
    m_progress->show();
    m_progress->setRange(0, static_cast<int>(total));
    m_progress->setValue(static_cast<int>(done));
    m_list->scrollToBottom();
}

void FGenerate::appendLine(const QString& line)
{
    m_list->addItem(line);
    m_list->setCurrentRow(m_list->count() - 1);
}

Levels FGenerate::levels() const
{
    return {m_levels[0]->isChecked(), m_levels[1]->isChecked(), m_levels[2]->isChecked()};
}

GenerationRequest FGenerate::request() const
{
    return {m_selection->company(),
            m_selection->equipment(),
            m_selection->phoneFrom(),
            m_selection->phoneTo(),
            levels(),
            m_withSource->isChecked(),
            m_path->text()};
}

} // namespace velmora

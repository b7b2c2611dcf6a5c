#include "runs/BatchWindow.h"

#include "common/MMain.h"
#include "runs/SelectionPanel.h"
#include "windows/captions.h"
#include "windows/failure_report.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QScopeGuard>

#include <utility>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// How long a run may go on before window events run again, in milliseconds.
constexpr qint64 eventInterval = 30;

} // namespace

BatchWindow::BatchWindow(MMain& main, const QString& name, const QString& title, const Controls& controls)
    : m_main(main), m_layout(new QVBoxLayout(this))
{
    setObjectName(name);
    setWindowTitle(title);
    createProgress(controls);
    connect(m_start, &QPushButton::clicked, this, &BatchWindow::startRun);
    connect(m_cancel, &QPushButton::clicked, this, &BatchWindow::cancel);
    connect(m_log, &RunLog::saved, this, &BatchWindow::showStatus);
    connect(&m_main.batch, &Batch::runningChanged, this, &BatchWindow::enableStart);
    connect(&m_main.batch, &Batch::stopRequested, this, [this] {
        if (m_running)
            askToStop();
    });
}

void BatchWindow::askToStop()
{
    m_stopAsked = true;
    stop();
}

void BatchWindow::createProgress(const Controls& controls)
{
    m_log = new RunLog(m_main, controls.list);
    m_missing = new QLabel;
    m_missing->setObjectName(u"Missing"_s);
    m_missing->setTextFormat(Qt::PlainText);
    m_status = new QLabel;
    m_status->setTextFormat(Qt::PlainText);
    m_status->setAccessibleName(m_main.textOr(u"BATCH_STATUS"_s, u"Status"_s));
    m_status->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_status->hide();
    m_progress = new QProgressBar;
    m_progress->setObjectName(u"Progress"_s);
    m_progress->setFormat(u"%v / %m"_s);
    m_progress->setAccessibleName(m_main.textOr(u"BATCH_PROGRESS"_s, u"Progress"_s));
    QSizePolicy keptPlace = m_progress->sizePolicy();
    keptPlace.setRetainSizeWhenHidden(true);
    m_progress->setSizePolicy(keptPlace);
    m_progress->hide();
    m_start = new QPushButton(controls.startCaption);
    m_start->setObjectName(controls.start);
    m_start->setAutoDefault(true);
    m_start->setDefault(true);
    m_start->setEnabled(false);
    m_cancel = new QPushButton(u"Cancel"_s);
    m_cancel->setObjectName(u"Cancel"_s);
    m_cancel->setAutoDefault(true);
}

void BatchWindow::addInput(QWidget* input, int stretch)
{
    m_layout->addWidget(input, stretch);
    m_inputs << input;
}

void BatchWindow::complete()
{
    placeProgress();
    translateCaptions(m_main, *this);
    m_stopCaption = m_main.textOr(u"CANCEL_ABO"_s, m_cancel->text());
    m_closeCaption = m_main.textOr(u"CANCEL_END"_s, m_cancel->text());
    for (const QString& code : {u"M282"_s, u"M283"_s, u"M284"_s, u"M285"_s})
        m_missingTexts.insert(code, m_main.messageLine(code));
    const QString kept = u"$$"_s;
    m_throughText = m_main.messageLine(u"M310"_s, kept);
    m_stoppedText = m_main.messageLine(u"M311"_s, kept);
    m_endedText = m_main.messageLine(u"M312"_s, kept);
    m_remarksText = m_main.messageLine(u"M313"_s, kept);
    setRunning(false);
    for (SelectionPanel* selection : findChildren<SelectionPanel*>())
        selection->chooseLast();
}

/// Below the inputs, and not before: Tab goes through the parts in the order in which they become parts.
void BatchWindow::placeProgress()
{
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_progress, 1);
    for (QPushButton* button : m_buttons)
        buttons->addWidget(button);
    buttons->addWidget(m_start);
    buttons->addWidget(m_cancel);
    m_layout->addWidget(m_log, 1);
    m_layout->addWidget(m_missing);
    m_layout->addWidget(m_status);
    m_layout->addLayout(buttons);
}

void BatchWindow::startRun()
{
    reportFailures(m_main, [this] { start(); });
}

void BatchWindow::start()
{
    setRunning(true);
    m_stopAsked = false;
    m_progressText.clear();
    bool wentThrough = false;
    const auto finish = qScopeGuard([&] {
        m_log->showNewLines();
        showSummary(wentThrough);
        setRunning(false);
    });
    const Batch::Run batch(m_main.batch);
    m_log->clear();
    m_progress->hide();
    // While it goes on, the list must not move with every name that is shown.
    m_status->setWordWrap(false);
    showStatus({});
    wentThrough = run();
}

/// Says how the run ended, unless the window has already said something of its own.
void BatchWindow::showSummary(bool wentThrough)
{
    m_status->setWordWrap(true);
    if (m_progressText.isEmpty() || (wentThrough && !m_status->text().isEmpty() && m_log->remarks() == 0))
        return;
    const QString& ending = wentThrough ? m_throughText : m_stopAsked ? m_stoppedText : m_endedText;
    QStringList parts(QString(ending).replace("$$"_L1, m_progressText));
    if (m_log->remarks() > 0)
        parts << QString(m_remarksText).replace("$$"_L1, QString::number(m_log->remarks()));
    if (!m_status->text().isEmpty())
        parts << m_status->text();
    showStatus(parts.join(", "_L1));
}

RunReport BatchWindow::report()
{
    m_sinceEvents.start();
    const auto progress = [this](qsizetype done, qsizetype total) {
        if (done > 0 && done < total && m_sinceEvents.elapsed() < eventInterval)
            return;
        showProgress(done, total);
        m_main.prompts.letEventsRun();
        m_sinceEvents.restart();
    };
    return {[this](const QString& line) { append({line}); }, progress,
            [this](const QString& line) {
                append({line, true});
            }};
}

void BatchWindow::showStatus(const QString& text)
{
    m_status->setText(text);
    if (!text.isEmpty())
        m_status->show();
}

void BatchWindow::cancel()
{
    if (m_running)
        askToStop();
    else
        closeWindow();
}

void BatchWindow::closeEvent(QCloseEvent* event)
{
    event->setAccepted(!m_running);
    if (!m_running)
        return;
    askToStop();
    m_closeAfterRun = true;
}

void BatchWindow::keyPressEvent(QKeyEvent* event)
{
    if (event->isAutoRepeat())
        return;
    if (event->key() == Qt::Key_Escape)
        m_cancel->click();
    else if (!m_running && startsByReturn() &&
             (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter))
        m_start->click();
    else
        QWidget::keyPressEvent(event);
}

void BatchWindow::closeWindow()
{
    (parentWidget() ? parentWidget() : this)->close();
}

void BatchWindow::setRunning(bool running)
{
    m_running = running;
    m_cancel->setText(running ? m_stopCaption : m_closeCaption);
    // A Return that is pressed too long must not stop the run that it has started.
    m_cancel->setAutoDefault(!running);
    // Disabling the start button takes the focus from it; Stop has it meanwhile, where the user stayed here.
    if (running)
        m_cancel->setFocus();
    enableStart();
    // Also where a message box of the run has the focus at the moment, and gives it back.
    if (!running && focusWidget() == m_cancel)
        m_start->setFocus();
    if (!running && std::exchange(m_closeAfterRun, false))
        QMetaObject::invokeMethod(this, &BatchWindow::closeWindow, Qt::QueuedConnection);
}

void BatchWindow::enableStart()
{
    // Nor can the inputs of other windows be used: what they show or ask would keep a run waiting in the
    // middle of its transaction.
    const bool free = !m_running && !m_main.batch.running();
    for (QWidget* input : m_inputs)
        input->setEnabled(free);
    enabledChanged(free);
    const QString lacking = missing();
    m_start->setEnabled(lacking.isEmpty() && free);
    // Looked up beforehand: a run can end with its database.
    m_missing->setText(m_running ? QString() : m_missingTexts.value(free ? lacking : u"M285"_s));
    m_missing->setVisible(!m_missing->text().isEmpty());
}

void BatchWindow::showProgress(qsizetype done, qsizetype total)
{
    // A bar of nothing would look as if it were still at work.
    m_progressText = QString::number(done) + " / "_L1 + QString::number(total);
    m_progress->setVisible(total > 0);
    if (total == 0)
        return;
    m_progress->setRange(0, static_cast<int>(total));
    m_progress->setValue(static_cast<int>(done));
}

} // namespace velmora

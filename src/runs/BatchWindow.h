// What the windows of the long runs have in common.
#pragma once

#include "runs/RunLog.h"

#include <QElapsedTimer>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace velmora {

class MMain;

/// Inputs at the top; below them a list of the run's lines, its progress, a start button and `Cancel`, which
/// stops a run or else closes the window. While a run goes on, the inputs are disabled and closing the window
/// stops it first; while another window's run goes on, this one can't start.
class BatchWindow : public QWidget {
    Q_OBJECT

public:
    QSize sizeHint() const override { return QWidget::sizeHint().expandedTo({540, 460}); }

protected:
    /// The names of the list and the start button, and the button's design caption.
    struct Controls {
        QString list;
        QString start;
        QString startCaption;
    };

    BatchWindow(MMain& main, const QString& name, const QString& title, const Controls& controls);

    /// Adds something that can't be changed while a run goes on, and that grows with the window by `stretch`.
    void addInput(QWidget* input, int stretch = 0);
    /// Adds a button that starts a run of its own kind, through startRun().
    void addButton(QPushButton* button) { m_buttons << button; }
    void startRun();
    /// Told whether inputs can be used: while they can't, no button must start a run.
    virtual void enabledChanged(bool) {}
    /// To be called at the end of the constructor: translates all captions.
    void complete();

    /// The run; whether it went through to its end. What it throws is shown in an error report.
    virtual bool run() = 0;
    /// Makes the run that is going on end soon.
    virtual void stop() = 0;
    /// The message that tells what a run still needs (M282 to M284); empty when the inputs describe one.
    virtual QString missing() const = 0;
    void enableStart();
    /// Says on the start button what a click would do now.
    void setStartCaption(const QString& caption) { m_start->setText(caption); }
    /// Whether Return in an input starts the run, or only the button does.
    virtual bool startsByReturn() const { return true; }

    /// What a run is given to report here. Window events run as often as needed to keep the window
    /// responsive.
    RunReport report();
    /// Shows the list of lines, or leaves its place to the inputs.
    void showLog(bool shown) { m_log->setVisible(shown); }
    void append(const RunLine& line) { m_log->append(line); }
    void showProgress(qsizetype done, qsizetype total);
    /// What is being done at the moment, beside the progress.
    void showStatus(const QString& text);
    bool isRunning() const { return m_running; }

    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

    MMain& m_main;

private:
    void createProgress(const Controls& controls);
    void placeProgress();
    void start();
    void askToStop();
    void showSummary(bool wentThrough);
    void cancel();
    void closeWindow();
    void setRunning(bool running);

    QVBoxLayout* m_layout;
    QList<QWidget*> m_inputs;
    /// Beside the start button.
    QList<QPushButton*> m_buttons;
    RunLog* m_log;
    /// What keeps the start button from being used.
    QLabel* m_missing;
    QHash<QString, QString> m_missingTexts;
    QLabel* m_status;
    QProgressBar* m_progress;
    QPushButton* m_start;
    QPushButton* m_cancel;
    /// What Cancel says while a run goes on, and otherwise. Looked up beforehand: a run can end with its
    /// database.
    QString m_stopCaption;
    QString m_closeCaption;
    QElapsedTimer m_sinceEvents;
    /// How a run has ended: through, stopped, or given up; and how many remarks it made. "$$" is the number.
    QString m_throughText;
    QString m_stoppedText;
    QString m_endedText;
    QString m_remarksText;
    QString m_progressText;
    bool m_stopAsked = false;
    bool m_running = false;
    bool m_closeAfterRun = false;
};

} // namespace velmora

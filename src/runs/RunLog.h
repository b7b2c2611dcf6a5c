// The list of what a run has told.
#pragma once

#include "runs/run_report.h"

#include <QCheckBox>
#include <QListView>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>

namespace velmora {

class LineDelegate;
class LogModel;
class MMain;

/// Remarks stand out by colour and mark, and can be shown alone. All of it can be copied and saved. Below the
/// list: `WholeLine`, which shows a current line that is wider than the list, `OnlyRemarks`, `CopyLog` and
/// `SaveLog`.
class RunLog : public QWidget {
    Q_OBJECT

public:
    RunLog(MMain& main, const QString& listName);

    void clear();
    /// Adds a line. The list shows the first with the next window events, and those that follow twenty times
    /// a second: one by one, a hundred thousand would take minutes.
    void append(const RunLine& line);
    /// Shows what is not in the list yet.
    void showNewLines();
    qsizetype remarks() const;

Q_SIGNALS:
    /// All lines have been written into this file.
    void saved(const QString& path);

private:
    void enableControls();
    void showWhole(const QModelIndex& line);
    void save();

    MMain& m_main;
    LogModel* m_lines;
    QListView* m_list;
    LineDelegate* m_delegate;
    QPlainTextEdit* m_whole;
    QCheckBox* m_onlyRemarks;
    QPushButton* m_copy;
    QPushButton* m_save;
    /// How far the list could be scrolled down before it got its present size.
    int m_lowest = 0;
    QTimer m_showing;
};

} // namespace velmora

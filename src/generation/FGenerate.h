// The window that generates configuration files.
#pragma once

#include "generation/SelectionPanel.h"

#include <QCheckBox>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>

namespace velmora {

struct GenerationRequest;

/// Shows what Generate() needs and what it reports. While it runs, Cancel and closing stop it after the
/// current phone.
class FGenerate : public QWidget {
    Q_OBJECT

public:
    explicit FGenerate(MMain& main, QWidget* parent = nullptr);

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QWidget* createLevels();
    QWidget* createPath();
    QWidget* createProgress();
    void connectControls();

    void clearPath();
    void chooseEquipment();
    void levelClicked(int level);
    void browse();
    void setPath(const QString& path);
    void pathChanged();

    void run();
    void cancel();
    void closeWindow();
    void setRunning(bool running);
    void enableGenerate();
    void showProgress(qsizetype done, qsizetype total);
    void appendLine(const QString& line);

    Levels levels() const;
    GenerationRequest request() const;

    MMain& m_main;
    SelectionPanel* m_selection;
    /// What can't be changed while a run goes on.
    QList<QWidget*> m_inputs;
    /// `CLev` 0 to 2: phone, company, equipment.
    QList<QCheckBox*> m_levels;
    QCheckBox* m_withSource;
    QLabel* m_path;
    QPushButton* m_browse;
    QListWidget* m_list;
    QProgressBar* m_progress;
    QPushButton* m_generate;
    QPushButton* m_cancel;
    /// What Cancel says while a run goes on, and otherwise. Looked up beforehand: a run can end with its
    /// database.
    QString m_stopCaption;
    QString m_closeCaption;
    bool m_folderExists = false;
    bool m_running = false;
    bool m_closeAfterRun = false;
};

} // namespace velmora

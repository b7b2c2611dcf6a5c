// The window that generates configuration files.
#pragma once

#include "generation/BatchWindow.h"
#include "generation/SelectionPanel.h"

#include <QCheckBox>

namespace velmora {

/// Shows what Generate() needs and what it reports. A run is stopped after the current phone.
class FGenerate : public BatchWindow {
    Q_OBJECT

public:
    explicit FGenerate(MMain& main);

private:
    QWidget* createLevels();
    QWidget* createPath();
    void connectControls();

    void clearPath();
    void chooseEquipment();
    void levelClicked(int level);
    void browse();
    void setPath(const QString& path);
    void pathChanged();

    void run() override;
    void stop() override;
    bool canStart() const override { return m_folderExists; }

    Levels levels() const;

    SelectionPanel* m_selection;
    /// `CLev` 0 to 2: phone, company, equipment.
    QList<QCheckBox*> m_levels;
    QCheckBox* m_withSource;
    QLabel* m_path;
    QPushButton* m_browse;
    bool m_folderExists = false;
};

} // namespace velmora

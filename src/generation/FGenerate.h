// The window that generates configuration files.
#pragma once

#include "modules/writer.h"
#include "runs/BatchWindow.h"
#include "runs/FolderPicker.h"
#include "runs/SelectionPanel.h"

#include <QCheckBox>

namespace velmora {

/// Shows what Generate() needs and what it reports. A run is stopped after the current phone.
class FGenerate : public BatchWindow {
    Q_OBJECT

public:
    explicit FGenerate(MMain& main);

private:
    QWidget* createLevels();
    void connectControls();

    void clearPath();
    void chooseEquipment();
    void rememberChoice();
    void levelClicked(int level);
    void pathChanged();

    bool run() override;
    void stop() override;
    QString missing() const override;

    Levels levels() const;

    SelectionPanel* m_selection;
    /// `CLev` 0 to 2: phone, company, equipment.
    QList<QCheckBox*> m_levels;
    QCheckBox* m_withSource;
    FolderPicker* m_folder;
    bool m_folderExists = false;
};

} // namespace velmora

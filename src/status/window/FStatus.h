// The window that shows how the files of phones stand to what would be written now.
#pragma once

#include "generation/model_requests.h"
#include "reboot/reboot.h"
#include "runs/BatchWindow.h"
#include "runs/FolderPicker.h"
#include "runs/SelectionPanel.h"
#include "status/window/PhonePages.h"
#include "status/window/phone_table.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QTreeView>

namespace velmora {

/// The phones of a company and their files' states; below them, for the current phone, what differs and where
/// its values come from. Phones that are selected can be generated and restarted; their lines are listed as
/// in the windows of those runs.
class FStatus : public BatchWindow {
    Q_OBJECT

public:
    explicit FStatus(MMain& main, quint16 port = HttpExchange::webPort);

    /// Shows the phone, among those of its company and model.
    void showPhone(const QString& company, const QString& code);

    QSize sizeHint() const override { return BatchWindow::sizeHint().expandedTo({900, 640}); }

Q_SIGNALS:
    /// The user wants to see a record in the editor: the one with these values.
    void recordWanted(const QString& table, const QHash<QString, QString>& key);

private:
    enum class Task { Refresh, Generate, Restart };

    QWidget* createSelection();
    QWidget* createFilters();
    QWidget* createLists();
    void connectControls();

    void companyOrModelChosen();
    void rememberFolder();
    void phoneChosen();
    void rowsChosen();
    void copyRows();

    bool run() override;
    bool refreshAll();
    void fitColumns();
    bool compare(const PhoneChoice& choice, QList<PhoneStatus>& statuses);
    void refreshPhones(const QStringList& codes);
    bool generate();
    bool restart();
    void stop() override;
    QString missing() const override;
    void enabledChanged(bool free) override;
    bool startsByReturn() const override;

    PhoneChoice choice() const;
    QList<GenerationRequest> requests(const PhoneChoice& choice);
    QList<PhoneStatus> selected() const;
    QStringList selectedCodes() const;
    void fillStates();
    void showCounts();

    SelectionPanel* m_selection;
    QCheckBox* m_allModels;
    FolderPicker* m_folder;
    QComboBox* m_states;
    QLineEdit* m_find;
    QLabel* m_count;
    PhoneTable* m_table;
    ChosenRows* m_rows;
    QTreeView* m_phones;
    PhonePages* m_pages;
    QPushButton* m_generate;
    QPushButton* m_restart;
    QPushButton* m_copy;
    Task m_task = Task::Refresh;
    Reboot m_reboot;
    /// The company and model that the list was read for.
    PhoneChoice m_shown;
    /// Of the buttons that say a number.
    QString m_copyCaption;
    QString m_generateCaption;
    QString m_restartCaption;
};

} // namespace velmora

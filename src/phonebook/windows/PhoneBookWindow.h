// What the phone-book windows have in common.
#pragma once

#include "phonebook/phone_book.h"
#include "runs/BatchWindow.h"
#include "runs/FolderPicker.h"
#include "runs/SelectionPanel.h"

namespace velmora {

/// A company, in most windows a model too, and a folder, which is proposed from the settings.
class PhoneBookWindow : public BatchWindow {
    Q_OBJECT

protected:
    /// `lists` is 1 for a company alone, 2 for company and model; `folderCode` is the sub-code of the row
    /// that remembers the folder.
    PhoneBookWindow(MMain& main, const QString& name, const QString& title, const QString& startCaption,
                    int lists, const QString& folderCode);

    PhoneBookRequest request() const;
    void stop() override;
    QString missing() const override { return m_chosen ? QString() : QStringLiteral("M282"); }

private:
    void choose();

    const int m_lists;
    const QString m_folderCode;
    SelectionPanel* m_selection;
    FolderPicker* m_folder;
    bool m_chosen = false;
};

} // namespace velmora

// The window that exports a phone book.
#pragma once

#include "phonebook/windows/PhoneBookWindow.h"

#include <QRadioButton>

namespace velmora {

/// A workbook is opened with the desktop's spreadsheet program, where there is one.
class FPBExp : public PhoneBookWindow {
    Q_OBJECT

public:
    explicit FPBExp(MMain& main);

private:
    bool run() override;

    QRadioButton* m_csv;
    QRadioButton* m_workbook;
};

} // namespace velmora

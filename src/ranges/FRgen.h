// The window that adds and removes ranges of phone codes.
#pragma once

#include "runs/BatchWindow.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>

namespace velmora {

class FRgen : public BatchWindow {
    Q_OBJECT

public:
    explicit FRgen(MMain& main);

private:
    QWidget* createForm();
    bool run() override;
    void stop() override;
    QString missing() const override;
    void nameStart();
    void chooseCompany();
    QString company() const;

    QComboBox* m_company;
    QLineEdit* m_from;
    QLineEdit* m_to;
    QCheckBox* m_remove;
    QString m_addCaption;
    QString m_removeCaption;
};

} // namespace velmora

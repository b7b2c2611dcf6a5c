// The selection of a company, a model and a range of phones, shared by the batch windows.
#pragma once

#include "runs/phone_selection.h"

#include <QComboBox>
#include <QLabel>
#include <QList>
#include <QWidget>

namespace velmora {

/// Finds entries by any part of their text. What is typed and is no entry is given up.
void makeSearchable(QComboBox& list);

/// Chooses the company that was chosen last in any window; none where it is not offered.
void chooseLastCompany(const MMain& main, QComboBox& companies);

/// Up to four drop-down lists, `Filter` 1 to 4: company, model, first phone, last phone. Choosing an entry
/// refills the lists after it. Each list shows nothing until something is chosen.
class SelectionPanel : public QWidget {
    Q_OBJECT

public:
    /// A panel with the first `lists` (1 to 4) of the four lists, companies filled in.
    SelectionPanel(MMain& main, int lists, QWidget* parent = nullptr);

    QString company() const { return code(1); }
    QString equipment() const { return code(2); }
    QString phoneFrom() const { return code(3); }
    QString phoneTo() const { return code(4); }

    /// Chooses the company, if it is offered.
    void chooseCompany(const QString& company) { choose(1, company); }
    /// Chooses the company and the model that were chosen last in any window, as far as they are offered.
    void chooseLast();
    /// Empties and disables the lists of phones.
    void clearPhones();
    /// Fills the lists of phones with the company's phones of the model, and proposes all of them or none.
    void fillPhones(bool propose = true);
    /// How many phones are chosen.
    int phoneCount() const;

Q_SIGNALS:
    void companyChosen();
    void equipmentChosen();
    /// The last phone was chosen, or proposed anew because another first one was chosen.
    void rangeChosen();

private:
    QString code(int list) const;
    bool choose(int list, const QString& wanted);
    void chosen(int list);
    void clear(int list);
    void fill(int list, const QList<ListEntry>& entries);
    void fillPhoneTo();

    MMain& m_main;
    /// Whether the widest range is proposed, or just the first phone that is chosen.
    bool m_propose = true;
    /// `Filter` 1 to 4 at the places 0 to 3.
    QList<QComboBox*> m_filters;
};

} // namespace velmora

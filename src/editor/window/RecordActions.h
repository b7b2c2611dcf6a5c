// What can be done with records: `New`, `Edit`, `Delete` and what `More` offers.
#pragma once

#include <QAction>
#include <QMenu>
#include <QPushButton>

namespace velmora {

class MMain;
class RecordView;

enum class RecordAction { New, Duplicate, Edit, Delete, SetColumn, Copy, Paste };

/// The actions as buttons, as keys and a double click in the list, and as the popup of a record.
class RecordActions : public QWidget {
    Q_OBJECT

public:
    RecordActions(MMain& main, RecordView& list, QWidget* parent = nullptr);

    /// Lets them be chosen, if any at all: each where as many records are selected as it needs, and one value
    /// for all where the table is one that takes it.
    void allow(bool any, qsizetype selected, bool settable);
    /// Adds what else can be done with a record.
    void addToPopup(QAction* action) { m_popup->addAction(action); }
    /// Shows the popup, `MnuRecord`, where that place of the list is on a record.
    void popup(const QPoint& position);

Q_SIGNALS:
    void chosen(RecordAction action);
    void allowed(bool any, qsizetype selected, bool settable);

private:
    struct Offer;

    void add(const Offer& offer);

    MMain& m_main;
    RecordView& m_list;
    QMenu* m_popup;
    QPushButton* m_more;
};

} // namespace velmora

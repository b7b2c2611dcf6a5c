// What can be done with records: `New`, `Edit`, `Delete`.
#pragma once

#include "editor/record/record_form.h"

#include <QAction>
#include <QMenu>

namespace velmora {

class MMain;
class RecordView;

/// The actions as a row of buttons, as keys and a double click in the list, and as the popup of a record.
class RecordActions : public QWidget {
    Q_OBJECT

public:
    RecordActions(MMain& main, RecordView& list, QWidget* parent = nullptr);

    /// Lets them be chosen: those that need a record only where there is one.
    void allow(bool any, bool onRecord);
    /// Adds what else can be done with a record.
    void addToPopup(QAction* action) { m_popup->addAction(action); }
    /// Shows the popup, `MnuRecord`, where that place of the list is on a record.
    void popup(const QPoint& position);

Q_SIGNALS:
    void chosen(RecordMode mode);

private:
    QAction* add(RecordMode mode, const QString& caption, const QList<QKeySequence>& keys);

    MMain& m_main;
    RecordView& m_list;
    QMenu* m_popup;
    QAction* m_new;
    QAction* m_edit;
    QAction* m_delete;
};

} // namespace velmora

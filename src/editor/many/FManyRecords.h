// The window that deletes many records, or gives all of them one value.
#pragma once

#include "editor/many/many_records_model.h"

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeView>

namespace velmora {

/// Shows all `Records` before anything is written, and the result of each afterwards. `Write` writes all or
/// none; where some are refused, pressed once more, the others. `Cancel` leaves all as they are.
class FManyRecords : public QDialog {
    Q_OBJECT

public:
    enum class Kind { Delete, SetColumn };

    /// With Kind::SetColumn `column` is the place of the one that is proposed.
    FManyRecords(MMain& main, const TableDescription& table, const QList<QStringList>& records, Kind kind,
                 qsizetype column, QWidget* parent);

    QSize sizeHint() const override { return QDialog::sizeHint().expandedTo({760, 420}); }

Q_SIGNALS:
    /// They are about to be written.
    void writing();
    /// The records have been written; `summary` says how many.
    void written(const QString& summary);

private:
    void createInputs(qsizetype column);
    void placeControls();
    void chooseColumn();
    void showChange();
    void showWidths();
    void write();
    void tell(const QString& message, const QStringList& about);
    void enableControls();
    QString value() const;

    MMain& m_main;
    const TableDescription m_table;
    const QList<QStringList> m_records;
    const Kind m_kind;
    ManyRecordsModel* m_model;
    QTreeView* m_list;
    /// Null when records are deleted.
    QComboBox* m_column = nullptr;
    QLineEdit* m_text = nullptr;
    QComboBox* m_entry = nullptr;
    QLabel* m_status;
    QPushButton* m_write;
    QPushButton* m_cancel;
    /// Looked up beforehand: what is written can end with its database.
    QString m_othersCaption;
    QString m_closeCaption;
    /// Whether the user has entered a value: until then there is none to write.
    bool m_entered = false;
    bool m_written = false;
};

/// Whether one value may be set for many records of that table.
bool mayBeSet(const QString& table);

} // namespace velmora

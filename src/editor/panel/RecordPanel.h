// The editing panel: the fields of one record.
#pragma once

#include "editor/record/record_form.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>

#include <optional>

namespace velmora {

/// Shows a RecordForm: per field a label, `Label`, and beside it either a text box, `Text`, or a drop-down,
/// `Combo`. Fields that don't fit scroll.
class RecordPanel : public QScrollArea {
    Q_OBJECT

public:
    explicit RecordPanel(QWidget* parent = nullptr);

    /// Shows the fields of a form, and changes it as its user does.
    void show(RecordForm form);
    /// Gives up the form.
    void clear();
    /// The form as it is now; nothing while none is shown.
    const std::optional<RecordForm>& form() const { return m_form; }
    /// How many fields there are.
    int count() const { return static_cast<int>(m_rows.size()); }
    /// From the top of one field to that of the next, and the height of a field.
    void setRowHeights(int step, int height);
    /// Moves the focus to that field if it can be changed, else to the first text that can, else to the first
    /// field that can, or says that there is none. In a new record it is the first one from there on.
    bool focusField(int wanted);
    /// Moves on from the field that has the focus to the next one, or says that there is none.
    bool focusNextField();

Q_SIGNALS:
    /// A field has been changed, so that others may have become open or closed.
    void changed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Row {
        QLabel* label;
        QLineEdit* text;
        QComboBox* combo;
    };

    Row addRow(qsizetype field);
    void showState();
    bool focusFieldFrom(qsizetype first);
    static QWidget* changeable(const Row& row);
    bool focus(QWidget* control);
    void openClicked(const QPoint& position);
    void leave(const QObject* widget);
    void placeRows();

    std::optional<RecordForm> m_form;
    QList<Row> m_rows;
    int m_step = 0;
    int m_height = 0;
};

} // namespace velmora

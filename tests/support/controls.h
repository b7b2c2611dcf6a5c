// Using the controls of a window by their names.
#pragma once

#include <QComboBox>
#include <QListView>
#include <QPushButton>

namespace velmora {

/// The control of that name. REQUIRES: there is one.
template <typename Control> Control* control(const QWidget& window, const QString& name)
{
    return window.findChild<Control*>(name);
}

inline QPushButton* button(const QWidget& window, const QString& name)
{
    return control<QPushButton>(window, name);
}

/// The drop-down list `Filter` of that number.
inline QComboBox* filter(const QWidget& window, int number)
{
    return control<QComboBox>(window, QStringLiteral("Filter_%1").arg(number));
}

/// Chooses the entry that begins with `text`, as a user does.
inline void choose(QComboBox* list, const QString& text)
{
    list->setCurrentIndex(list->findText(text, Qt::MatchStartsWith));
    Q_ASSERT(list->currentIndex() >= 0);
    Q_EMIT list->activated(list->currentIndex());
}

/// The list of the log in a window: the lists of its other controls are lists too.
inline QListView* logList(const QWidget& window)
{
    return control<QWidget>(window, QStringLiteral("WholeLine"))->parentWidget()->findChild<QListView*>();
}

/// The lines of the log in a window.
inline QStringList lines(const QWidget& window)
{
    const QAbstractItemModel* model = logList(window)->model();
    QStringList texts;
    for (int row = 0; row < model->rowCount(); ++row)
        texts << model->index(row, 0).data().toString();
    return texts;
}

} // namespace velmora

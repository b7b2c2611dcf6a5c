// Using the controls of a window by their names.
#pragma once

#include <QComboBox>
#include <QListWidget>
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

/// The lines of the only list in a window.
inline QStringList lines(const QWidget& window)
{
    const auto* list = window.findChild<QListWidget*>();
    QStringList texts;
    for (int row = 0; row < list->count(); ++row)
        texts << list->item(row)->text();
    return texts;
}

} // namespace velmora

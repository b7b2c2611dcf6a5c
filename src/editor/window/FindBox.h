// The box in which one types what to find in the list: `Find`.
#pragma once

#include <QLineEdit>

namespace velmora {

/// Escape empties it, Enter or Down goes on to the list.
class FindBox : public QLineEdit {
    Q_OBJECT

public:
    explicit FindBox(const QString& caption, QWidget* parent = nullptr);

    /// Lets the user type something else.
    void begin();

Q_SIGNALS:
    /// The user is done with typing.
    void left();

protected:
    void keyPressEvent(QKeyEvent* event) override;
};

} // namespace velmora

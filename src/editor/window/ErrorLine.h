// The line that says what was refused: `LErr`.
#pragma once

#include <QLabel>

namespace velmora {

/// One line high: a longer text is cut there and stands whole in the tool tip.
class ErrorLine : public QLabel {
    Q_OBJECT

public:
    explicit ErrorLine(QWidget* parent = nullptr);

    void tell(const QString& text);
};

} // namespace velmora

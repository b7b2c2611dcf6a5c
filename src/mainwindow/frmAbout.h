// The About window.
#pragma once

#include <QWidget>

namespace velmora {

class MMain;

class frmAbout : public QWidget {
    Q_OBJECT

public:
    explicit frmAbout(MMain& main);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void closeWindow();
};

} // namespace velmora

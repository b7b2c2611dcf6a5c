// The window that imports a telephone server's user list.
#pragma once

#include "phonebook/windows/PhoneBookWindow.h"

namespace velmora {

class FPBImp : public PhoneBookWindow {
    Q_OBJECT

public:
    explicit FPBImp(MMain& main);

private:
    bool run() override;
};

} // namespace velmora

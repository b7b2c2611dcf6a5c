// The window that writes the address book of the GXP2000 phones.
#pragma once

#include "phonebook/windows/PhoneBookWindow.h"

namespace velmora {

class FPBGen : public PhoneBookWindow {
    Q_OBJECT

public:
    explicit FPBGen(MMain& main);

private:
    bool run() override;
};

} // namespace velmora

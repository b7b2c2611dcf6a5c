// One phone, as a row of PHONES describes it.
#pragma once

#include <QString>

namespace velmora {

struct Phone {
    QString company;
    QString equipment;
    QString code;
    QString description;
    QString mac;
};

/// The phone as messages name it: code and name.
QString describe(const Phone& phone);

} // namespace velmora

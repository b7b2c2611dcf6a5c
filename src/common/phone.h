// One phone, as a row of PHONES describes it.
#pragma once

#include <QString>

namespace velmora {

class Recordset;

struct Phone {
    QString company;
    QString equipment;
    QString code;
    QString description;
    QString mac;
};

/// The current row of a selection from PHONES. REQUIRES: there is one.
Phone phoneOf(const Recordset& phones);

/// The phone as messages name it: code and name.
QString describe(const Phone& phone);

} // namespace velmora

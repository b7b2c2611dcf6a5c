#include "common/phone.h"

using namespace Qt::StringLiterals;

namespace velmora {

QString describe(const Phone& phone)
{
    return phone.code + " - "_L1 + phone.description;
}

} // namespace velmora

#include "common/phone.h"

#include "database/recordset.h"

using namespace Qt::StringLiterals;

namespace velmora {

Phone phoneOf(const Recordset& phones)
{
    return {phones.text("CO_CODE"_L1), phones.text("EQ_CODE"_L1), phones.text("PH_CODE"_L1),
            phones.text("PH_DESC"_L1), phones.text("PH_MAC"_L1)};
}

QString describe(const Phone& phone)
{
    return phone.code + " - "_L1 + phone.description;
}

} // namespace velmora

// What a run that restarts phones would do.
#pragma once

#include "reboot/reboot.h"

namespace velmora {

struct PlanCounts {
    qsizetype phones = 0;
    /// Phones with a remark, phones that could not be looked up, and codes that no phone has.
    qsizetype withRemarks = 0;
    qsizetype missing = 0;
};

/// Says for each phone of the request, without a connection: code, address, model, procedure ("-" where it is
/// not restarted this way), and remarks, a tab between them. Remarks tell of a phone without an address, and
/// of one whose address another phone of the request has. What can't be looked up is shown (see planVisit());
/// where the run would end, so does this. Throws DatabaseError.
PlanCounts planReboot(MMain& main, const RebootRequest& request, const RunReport& report);

} // namespace velmora

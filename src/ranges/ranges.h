// Ranges: the phone codes that a company may use.
#pragma once

#include "runs/run_report.h"

namespace velmora {

class MMain;

struct RangeRequest {
    QString company;
    /// The first and last code: digits alone.
    QString from;
    QString to;
    /// Whether the codes are removed rather than added.
    bool remove = false;
};

/// Adds every code of the interval to the company's range, or removes it, after asking (M26 in the words of
/// M26_ADD or M26_DEL, and M25 before removing). The codes are whole numbers without leading zeros; the texts
/// of first and last are compared as texts (M24). A company that does not exist (M291) and a code that the
/// range can't hold (M292) are refused before anything is asked.
///
/// Two lines for each code, once it is committed: which it is, and what became of it; one that can't be added
/// is not the end. The main module's stop flag ends the run; what is done stays done. True when the run went
/// through. REQUIRES: `from` and `to` are numbers below 10^9. Throws DatabaseError when the connection or a
/// transaction is lost; a line tells how many codes were done before.
bool generateRanges(MMain& main, const RangeRequest& request, const RunReport& report);

} // namespace velmora

// Many small changes as a few large ones, of which the refused parts are found again.
#pragma once

#include "database/database_error.h"

#include <algorithm>
#include <optional>

namespace velmora {

/// Has `work(first, count)` change the database for `count` items from `first` on, in one statement. Where
/// that is refused, which changes nothing, the items come again in halves, and so on; for a single one that
/// is refused, `refuse(item, error)` is called. So the outcome is that of a statement for each item, in their
/// order. REQUIRES: a transaction. What has undone the transaction is thrown.
template <typename Work, typename Refuse>
void inHalves(qsizetype first, qsizetype count, const Work& work, const Refuse& refuse)
{
    std::optional<DatabaseError> refusal;
    try {
        work(first, count);
    } catch (const DatabaseError& error) {
        if (error.endsTransaction())
            throw;
        refusal = error;
    }
    if (!refusal)
        return;
    if (count == 1) {
        refuse(first, *refusal);
        return;
    }
    // Whoever has waited for a lock in vain would do so again with every half.
    const qsizetype part = refusal->reason() == DatabaseError::Reason::Busy ? 1 : (count + 1) / 2;
    for (qsizetype done = 0; done < count; done += part)
        inHalves(first + done, std::min(part, count - done), work, refuse);
}

} // namespace velmora

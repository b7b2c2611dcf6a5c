// What a new record begins with.
#pragma once

#include "editor/record/record_form.h"
#include "editor/record_list.h"

namespace velmora {

class MMain;

/// Values for the fields of a new record, taken over from where the user is.
struct RecordProposal {
    /// In table order; a null text where the user has to say it.
    QStringList values;
    /// The key column in which the new record has to differ, since all others are taken over: the last one
    /// that no filter names, or the last one of all; -1 without a key. Its value is the one before the new
    /// record's.
    qsizetype counted = -1;
    /// Whether everything is taken over, or the key alone.
    bool all = false;
};

/// Takes over what filters and `record`, which may be empty, say for the key; a filter counts more. With
/// `all` every value of the record is taken over.
RecordProposal proposalFrom(const TableDescription& table, const QList<KeyFilter>& filters,
                            const QStringList& record, bool all);

/// Enters what is proposed into a new record, up to the first field where nothing is: the next code that is
/// still free, where the key is chosen from a list. What other records that fit the same list have there
/// comes first: of hundreds of parameters, those that are in use. Returns the field where the user goes on.
qsizetype propose(MMain& main, RecordForm& form, const RecordProposal& proposal);

} // namespace velmora

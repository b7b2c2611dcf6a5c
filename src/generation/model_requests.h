// The requests for all models of which a company has phones.
#pragma once

#include "generation/generate.h"

namespace velmora {

/// Which phones of a company are meant.
struct PhoneChoice {
    QString company;
    /// All models where it is empty.
    QString equipment = {};
    /// The first and last phone; all where they are empty.
    QString from = {};
    QString to = {};
    /// Only these, where they are named.
    std::optional<QStringList> codes = {};
};

/// One request for each of the models, in the order of their codes, with the folder and levels that are
/// remembered for it. Of all models, those without such phones have none. Throws DatabaseError.
QList<GenerationRequest> requestsFor(MMain& main, const PhoneChoice& choice);

/// Those of the named codes that no phone of the requests has, in their order. Throws DatabaseError.
QStringList codesWithoutPhone(MMain& main, const QList<GenerationRequest>& requests);

} // namespace velmora

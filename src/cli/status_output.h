// What the commands print that compare files with what would be written now.
#pragma once

#include "cli/command.h"
#include "generation/model_requests.h"

namespace velmora {

/// Prints a line for each phone and each orphan and, with details, one for each parameter that differs;
/// remarks go to standard error. Done when every phone's file is current, or it has none.
ExitStatus printStatus(MMain& main, const QList<GenerationRequest>& requests, bool withDetails);

/// Tells which of the named codes belong to no phone; whether all do.
bool tellCodesWithoutPhone(MMain& main, const QList<GenerationRequest>& requests);

} // namespace velmora

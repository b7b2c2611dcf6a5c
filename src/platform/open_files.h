// How many files and connections this process may have open.
#pragma once

namespace velmora {

/// From now on, as many as the system grants: what a login may have open by itself is fewer than the phones
/// that are watched at a time.
void allowManyOpenFiles();

} // namespace velmora

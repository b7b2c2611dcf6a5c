// The platform's version of the Windows shell.
#pragma once

namespace velmora {

/// Whether the system shell library's major version is at least `major`. False where it can't be read, and on
/// systems that have no such library.
bool ShellVersionAtLeast(int major);

} // namespace velmora

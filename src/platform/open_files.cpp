#include "platform/open_files.h"

#include <QtGlobal>

#ifdef Q_OS_UNIX
#include <sys/resource.h>

#include <algorithm>
#endif

namespace velmora {

void allowManyOpenFiles()
{
#ifdef Q_OS_UNIX
    // Not without an end: what this process starts may go through all that it could have open.
    constexpr rlim_t enough = 65536;
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= enough)
        return;
    limit.rlim_cur = std::min(limit.rlim_max, enough);
    setrlimit(RLIMIT_NOFILE, &limit);
#endif
}

} // namespace velmora

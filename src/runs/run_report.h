// Where a long run reports while it goes on.
#pragma once

#include <QString>

#include <functional>

namespace velmora {

/// Takes a line for the list of a run.
using LineSink = std::function<void(const QString& line)>;

/// Both callables must be set.
struct RunReport {
    LineSink line;
    /// How many items of how many are done. Called at the start and after each one; where nothing else is
    /// said, the only moments at which window events may run.
    std::function<void(qsizetype done, qsizetype total)> progress;
};

} // namespace velmora

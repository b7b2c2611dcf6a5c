// Where a long run reports while it goes on.
#pragma once

#include <QString>

#include <functional>

namespace velmora {

/// Takes a line for the list of a run.
using LineSink = std::function<void(const QString& line)>;

/// A line of a run.
struct RunLine {
    QString text;
    /// Whether it tells of something that is not in order.
    bool isRemark = false;
};

/// `line` and `progress` must be set.
struct RunReport {
    LineSink line;
    /// How many items of how many are done. Called at the start and after each one; where nothing else is
    /// said, the only moments at which window events may run.
    std::function<void(qsizetype done, qsizetype total)> progress;
    /// Takes the lines that tell of something that is not in order; `line` does where it is not set.
    LineSink remark = {};

    void tell(const RunLine& one) const { (one.isRemark && remark ? remark : line)(one.text); }
};

} // namespace velmora

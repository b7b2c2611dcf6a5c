// ParamDB.txt: which databases the program works with.
#pragma once

#include <QString>

namespace velmora {

/// The connection strings of ParamDB.txt, the program folder already filled in.
struct ParamDB {
    /// Line 1: the working database.
    QString working;
    /// Line 2: the earlier database that a new one is created from; may be empty.
    QString original;
};

/// Takes the first two lines of `text` and replaces every "$$APPPATH$$" in them by `programFolder`.
ParamDB parseParamDB(const QString& text, const QString& programFolder);

/// Reads ParamDB.txt in `programFolder`. Throws FileError when it can't be read.
ParamDB readParamDB(const QString& programFolder);

} // namespace velmora

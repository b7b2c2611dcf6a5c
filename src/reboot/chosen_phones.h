// Which phones are to be restarted, and how.
#pragma once

#include "database/recordset.h"

#include <QSet>

#include <optional>

namespace velmora {

class MMain;

/// The most phones that are visited at a time.
constexpr int mostAtOnce = 64;

struct RebootRequest {
    QString company;
    /// All models where it is empty.
    QString equipment;
    /// The first and last phone code.
    QString phoneFrom;
    QString phoneTo;
    /// Whether a GXP2000 that is busy is asked again every five seconds, until the user gives up.
    bool waitIfBusy = false;
    /// Only these of them, where they are named.
    std::optional<QStringList> codes = {};
    /// Only those whose file is another one than at their last restart.
    bool changedOnly = false;
    /// How many phones are visited at a time. One by one their lines come as they are told; otherwise those
    /// of a phone come together, when its visit ends.
    int atOnce = 1;
    /// From the start of one visit to that of the next, in milliseconds.
    int pause = 0;
    /// Whether only phones count as restarted that are seen going down and coming back.
    bool confirm = false;
};

/// The phones that are asked for, by code: the rows themselves, and which of them where it is not all.
struct ChosenPhones {
    Recordset rows;
    std::optional<QSet<QString>> codes;
    /// Named, but not there.
    QStringList missing;

    bool contains(const QString& code) const { return !codes || codes->contains(code); }
    qsizetype count() const { return codes ? codes->size() : rows.recordCount(); }
};
/// Throws DatabaseError.
ChosenPhones chosenPhones(MMain& main, const RebootRequest& request);

} // namespace velmora

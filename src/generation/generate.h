// The run that writes the configuration files of the selected phones.
#pragma once

#include "database/recordset.h"
#include "modules/writer.h"
#include "runs/run_report.h"

#include <optional>

namespace velmora {

class MMain;

/// What a run is to write.
struct GenerationRequest {
    QString company;
    QString equipment;
    /// The first and last phone code; they count only when phone-level values are included.
    QString phoneFrom;
    QString phoneTo;
    Levels levels;
    /// Whether a readable source copy is written beside each device file.
    bool withSource = false;
    /// The output folder; it may hold a phone macro and so differ from phone to phone.
    QString folder;
    /// Only these phones, where they are named.
    std::optional<QStringList> codes = {};
};

/// The phones that the request selects, by code. Throws DatabaseError.
Recordset selectedPhones(MMain& main, const GenerationRequest& request);

/// Writes one configuration file per selected phone; without phone-level values, one template per model. The
/// main module's stop flag ends the run after the current phone. Problems are shown or reported as lines;
/// files of earlier phones stay.
///
/// Returns how many phones had a remark: a line besides those that name the phone and say that it is done.
/// Where there are any, a last line tells it too. Nothing comes back when the run did not go through to its
/// end. Throws DatabaseError when the database fails.
std::optional<qsizetype> Generate(MMain& main, const GenerationRequest& request, const RunReport& report);

} // namespace velmora

// The lines in which the command line and the clipboard show what is known of phones: fields apart by tabs.
#pragma once

#include "status/explain.h"
#include "status/phone_status.h"

namespace velmora {

/// Code, model, file name, state, number of parameters that differ, last restart.
QString lineOf(const PhoneStatus& status);

/// Nothing, parameter, value in the file, value now; "(absent)" where there is none.
QString lineOf(const Difference& difference);

/// Code, value as written, level, source, text as stored, remarks.
QString lineOf(const ExplainedParameter& parameter);

} // namespace velmora

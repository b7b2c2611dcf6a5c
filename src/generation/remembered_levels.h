// The levels of parameters that are remembered for a model of a company.
#pragma once

#include "modules/writer.h"

namespace velmora {

class MMain;

/// `levels` changed by what is remembered for the company and model: "0" leaves a level out, a blank leaves
/// it as it is, anything else includes it.
Levels rememberedLevels(MMain& main, const QString& company, const QString& model, Levels levels = {});

/// The text that remembers `levels`, as the row $$DEFGEN holds it.
QString textOf(const Levels& levels);

} // namespace velmora

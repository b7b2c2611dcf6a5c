// What the tables and columns of the database are called in the user's language.
#pragma once

#include "database/engines/engine.h"

namespace velmora {

class MMain;

/// The text of the editor's tab for the table, else the table's name.
QString tableCaption(MMain& main, const QString& table);

/// The text of the database for the column, else the schema's description of it, else its name.
QString columnCaption(MMain& main, const Column& column);

} // namespace velmora

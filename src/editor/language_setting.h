// The language of all texts, a row of the settings that is changed in one step.
#pragma once

#include <QStringList>

namespace velmora {

class MMain;

/// The codes of the languages that the database holds texts in, sorted.
QStringList languagesWithTexts(MMain& main);

/// Whether the current user may change the language: the one who is granted the table of the settings.
bool mayChangeLanguage(MMain& main);

/// Stores the language that every program takes from its next start on.
void changeLanguage(MMain& main, const QString& language);

} // namespace velmora

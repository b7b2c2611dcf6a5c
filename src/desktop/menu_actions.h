// What the items of the main window's menu and its start page do.
#pragma once

#include "mainwindow/FMain.h"

namespace velmora {

class MMain;

/// One action for every item that opens a window. `window` and `main` must outlive them.
FMain::Actions menuActions(FMain& window, MMain& main);

/// Lets the start page of `window` change the language, where the user may. `main` must outlive it.
void offerLanguages(FMain& window, MMain& main);

} // namespace velmora

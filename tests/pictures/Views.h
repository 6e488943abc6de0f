#pragma once

#include "Session.h"

namespace pallwick::pictures {

/// Pictures of the main window in its states, its menus and choosers, and the settings window.
void showViews(Session& session);

}  // namespace pallwick::pictures

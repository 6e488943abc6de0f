#pragma once

#include "Session.h"

namespace pallwick::pictures {

/// Pictures of an overlay over text, in its shapes and states.
void showPanels(Session& session);

}  // namespace pallwick::pictures

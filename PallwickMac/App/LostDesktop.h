#pragma once

namespace pallwick {

/// One line for the user on standard error.
void reportFailure(const char* what);

/// Says why the desktop is gone, in one line on standard error, unless that was said before: both the platform and the
/// toolkit notice, in either order, and a person needs to be told once.
void reportLostDesktop(const char* reason);

/// From now on the toolkit's own message about a lost desktop is such a report, and ends the process with status 1.
void adoptToolkitReportOfLostDesktop();

}  // namespace pallwick

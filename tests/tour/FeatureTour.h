#pragma once

#include <support/MainWindow.h>
#include <support/SecretWindow.h>

#include "Record.h"

namespace pallwick::tour {

/// What there is beside covering and locking, each done as a person does it: glass over text that runs, an overlay that
/// follows a window, a preset, the settings.
class FeatureTour {
public:
    /// `record` is shared by several tours and outlives them.
    explicit FeatureTour(Record& record);

    void walk();

private:
    void layGlassOverRunningText();
    void followTheWindow();
    void keepAPreset();
    void readTheSettings();

    /// Where the glass is at its full strength.
    [[nodiscard]] support::PixelArea inside() const { return support::PixelArea::rectangle(overlay_.inset(20)); }
    void awaitAt(const support::PixelRect& rect);
    void picture(const std::string& name);

    Record& record_;
    support::PrivateDesktop desktop_;
    support::SecretWindow secret_;
    support::Program program_;
    support::MainWindow main_;
    support::PixelRect overlay_;
};

}  // namespace pallwick::tour

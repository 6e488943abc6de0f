#pragma once

#include <support/PrivateDesktop.h>

#include <memory>
#include <string>

namespace pallwick::desktop {

/// The desktops on which what covers must cover: a window manager with and without a compositing manager, the latter
/// as a program of its own or as part of the window manager, and one that fades new windows in.
enum class DesktopKind { openbox, openboxPicom, openboxPicomFading, xfwm4, xfwm4Compositing };

[[nodiscard]] std::string describe(DesktopKind kind);
void PrintTo(DesktopKind kind, std::ostream* stream);

/// Returns when all of the desktop is ready.
[[nodiscard]] std::unique_ptr<support::PrivateDesktop> makeDesktop(DesktopKind kind, int width = 1920,
                                                                   int height = 1080);

}  // namespace pallwick::desktop

/// Instantiates a suite of `TEST_P` with every desktop.
#define PALLWICK_ON_EVERY_DESKTOP(suite)                                                                  \
    INSTANTIATE_TEST_SUITE_P(                                                                             \
        Desktops, suite,                                                                                  \
        testing::Values(DesktopKind::openbox, DesktopKind::openboxPicom, DesktopKind::openboxPicomFading, \
                        DesktopKind::xfwm4, DesktopKind::xfwm4Compositing),                               \
        [](const testing::TestParamInfo<DesktopKind>& instance) { return describe(instance.param); })

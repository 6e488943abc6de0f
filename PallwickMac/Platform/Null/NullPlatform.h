#pragma once

#include <PallwickMac/Platform/DesktopPlatform.h>

namespace pallwick {

/// A desktop that is not there: no screen, no application, and surfaces that keep their frame but never show. For
/// tests of what must work without a desktop; where there is none the program says so and ends instead.
class NullPlatform final : public DesktopPlatform {
    Q_OBJECT

public:
    [[nodiscard]] std::vector<Screen> screens() const override { return {}; }
    [[nodiscard]] std::vector<Rect> screenFrames() const override { return {}; }
    [[nodiscard]] std::optional<std::vector<WindowRecord>> onScreenWindows() const override { return std::nullopt; }
    [[nodiscard]] std::optional<WindowRecord> onScreenWindow(std::uint32_t /*number*/) const override {
        return std::nullopt;
    }
    [[nodiscard]] std::optional<std::int32_t> frontmostProcessID() const override { return std::nullopt; }
    [[nodiscard]] std::optional<std::string> frontmostBundleID() const override { return std::nullopt; }
    [[nodiscard]] Point pointerLocation() const override { return {}; }
    [[nodiscard]] PlatformCapabilities capabilities() const override { return {}; }
    [[nodiscard]] std::unique_ptr<OverlaySurface> makeOverlaySurface(OverlaySurfaceContent& content) override;
};

}  // namespace pallwick

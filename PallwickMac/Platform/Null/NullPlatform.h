#pragma once

#include <PallwickMac/Platform/DesktopPlatform.h>

namespace pallwick {

/// A desktop that is not there: no screen, no application, and surfaces and a status item that never show. For
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
    [[nodiscard]] std::unique_ptr<StatusItem> makeStatusItem(const StatusItemDescription& description) override;
    [[nodiscard]] bool claimInstance(const ActivationToken& /*token*/) override { return true; }
    void activate(QWindow& /*window*/, const ActivationToken& /*token*/) override {}
};

}  // namespace pallwick

#include <PallwickMac/Platform/Null/NullPlatform.h>

namespace pallwick {

namespace {

class NullOverlaySurface final : public OverlaySurface {
public:
    [[nodiscard]] Rect frame() const override { return frame_; }
    void setFrame(const Rect& frame) override { frame_ = frame; }
    [[nodiscard]] bool isVisible() const override { return false; }
    void show() override {}
    void hide() override {}
    void setIgnoresMouseEvents(bool /*ignores*/) override {}
    void setCursorRegions(std::vector<CursorRegion> /*regions*/) override {}
    void setEffectLayer(const EffectLayer& /*layer*/) override {}
    void setNeedsDisplay() override {}
    void setAccessibleName(const QString& /*name*/) override {}

private:
    Rect frame_;
};

class NullStatusItem final : public StatusItem {
public:
    void setIcon(const QIcon& /*icon*/) override {}
    void setMenu(const std::vector<StatusItemEntry>& /*entries*/) override {}
    [[nodiscard]] bool isShown() const override { return false; }
};

}  // namespace

std::unique_ptr<OverlaySurface> NullPlatform::makeOverlaySurface(OverlaySurfaceContent& /*content*/) {
    return std::make_unique<NullOverlaySurface>();
}

std::unique_ptr<StatusItem> NullPlatform::makeStatusItem(const StatusItemDescription& /*description*/) {
    return std::make_unique<NullStatusItem>();
}

}  // namespace pallwick

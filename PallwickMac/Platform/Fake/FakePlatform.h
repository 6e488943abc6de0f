#pragma once

#include <PallwickMac/Platform/DesktopPlatform.h>

#include <QImage>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace pallwick {

class FakePlatform;

/// The application that a test puts in front.
struct FrontmostApplication {
    std::optional<std::int32_t> processID;
    std::optional<std::string> bundleID;
};

/// A surface that shows nothing and remembers everything.
class FakeOverlaySurface final : public OverlaySurface {
public:
    FakeOverlaySurface(FakePlatform& platform, OverlaySurfaceContent& content);
    ~FakeOverlaySurface() override;

    [[nodiscard]] Rect frame() const override { return frame_; }
    void setFrame(const Rect& frame) override;
    [[nodiscard]] bool isVisible() const override { return visible_; }
    void show() override;
    void hide() override;
    void setIgnoresMouseEvents(bool ignores) override;
    void setCursorRegions(std::vector<CursorRegion> regions) override;
    void setEffectLayer(const EffectLayer& layer) override;
    void setNeedsDisplay() override;
    void setAccessibleName(const QString& name) override;

    [[nodiscard]] bool ignoresMouseEvents() const { return ignoresMouseEvents_; }
    [[nodiscard]] const std::vector<CursorRegion>& cursorRegions() const { return cursorRegions_; }
    [[nodiscard]] const EffectLayer& effectLayer() const { return effectLayer_; }
    [[nodiscard]] const QString& accessibleName() const { return accessibleName_; }
    /// How often `setNeedsDisplay` was called.
    [[nodiscard]] int displayRequests() const { return displayRequests_; }

    // What a person does, at a point in view coordinates. Everything but leaving is delivered as a real surface would:
    // not at all while the surface is hidden or ignores the mouse; the global position is derived from the frame. When
    // either begins under a press, the gesture is cancelled and its release never comes.
    void enter();
    void leave();
    void press(const Point& locationInView);
    /// The pointer is now `delta` (screen coordinates, y up) away from where it was pressed.
    void dragTo(const Point& delta);
    void release();

    /// The content drawn at `scale` pixels per point into a transparent image, at least one pixel wide and high.
    [[nodiscard]] QImage render(double scale = 1) const;

private:
    void record(const std::string& call, const std::string& argument = {}) const;
    [[nodiscard]] bool takesMouse() const { return visible_ && !ignoresMouseEvents_; }
    [[nodiscard]] PointerEvent pointerEvent(const Point& mouseLocation) const;
    void cancelGesture();

    friend class FakePlatform;

    /// Null once the platform is gone: a closed panel keeps its surface until the event loop runs, which a test need
    /// not wait for.
    FakePlatform* platform_;
    OverlaySurfaceContent& content_;
    int number_;
    Rect frame_;
    bool visible_ = false;
    bool ignoresMouseEvents_ = false;
    std::vector<CursorRegion> cursorRegions_;
    EffectLayer effectLayer_;
    QString accessibleName_;
    int displayRequests_ = 0;
    /// Global screen coordinates; none while nothing is pressed.
    std::optional<Point> pressedAt_;
};

/// A status item that shows nothing and remembers everything.
class FakeStatusItem final : public StatusItem {
    Q_OBJECT

public:
    FakeStatusItem(FakePlatform& platform, StatusItemDescription description);
    ~FakeStatusItem() override;

    void setIcon(const QIcon& icon) override;
    void setMenu(const std::vector<StatusItemEntry>& entries) override { description_.menu = entries; }
    [[nodiscard]] bool isShown() const override { return shown_; }

    /// As it is now.
    [[nodiscard]] const StatusItemDescription& description() const { return description_; }
    /// How often `setIcon` was called.
    [[nodiscard]] int iconChanges() const { return iconChanges_; }

    // What a person and the desktop do.
    void setShown(bool shown);
    void click(const ActivationToken& token) { Q_EMIT activated(token); }
    void choose(int index) { Q_EMIT entryChosen(index); }
    void requestMenu() { Q_EMIT menuRequested(); }

private:
    FakePlatform& platform_;
    StatusItemDescription description_;
    int iconChanges_ = 0;
    bool shown_ = true;
};

/// A window that was brought to the front, and by what.
struct Activation {
    QWindow* window = nullptr;
    ActivationToken token;
};

/// A desktop without a window system, driven by tests. It emits the same signals as a real one.
class FakePlatform final : public DesktopPlatform {
    Q_OBJECT

public:
    /// One screen of 1440 x 900 points at the origin, number 1, with 25 points of it taken at the bottom.
    FakePlatform();
    ~FakePlatform() override;

    [[nodiscard]] std::vector<Screen> screens() const override { return screens_; }
    [[nodiscard]] std::vector<Rect> screenFrames() const override;
    [[nodiscard]] std::optional<std::vector<WindowRecord>> onScreenWindows() const override;
    [[nodiscard]] std::optional<WindowRecord> onScreenWindow(std::uint32_t number) const override;
    [[nodiscard]] std::optional<std::int32_t> frontmostProcessID() const override;
    [[nodiscard]] std::optional<std::string> frontmostBundleID() const override;
    [[nodiscard]] Point pointerLocation() const override { return pointerLocation_; }
    [[nodiscard]] PlatformCapabilities capabilities() const override { return capabilities_; }
    [[nodiscard]] std::unique_ptr<OverlaySurface> makeOverlaySurface(OverlaySurfaceContent& content) override;
    [[nodiscard]] std::unique_ptr<StatusItem> makeStatusItem(const StatusItemDescription& description) override;
    [[nodiscard]] bool claimInstance(const ActivationToken& /*token*/) override { return true; }
    void activate(QWindow& window, const ActivationToken& token) override { activations_.push_back({&window, token}); }

    void setScreens(std::vector<Screen> screens);
    void setFrontmostApplication(std::optional<FrontmostApplication> application);
    /// Front to back; none makes every question about windows fail.
    void setOnScreenWindows(std::optional<std::vector<WindowRecord>> windows) { windows_ = std::move(windows); }
    void setPointerLocation(const Point& location) { pointerLocation_ = location; }
    void setCapabilities(const PlatformCapabilities& capabilities) { capabilities_ = capabilities; }
    void loseConnection(const QString& reason);
    /// The program is started once more.
    void startAgain(const ActivationToken& token) { Q_EMIT activationRequested(token); }

    /// How often the whole list of windows was asked for, and a single one of them.
    [[nodiscard]] int wholeListQueries() const { return wholeListQueries_; }
    [[nodiscard]] int singleWindowQueries() const { return singleWindowQueries_; }

    /// The surfaces that exist now, oldest first. Not owned.
    [[nodiscard]] const std::vector<FakeOverlaySurface*>& surfaces() const { return surfaces_; }

    /// Null while there is none. Not owned.
    [[nodiscard]] FakeStatusItem* statusItem() const { return statusItem_; }

    /// Every call of `activate`.
    [[nodiscard]] const std::vector<Activation>& activations() const { return activations_; }

    /// Every call that any surface received, in order, as text: "show 2", "setFrame 1 (x, y, w, h)",
    /// "setIgnoresMouseEvents 1 true". The number counts surfaces in the order they were made, from 1.
    [[nodiscard]] const std::vector<std::string>& calls() const { return calls_; }
    void clearCalls() { calls_.clear(); }

private:
    friend class FakeOverlaySurface;
    friend class FakeStatusItem;

    std::vector<Screen> screens_;
    std::optional<FrontmostApplication> frontmost_;
    std::optional<std::vector<WindowRecord>> windows_{std::in_place};
    mutable int wholeListQueries_ = 0;
    mutable int singleWindowQueries_ = 0;
    Point pointerLocation_;
    PlatformCapabilities capabilities_{.compositing = true, .clickThrough = true};
    std::vector<FakeOverlaySurface*> surfaces_;
    std::vector<std::string> calls_;
    int surfacesMade_ = 0;
    FakeStatusItem* statusItem_ = nullptr;
    std::vector<Activation> activations_;
};

}  // namespace pallwick

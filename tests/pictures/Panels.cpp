#include "Panels.h"

#include <support/SecretWindow.h>

namespace pallwick::pictures {
namespace {

using support::PixelPoint;
using support::PixelRect;
using support::SecretWindow;

/// One overlay over a terminal in the screen's top left corner.
class Scene {
public:
    explicit Scene(Session& session)
        : session_(session), secret_(session.desktop(), {.x = pixels(20), .y = pixels(30)}, session.scale()) {
        session_.program().click("Add");
        const PixelRect overlay = session_.program().awaitOverlayCount(1).front().rect;
        const PixelRect text = secret_.rect();
        rect_ = {.x = text.x + pixels(30), .y = text.y + pixels(40), .width = overlay.width, .height = overlay.height};
        const PixelPoint grip = overlay.centre();
        session_.desktop().pointer().drag(grip, {.x = grip.x + rect_.x - overlay.x, .y = grip.y + rect_.y - overlay.y});
        session_.program().awaitOverlayAt(rect_);
    }

    void take(const std::string& name, const std::string& sentence) {
        session_.desktop().pointer().moveTo({.x = pixels(1900), .y = pixels(10)});
        session_.take(name, sentence, part());
    }

    void takeUnderPointer(const std::string& name, const std::string& sentence) {
        session_.desktop().pointer().moveTo(rect_.centre());
        session_.take(name, sentence, part());
    }

private:
    [[nodiscard]] int pixels(double points) const { return session_.program().pixels(points); }
    [[nodiscard]] PixelRect part() const {
        return {.x = 0, .y = 0, .width = rect_.maxX() + pixels(30), .height = rect_.maxY() + pixels(80)};
    }

    Session& session_;
    SecretWindow secret_;
    PixelRect rect_;
};

}  // namespace

void showPanels(Session& session) {
    Scene scene(session);
    scene.take("overlay", "An overlay in edit mode");
    scene.takeUnderPointer("overlay-hovered", "An overlay in edit mode, the pointer over it");

    session.main().setGlass(true);
    session.main().slideTo("Blur", 80);
    session.main().slideTo("Opacity", 40);
    scene.take("glass", "Glass in edit mode");
    scene.takeUnderPointer("glass-hovered", "Glass in edit mode, the pointer over it");
    session.main().setShape("Circle");
    scene.takeUnderPointer("glass-circle-hovered", "A circle of glass in edit mode, the pointer over it");
    session.program().click("Lock");
    scene.take("glass-circle-locked", "A circle of glass, locked");

    session.program().click("Edit");
    session.main().setShape("Rectangle");
    session.main().setGlass(false);
    scene.take("tint", "A tint without glass in edit mode");
    session.program().click("Lock");
    scene.take("tint-locked", "A tint without glass, locked");
    session.program().click("Edit");
    session.main().slideTo("Opacity", 100);
    session.main().setShape("Circle");
    scene.takeUnderPointer("circle-hovered", "A circle in edit mode, the pointer over it");
    session.program().click("Lock");
    scene.take("circle-locked", "A circle, locked");
}

}  // namespace pallwick::pictures

#pragma once

#include <PallwickMac/Platform/OverlaySurface.h>

#include <QPainter>

#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace pallwick {

/// A surface's content that writes down what it is told and fills all it may draw on with one colour.
class RecordingContent final : public OverlaySurfaceContent {
public:
    QColor colour{0, 128, 255};
    std::optional<DrawingState> state;
    int drawings = 0;
    /// "down 10,20", in view coordinates; the next is the place on the screen.
    std::vector<std::string> events;
    std::vector<Point> screenLocations;

    void draw(QPainter& painter) override {
        ++drawings;
        painter.resetTransform();
        painter.fillRect(painter.viewport(), colour);
    }
    [[nodiscard]] std::optional<DrawingState> drawingState() const override { return state; }
    void mouseEntered() override { events.emplace_back("entered"); }
    void mouseExited() override { events.emplace_back("exited"); }
    void mouseDown(const PointerEvent& event) override { add("down", event); }
    void mouseDragged(const PointerEvent& event) override { add("dragged", event); }
    void mouseUp() override { events.emplace_back("up"); }
    void gestureCancelled() override { events.emplace_back("cancelled"); }

private:
    void add(const char* what, const PointerEvent& event) {
        std::ostringstream text;
        text << what << " " << event.locationInView.x << "," << event.locationInView.y;
        events.push_back(text.str());
        screenLocations.push_back(event.mouseLocation);
    }
};

}  // namespace pallwick

#pragma once

#include <PallwickMacCore/Models/BlurStyle.h>
#include <PallwickMacCore/Models/Date.h>
#include <PallwickMacCore/Models/Geometry.h>
#include <PallwickMacCore/Models/OverlayAnchor.h>
#include <PallwickMacCore/Models/OverlayShape.h>
#include <PallwickMacCore/Models/UUID.h>
#include <PallwickMacCore/Models/WindowAttachment.h>

#include <cstdint>
#include <optional>

namespace pallwick {

/// What a new overlay is made of; every member but the display and the frame has a default.
struct BlurOverlayFields {
    /// A fresh random identity where none is given.
    std::optional<UUID> id = std::nullopt;
    std::uint32_t displayID = 0;
    Rect frame;
    BlurStyle style = BlurStyle();
    OverlayShape shape = OverlayShape::rectangle;
    OverlayAnchor anchor = OverlayAnchor::screen;
    std::optional<WindowAttachment> windowAttachment = std::nullopt;
    /// The current time where none is given; each missing date is a clock read of its own.
    std::optional<Date> createdAt = std::nullopt;
    std::optional<Date> updatedAt = std::nullopt;
};

/// One manual overlay: a value, compared field by field.
class BlurOverlay {
public:
    /// Stores every field unchanged but the frame, which is standardized.
    explicit BlurOverlay(BlurOverlayFields fields, const Clock& clock = Date::now);

    /// Identity; never changes.
    [[nodiscard]] const UUID& id() const { return id_; }
    [[nodiscard]] const Date& createdAt() const { return createdAt_; }

private:
    UUID id_;

public:
    /// Display number of the display it was placed on.
    std::uint32_t displayID;
    /// Global screen coordinates. Assignment does not standardize.
    Rect frame;
    BlurStyle style;
    OverlayShape shape;
    OverlayAnchor anchor;
    std::optional<WindowAttachment> windowAttachment;

private:
    Date createdAt_;

public:
    /// When a change was last stored.
    Date updatedAt;

    friend bool operator==(const BlurOverlay&, const BlurOverlay&) = default;
};

}  // namespace pallwick

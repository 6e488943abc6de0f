#pragma once

#include <PallwickMacCore/Models/BlurOverlay.h>
#include <PallwickMacCore/Models/TrackedWindow.h>

#include <string>
#include <string_view>

namespace pallwick::test {

/// The UUID whose text is `digit` throughout.
inline UUID uuidOf(char digit) {
    std::string text(36, digit);
    for (const std::size_t hyphen : {8U, 13U, 18U, 23U}) {
        text[hyphen] = '-';
    }
    return UUID::fromString(text).value();
}

/// Window number 77 of process 512.
inline TrackedWindow sampleWindow() {
    return {.id = 77,
            .ownerPID = 512,
            .ownerName = "Mail",
            .title = "Inbox",
            .frame = {.x = 100, .y = 100, .width = 800, .height = 600}};
}

inline WindowAttachment attachmentOwnedBy(std::int32_t ownerPID) {
    WindowAttachment attachment;
    attachment.ownerPID = ownerPID;
    return attachment;
}

/// An overlay on display 1 with the identity `uuidOf(digit)` and fixed dates.
inline BlurOverlay overlayOf(char digit) {
    return BlurOverlay({.id = uuidOf(digit),
                        .displayID = 1,
                        .frame = {.x = 160, .y = 160, .width = 320, .height = 180},
                        .createdAt = Date{1.5},
                        .updatedAt = Date{2.25}});
}

/// A circle that is attached to `sampleWindow` at the offset (12, 40).
inline BlurOverlay attachedOverlay() {
    BlurOverlay overlay = overlayOf('A');
    overlay.shape = OverlayShape::circle;
    overlay.anchor = OverlayAnchor::window;
    overlay.windowAttachment = WindowAttachment(sampleWindow(), {.x = 112, .y = 140, .width = 320, .height = 180});
    return overlay;
}

/// `attachedOverlay` as JSON, in the order of the fields.
inline constexpr std::string_view attachedOverlayText =
    R"({"id":"AAAAAAAA-AAAA-AAAA-AAAA-AAAAAAAAAAAA","displayID":1,"frame":[[160,160],[320,180]],)"
    R"("style":{"intensity":50,"colorHex":"#000000","opacity":100,"glassBlur":true},"shape":"circle",)"
    R"("anchor":"window","windowAttachment":{"windowID":77,"ownerPID":512,"ownerName":"Mail","title":"Inbox",)"
    R"("offset":[12,40]},"createdAt":1.5,"updatedAt":2.25})";

/// `sampleWindow` as JSON, in the order of the fields.
inline constexpr std::string_view sampleWindowText =
    R"({"id":77,"ownerPID":512,"ownerName":"Mail","title":"Inbox","frame":[[100,100],[800,600]]})";

}  // namespace pallwick::test

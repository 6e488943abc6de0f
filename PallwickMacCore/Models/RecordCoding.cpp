#include <PallwickMacCore/Models/RecordCoding.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace pallwick {

namespace {

JsonValue pair(double first, double second) {
    return {JsonArray{{first}, {second}}};
}

template <typename Enumeration>
Enumeration decodeRawValue(const JsonDecoder& decoder, std::string_view expectation) {
    const std::optional<Enumeration> value = fromRawValue<Enumeration>(decoder.string());
    if (!value) {
        decoder.fail(DecodingError::Kind::dataCorrupted, std::string(expectation));
    }
    return *value;
}

}  // namespace

JsonValue JsonCoding<UUID>::encode(const UUID& uuid) {
    return {uuid.uuidString()};
}

UUID JsonCoding<UUID>::decode(const JsonDecoder& decoder) {
    const std::optional<UUID> uuid = UUID::fromString(decoder.string());
    if (!uuid) {
        decoder.fail(DecodingError::Kind::dataCorrupted, "expected a UUID");
    }
    return *uuid;
}

JsonValue JsonCoding<Date>::encode(const Date& date) {
    return {date.secondsSinceReferenceDate};
}

Date JsonCoding<Date>::decode(const JsonDecoder& decoder) {
    return {decoder.number()};
}

JsonValue JsonCoding<Point>::encode(const Point& point) {
    return pair(point.x, point.y);
}

Point JsonCoding<Point>::decode(const JsonDecoder& decoder) {
    constexpr std::string_view expectation = "expected two numbers";
    return {.x = decoder.element<double>(0, expectation), .y = decoder.element<double>(1, expectation)};
}

JsonValue JsonCoding<Rect>::encode(const Rect& rect) {
    return {JsonArray{pair(rect.x, rect.y), pair(rect.width, rect.height)}};
}

Rect JsonCoding<Rect>::decode(const JsonDecoder& decoder) {
    constexpr std::string_view expectation = "expected two arrays of two numbers";
    const auto origin = decoder.element<Point>(0, expectation);
    const auto size = decoder.element<Point>(1, expectation);
    return {.x = origin.x, .y = origin.y, .width = size.x, .height = size.y};
}

JsonValue JsonCoding<OverlayShape>::encode(OverlayShape shape) {
    return {std::string(rawValue(shape))};
}

OverlayShape JsonCoding<OverlayShape>::decode(const JsonDecoder& decoder) {
    return decodeRawValue<OverlayShape>(decoder, R"(expected "rectangle" or "circle")");
}

JsonValue JsonCoding<OverlayAnchor>::encode(OverlayAnchor anchor) {
    return {std::string(rawValue(anchor))};
}

OverlayAnchor JsonCoding<OverlayAnchor>::decode(const JsonDecoder& decoder) {
    return decodeRawValue<OverlayAnchor>(decoder, R"(expected "screen", "application" or "window")");
}

JsonValue JsonCoding<BlurStyle>::encode(const BlurStyle& style) {
    JsonObject object;
    appendField(object, "intensity", style.intensity);
    appendField(object, "colorHex", style.colorHex);
    appendField(object, "opacity", style.opacity);
    appendField(object, "glassBlur", style.glassBlur);
    return {std::move(object)};
}

BlurStyle JsonCoding<BlurStyle>::decode(const JsonDecoder& decoder) {
    // Field by field, because the constructor normalises.
    BlurStyle style;
    style.intensity = decoder.required<std::int64_t>("intensity");
    style.colorHex = decoder.required<std::string>("colorHex");
    style.opacity = decoder.required<std::int64_t>("opacity");
    style.glassBlur = decoder.required<bool>("glassBlur");
    return style;
}

JsonValue JsonCoding<WindowAttachment>::encode(const WindowAttachment& attachment) {
    JsonObject object;
    appendField(object, "windowID", attachment.windowID);
    appendField(object, "ownerPID", attachment.ownerPID);
    appendField(object, "ownerName", attachment.ownerName);
    appendField(object, "title", attachment.title);
    appendField(object, "offset", attachment.offset);
    return {std::move(object)};
}

WindowAttachment JsonCoding<WindowAttachment>::decode(const JsonDecoder& decoder) {
    WindowAttachment attachment;
    attachment.windowID = decoder.required<std::uint32_t>("windowID");
    attachment.ownerPID = decoder.required<std::int32_t>("ownerPID");
    attachment.ownerName = decoder.required<std::string>("ownerName");
    attachment.title = decoder.required<std::string>("title");
    attachment.offset = decoder.required<Point>("offset");
    return attachment;
}

JsonValue JsonCoding<TrackedWindow>::encode(const TrackedWindow& window) {
    JsonObject object;
    appendField(object, "id", window.id);
    appendField(object, "ownerPID", window.ownerPID);
    appendField(object, "ownerName", window.ownerName);
    appendField(object, "title", window.title);
    appendField(object, "frame", window.frame);
    return {std::move(object)};
}

TrackedWindow JsonCoding<TrackedWindow>::decode(const JsonDecoder& decoder) {
    return {.id = decoder.required<std::uint32_t>("id"),
            .ownerPID = decoder.required<std::int32_t>("ownerPID"),
            .ownerName = decoder.required<std::string>("ownerName"),
            .title = decoder.required<std::string>("title"),
            .frame = decoder.required<Rect>("frame")};
}

JsonValue JsonCoding<BlurOverlay>::encode(const BlurOverlay& overlay) {
    JsonObject object;
    appendField(object, "id", overlay.id());
    appendField(object, "displayID", overlay.displayID);
    appendField(object, "frame", overlay.frame);
    appendField(object, "style", overlay.style);
    appendField(object, "shape", overlay.shape);
    appendField(object, "anchor", overlay.anchor);
    if (overlay.windowAttachment) {
        appendField(object, "windowAttachment", *overlay.windowAttachment);
    }
    appendField(object, "createdAt", overlay.createdAt());
    appendField(object, "updatedAt", overlay.updatedAt);
    return {std::move(object)};
}

BlurOverlay JsonCoding<BlurOverlay>::decode(const JsonDecoder& decoder) {
    BlurOverlayFields fields{.id = decoder.required<UUID>("id"),
                             .displayID = decoder.required<std::uint32_t>("displayID"),
                             .frame = decoder.required<Rect>("frame"),
                             .style = decoder.required<BlurStyle>("style"),
                             .shape = decoder.required<OverlayShape>("shape"),
                             .anchor = decoder.required<OverlayAnchor>("anchor"),
                             .windowAttachment = decoder.optional<WindowAttachment>("windowAttachment"),
                             .createdAt = decoder.required<Date>("createdAt"),
                             .updatedAt = decoder.required<Date>("updatedAt")};
    const Rect storedFrame = fields.frame;
    BlurOverlay overlay(std::move(fields));
    // The constructor has standardized it.
    overlay.frame = storedFrame;
    return overlay;
}

}  // namespace pallwick

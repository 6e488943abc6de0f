#pragma once

#include <PallwickMacCore/Models/BlurOverlay.h>
#include <PallwickMacCore/Models/JsonCoding.h>
#include <PallwickMacCore/Models/TrackedWindow.h>

namespace pallwick {

// The JSON form of the records. A record is an object whose members are its fields, under their names and in their
// order; all are required but an overlay's attachment, whose absence is a missing key (or, when read, null). Reading
// stores what is there, so a value outside its range and a frame with a negative extent come through.

/// The canonical text, upper case; either case is read.
template <>
struct JsonCoding<UUID> {
    static JsonValue encode(const UUID& uuid);
    static UUID decode(const JsonDecoder& decoder);
};

/// A number of seconds since 2001-01-01 00:00:00 UTC.
template <>
struct JsonCoding<Date> {
    static JsonValue encode(const Date& date);
    static Date decode(const JsonDecoder& decoder);
};

/// `[x, y]`. Further elements are ignored when read.
template <>
struct JsonCoding<Point> {
    static JsonValue encode(const Point& point);
    static Point decode(const JsonDecoder& decoder);
};

/// `[[x, y], [width, height]]`. Further elements are ignored when read.
template <>
struct JsonCoding<Rect> {
    static JsonValue encode(const Rect& rect);
    static Rect decode(const JsonDecoder& decoder);
};

/// The raw value.
template <>
struct JsonCoding<OverlayShape> {
    static JsonValue encode(OverlayShape shape);
    static OverlayShape decode(const JsonDecoder& decoder);
};

/// The raw value.
template <>
struct JsonCoding<OverlayAnchor> {
    static JsonValue encode(OverlayAnchor anchor);
    static OverlayAnchor decode(const JsonDecoder& decoder);
};

template <>
struct JsonCoding<BlurStyle> {
    static JsonValue encode(const BlurStyle& style);
    static BlurStyle decode(const JsonDecoder& decoder);
};

template <>
struct JsonCoding<WindowAttachment> {
    static JsonValue encode(const WindowAttachment& attachment);
    static WindowAttachment decode(const JsonDecoder& decoder);
};

template <>
struct JsonCoding<TrackedWindow> {
    static JsonValue encode(const TrackedWindow& window);
    static TrackedWindow decode(const JsonDecoder& decoder);
};

template <>
struct JsonCoding<BlurOverlay> {
    static JsonValue encode(const BlurOverlay& overlay);
    static BlurOverlay decode(const JsonDecoder& decoder);
};

}  // namespace pallwick

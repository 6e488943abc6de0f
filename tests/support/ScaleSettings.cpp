#include "ScaleSettings.h"

#include <bit>
#include <cmath>
#include <cstring>
#include <string_view>
#include <vector>

namespace pallwick::support {
namespace {

/// XSETTINGS is read in the byte order that its first byte tells.
class Message {
public:
    void add(std::uint8_t value) { bytes_.push_back(value); }
    void add(std::uint16_t value) { addBytes(&value, sizeof value); }
    void add(std::uint32_t value) { addBytes(&value, sizeof value); }
    void add(std::string_view text) { addBytes(text.data(), text.size()); }
    void pad() { bytes_.resize((bytes_.size() + 3) / 4 * 4); }
    [[nodiscard]] const std::vector<std::uint8_t>& bytes() const { return bytes_; }

private:
    void addBytes(const void* data, std::size_t size) {
        const std::size_t before = bytes_.size();
        bytes_.resize(before + size);
        std::memcpy(bytes_.data() + before, data, size);
    }

    std::vector<std::uint8_t> bytes_;
};

}  // namespace

ScaleSettings::ScaleSettings(PrivateDesktop& desktop, double scale)
    : desktop_(desktop), window_(xcb_generate_id(desktop.x().get())) {
    xcb_connection_t* connection = desktop_.x().get();
    xcb_create_window(connection, 0, window_, desktop_.x().root(), -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    setScale(scale);
    xcb_set_selection_owner(connection, window_, desktop_.x().atom("_XSETTINGS_S0"), XCB_CURRENT_TIME);
    desktop_.x().roundTrip();
}

ScaleSettings::~ScaleSettings() {
    xcb_destroy_window(desktop_.x().get(), window_);
    desktop_.x().roundTrip();
}

void ScaleSettings::setScale(double scale) {
    constexpr std::string_view name = "Xft/DPI";
    constexpr double usualDpi = 96;
    constexpr double unitsPerDot = 1024;
    constexpr std::uint8_t integer = 0;
    Message message;
    message.add(static_cast<std::uint8_t>(std::endian::native == std::endian::little ? 0 : 1));
    message.pad();
    message.add(++serial_);
    message.add(std::uint32_t{1});
    message.add(integer);
    message.add(std::uint8_t{0});
    message.add(static_cast<std::uint16_t>(name.size()));
    message.add(name);
    message.pad();
    message.add(serial_);
    message.add(static_cast<std::uint32_t>(std::lround(usualDpi * scale * unitsPerDot)));
    const xcb_atom_t settings = desktop_.x().atom("_XSETTINGS_SETTINGS");
    xcb_change_property(desktop_.x().get(), XCB_PROP_MODE_REPLACE, window_, settings, settings, 8,
                        static_cast<std::uint32_t>(message.bytes().size()), message.bytes().data());
    desktop_.x().roundTrip();
}

}  // namespace pallwick::support

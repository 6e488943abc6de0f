#include "NotificationArea.h"

#include <algorithm>
#include <array>

namespace pallwick::desktop {

using support::Reply;

namespace {

constexpr int breadth = 80;

std::uint32_t pixelOf(support::Colour colour) {
    return static_cast<std::uint32_t>(colour.red << 16 | colour.green << 8 | colour.blue);
}

xcb_visualid_t alphaVisual(const xcb_screen_t* screen) {
    for (auto depth = xcb_screen_allowed_depths_iterator(screen); depth.rem != 0; xcb_depth_next(&depth)) {
        if (depth.data->depth == 32) {
            return xcb_depth_visuals(depth.data)->visual_id;
        }
    }
    throw std::runtime_error("no visual with an alpha channel");
}

}  // namespace

NotificationArea::NotificationArea(support::PrivateDesktop& desktop, Options options)
    : desktop_(desktop), options_(options), connection_(xcb_connect(desktop.server().display().c_str(), nullptr)) {
    screen_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    makeWindow();
    announce();
    desktop_.x().addSource(xcb_get_file_descriptor(connection_));
}

NotificationArea::~NotificationArea() {
    if (connection_ != nullptr) {
        desktop_.x().removeSource(xcb_get_file_descriptor(connection_));
        xcb_disconnect(connection_);
    }
}

xcb_atom_t NotificationArea::atom(const std::string& name) {
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        connection_, xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()), nullptr));
    return reply->atom;
}

void NotificationArea::makeWindow() {
    window_ = xcb_generate_id(connection_);
    const std::array<std::uint32_t, 3> values{pixelOf(options_.ground), 1, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY};
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_, screen_->root, 0, 0, breadth, breadth, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen_->root_visual,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values.data());
    xcb_map_window(connection_, window_);
}

void NotificationArea::announce() {
    if (options_.wantsAlpha) {
        const xcb_visualid_t visual = alphaVisual(screen_);
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, atom("_NET_SYSTEM_TRAY_VISUAL"),
                            XCB_ATOM_VISUALID, 32, 1, &visual);
    }
    const xcb_atom_t selection = atom("_NET_SYSTEM_TRAY_S0");
    xcb_set_selection_owner(connection_, window_, selection, XCB_CURRENT_TIME);
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = screen_->root;
    message.type = atom("MANAGER");
    message.data.data32[1] = selection;
    message.data.data32[2] = window_;
    xcb_send_event(connection_, 0, screen_->root, XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
    process();
}

void NotificationArea::process() {
    const Reply<xcb_get_input_focus_reply_t> done(
        xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection_)}) {
        handle(*event);
    }
    xcb_flush(connection_);
}

void NotificationArea::handle(const xcb_generic_event_t& event) {
    switch (event.response_type & 0x7f) {
        case XCB_CLIENT_MESSAGE: {
            const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
            if (message.type == atom("_NET_SYSTEM_TRAY_OPCODE") && message.data.data32[1] == 0) {
                embed(message.data.data32[2]);
            }
            break;
        }
        case XCB_DESTROY_NOTIFY:
            std::erase(icons_, reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window);
            break;
        default:
            break;
    }
}

void NotificationArea::embed(xcb_window_t icon) {
    // As the widgets of real panels do, so that their end is not the icons' end.
    xcb_change_save_set(connection_, XCB_SET_MODE_INSERT, icon);
    xcb_reparent_window(connection_, icon, window_, 0, 0);
    icons_.push_back(icon);
    setIconSide(options_.iconSide);
    if (wantsToBeMapped(icon)) {
        xcb_map_window(connection_, icon);
    }
    xcb_client_message_event_t embedded{};
    embedded.response_type = XCB_CLIENT_MESSAGE;
    embedded.format = 32;
    embedded.window = icon;
    embedded.type = atom("_XEMBED");
    embedded.data.data32[3] = window_;
    xcb_send_event(connection_, 0, icon, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&embedded));
}

bool NotificationArea::wantsToBeMapped(xcb_window_t icon) {
    const xcb_atom_t property = atom("_XEMBED_INFO");
    const Reply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(connection_, xcb_get_property(connection_, 0, icon, property, property, 0, 2), nullptr));
    if (!reply || xcb_get_property_value_length(reply.get()) < 8) {
        return false;
    }
    return (static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()))[1] & 1U) != 0;
}

const std::vector<xcb_window_t>& NotificationArea::icons() {
    process();
    return icons_;
}

xcb_window_t NotificationArea::awaitIcon() {
    desktop_.x().await(
        "one icon in the notification area",
        [&] { return icons().size() == 1 && desktop_.windows().isViewable(icons_.front()); },
        [&] { return std::to_string(icons_.size()) + " icons"; });
    return icons_.front();
}

void NotificationArea::awaitNoIcon() {
    desktop_.x().await("no icon in the notification area", [&] { return icons().empty(); });
}

support::PixelRect NotificationArea::iconRect() const {
    return {.x = 0, .y = 0, .width = options_.iconSide, .height = options_.iconSide};
}

void NotificationArea::setIconSide(int side) {
    options_.iconSide = side;
    const std::array<std::uint32_t, 2> size{static_cast<std::uint32_t>(side), static_cast<std::uint32_t>(side)};
    for (const xcb_window_t icon : icons_) {
        xcb_configure_window(connection_, icon, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size.data());
    }
    xcb_flush(connection_);
}

void NotificationArea::close() {
    xcb_destroy_window(connection_, window_);
    process();
}

}  // namespace pallwick::desktop

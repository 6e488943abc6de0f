// A plain X client for tests: a window with stripes in a strong colour that says on standard output, one line an
// event, what reaches it. Its commands and lines are described in TestClient.h.

#include <poll.h>
#include <unistd.h>
#include <xcb/xcb.h>
#include <xcb/xcb_icccm.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace {

struct FreeReply {
    void operator()(void* reply) const { std::free(reply); }
};
template <typename T>
using Reply = std::unique_ptr<T, FreeReply>;

struct Settings {
    std::string title = "Test client";
    std::string windowClass = "test-client";
    std::int16_t x = 0;
    std::int16_t y = 0;
    std::uint16_t width = 300;
    std::uint16_t height = 200;
    std::uint32_t ground = 0xffffff;
    std::uint32_t mark = 0xff0000;
    bool overrideRedirect = false;
    bool undecorated = false;
    bool fullScreen = false;
};

std::uint32_t parseColour(const std::string& text) {
    return static_cast<std::uint32_t>(std::stoul(text, nullptr, 16));
}

Settings parse(const std::vector<std::string>& arguments) {
    Settings settings;
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        const std::string& option = arguments[index];
        const auto value = [&] { return arguments.at(++index); };
        if (option == "--override-redirect") {
            settings.overrideRedirect = true;
        } else if (option == "--undecorated") {
            settings.undecorated = true;
        } else if (option == "--full-screen") {
            settings.fullScreen = true;
        } else if (option == "--title") {
            settings.title = value();
        } else if (option == "--class") {
            settings.windowClass = value();
        } else if (option == "--ground") {
            settings.ground = parseColour(value());
        } else if (option == "--mark") {
            settings.mark = parseColour(value());
        } else if (option == "--rect") {
            std::istringstream(value()) >> settings.x >> settings.y >> settings.width >> settings.height;
        } else {
            throw std::invalid_argument(option);
        }
    }
    return settings;
}

class Client {
public:
    explicit Client(Settings settings);
    ~Client() { xcb_disconnect(connection_); }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    void run();

private:
    xcb_atom_t atom(const std::string& name);
    void makeWindow();
    void setText(xcb_atom_t property, xcb_atom_t type, const std::string& text);
    void paint();
    void setFullScreen(bool on);
    void obey(const std::string& line);
    /// False when the client shall end.
    bool handle(const xcb_generic_event_t& event);
    void handleEvents();

    Settings settings_;
    xcb_connection_t* connection_;
    xcb_screen_t* screen_ = nullptr;
    xcb_window_t window_ = XCB_WINDOW_NONE;
    xcb_gcontext_t pen_ = XCB_NONE;
    xcb_atom_t deleteWindow_ = XCB_ATOM_NONE;
    xcb_atom_t ping_ = XCB_ATOM_NONE;
    bool running_ = true;
};

Client::Client(Settings settings) : settings_(std::move(settings)), connection_(xcb_connect(nullptr, nullptr)) {
    if (xcb_connection_has_error(connection_) != 0) {
        throw std::runtime_error("no display");
    }
    screen_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    deleteWindow_ = atom("WM_DELETE_WINDOW");
    ping_ = atom("PALLWICK_TEST_PING");
    makeWindow();
}

xcb_atom_t Client::atom(const std::string& name) {
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        connection_, xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()), nullptr));
    return reply->atom;
}

void Client::setText(xcb_atom_t property, xcb_atom_t type, const std::string& text) {
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, property, type, 8,
                        static_cast<std::uint32_t>(text.size()), text.data());
}

void Client::makeWindow() {
    window_ = xcb_generate_id(connection_);
    const std::array<std::uint32_t, 3> values{settings_.ground, settings_.overrideRedirect ? 1U : 0U,
                                              XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_BUTTON_PRESS |
                                                  XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_KEY_PRESS |
                                                  XCB_EVENT_MASK_FOCUS_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY |
                                                  XCB_EVENT_MASK_BUTTON_MOTION};
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_, screen_->root, settings_.x, settings_.y,
                      settings_.width, settings_.height, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, screen_->root_visual,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values.data());
    pen_ = xcb_generate_id(connection_);
    xcb_create_gc(connection_, pen_, window_, XCB_GC_FOREGROUND, &settings_.mark);

    setText(XCB_ATOM_WM_NAME, XCB_ATOM_STRING, settings_.title);
    setText(atom("_NET_WM_NAME"), atom("UTF8_STRING"), settings_.title);
    using namespace std::string_literals;
    setText(XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, settings_.windowClass + "\0"s + settings_.windowClass + "\0"s);
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, atom("WM_PROTOCOLS"), XCB_ATOM_ATOM, 32, 1,
                        &deleteWindow_);
    const auto pid = static_cast<std::uint32_t>(::getpid());
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, atom("_NET_WM_PID"), XCB_ATOM_CARDINAL, 32, 1,
                        &pid);
    if (settings_.undecorated) {
        // Flags 2: the third field, the decorations, is meant; 0: none of them.
        const std::array<std::uint32_t, 5> hints{2, 0, 0, 0, 0};
        const xcb_atom_t property = atom("_MOTIF_WM_HINTS");
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, property, property, 32, hints.size(),
                            hints.data());
    }
    if (settings_.fullScreen) {
        const xcb_atom_t state = atom("_NET_WM_STATE_FULLSCREEN");
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, atom("_NET_WM_STATE"), XCB_ATOM_ATOM, 32, 1,
                            &state);
    }
    // As if the user had placed it, with the window itself and not its frame at that place.
    xcb_size_hints_t hints{};
    xcb_icccm_size_hints_set_position(&hints, 1, settings_.x, settings_.y);
    xcb_icccm_size_hints_set_size(&hints, 1, settings_.width, settings_.height);
    xcb_icccm_size_hints_set_win_gravity(&hints, XCB_GRAVITY_STATIC);
    xcb_icccm_set_wm_normal_hints(connection_, window_, &hints);

    xcb_map_window(connection_, window_);
    std::cout << "window " << window_ << std::endl;
}

void Client::paint() {
    constexpr std::uint16_t stripe = 4;
    constexpr int distance = 16;
    std::vector<xcb_rectangle_t> stripes;
    for (int x = 0; x < settings_.width; x += distance) {
        stripes.push_back({.x = static_cast<std::int16_t>(x), .y = 0, .width = stripe, .height = settings_.height});
    }
    xcb_clear_area(connection_, 0, window_, 0, 0, 0, 0);
    xcb_poly_fill_rectangle(connection_, window_, pen_, static_cast<std::uint32_t>(stripes.size()), stripes.data());
    const Reply<xcb_get_input_focus_reply_t> done(
        xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

void Client::setFullScreen(bool on) {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window_;
    event.type = atom("_NET_WM_STATE");
    event.data.data32[0] = on ? 1 : 0;
    event.data.data32[1] = atom("_NET_WM_STATE_FULLSCREEN");
    xcb_send_event(connection_, 0, screen_->root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&event));
}

void Client::obey(const std::string& line) {
    std::istringstream words(line);
    std::string command;
    words >> command;
    if (command == "map") {
        xcb_map_window(connection_, window_);
    } else if (command == "unmap") {
        xcb_unmap_window(connection_, window_);
    } else if (command == "raise") {
        const std::uint32_t above = XCB_STACK_MODE_ABOVE;
        xcb_configure_window(connection_, window_, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    } else if (command == "place") {
        std::array<std::int32_t, 4> place{};
        words >> place[0] >> place[1] >> place[2] >> place[3];
        xcb_configure_window(
            connection_, window_,
            XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
            place.data());
    } else if (command == "colours") {
        std::string ground;
        std::string mark;
        words >> ground >> mark;
        settings_.ground = parseColour(ground);
        settings_.mark = parseColour(mark);
        xcb_change_window_attributes(connection_, window_, XCB_CW_BACK_PIXEL, &settings_.ground);
        xcb_change_gc(connection_, pen_, XCB_GC_FOREGROUND, &settings_.mark);
        paint();
    } else if (command == "full-screen") {
        std::string state;
        words >> state;
        setFullScreen(state == "on");
    } else if (command == "quit") {
        running_ = false;
    } else {
        throw std::invalid_argument(line);
    }
}

bool Client::handle(const xcb_generic_event_t& event) {
    switch (event.response_type & 0x7f) {
        case XCB_BUTTON_PRESS:
        case XCB_BUTTON_RELEASE: {
            const auto& button = reinterpret_cast<const xcb_button_press_event_t&>(event);
            std::cout << ((event.response_type & 0x7f) == XCB_BUTTON_PRESS ? "press " : "release ")
                      << int{button.detail} << " " << button.event_x << " " << button.event_y << std::endl;
            break;
        }
        case XCB_MOTION_NOTIFY: {
            const auto& motion = reinterpret_cast<const xcb_motion_notify_event_t&>(event);
            std::cout << "drag " << motion.event_x << " " << motion.event_y << std::endl;
            break;
        }
        case XCB_KEY_PRESS:
            std::cout << "key " << int{reinterpret_cast<const xcb_key_press_event_t&>(event).detail} << std::endl;
            break;
        case XCB_FOCUS_IN:
            std::cout << "focus in" << std::endl;
            break;
        case XCB_FOCUS_OUT:
            std::cout << "focus out" << std::endl;
            break;
        case XCB_MAP_NOTIFY:
            std::cout << "map" << std::endl;
            break;
        case XCB_UNMAP_NOTIFY:
            std::cout << "unmap" << std::endl;
            break;
        case XCB_CONFIGURE_NOTIFY: {
            const auto& place = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
            settings_.width = place.width;
            settings_.height = place.height;
            std::cout << "configure " << place.x << " " << place.y << " " << place.width << " " << place.height
                      << std::endl;
            break;
        }
        case XCB_EXPOSE:
            if (reinterpret_cast<const xcb_expose_event_t&>(event).count == 0) {
                paint();
                std::cout << "paint" << std::endl;
            }
            break;
        case XCB_CLIENT_MESSAGE: {
            const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
            if (message.type == ping_) {
                std::cout << "pong " << message.data.data32[0] << std::endl;
            } else if (message.data.data32[0] == deleteWindow_) {
                std::cout << "close" << std::endl;
                return false;
            }
            break;
        }
        default:
            break;
    }
    return true;
}

void Client::handleEvents() {
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection_)}) {
        running_ = running_ && handle(*event);
    }
    if (xcb_connection_has_error(connection_) != 0) {
        running_ = false;
    }
}

void Client::run() {
    std::string input;
    while (running_) {
        handleEvents();
        xcb_flush(connection_);
        if (!running_) {
            break;
        }
        std::array<pollfd, 2> waiting{{{.fd = xcb_get_file_descriptor(connection_), .events = POLLIN, .revents = 0},
                                       {.fd = STDIN_FILENO, .events = POLLIN, .revents = 0}}};
        ::poll(waiting.data(), waiting.size(), -1);
        if (waiting[1].revents != 0) {
            std::array<char, 512> buffer{};
            const ssize_t count = ::read(STDIN_FILENO, buffer.data(), buffer.size());
            if (count <= 0) {
                return;
            }
            input.append(buffer.data(), static_cast<std::size_t>(count));
            for (std::size_t end = 0; (end = input.find('\n')) != std::string::npos;) {
                obey(input.substr(0, end));
                input.erase(0, end + 1);
            }
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    try {
        Client client(parse({argv + 1, argv + argc}));
        client.run();
    } catch (const std::exception& error) {
        std::cerr << "pallwick-test-client: " << error.what() << std::endl;
        return 1;
    }
    return 0;
}

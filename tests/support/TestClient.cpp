#include "TestClient.h"

#include <algorithm>

namespace pallwick::support {
namespace {

bool startsWith(const std::string& line, const std::string& prefix) {
    return line.starts_with(prefix);
}

std::string hexadecimal(Colour colour) {
    return describe(colour).substr(1);
}

}  // namespace

TestClient::TestClient(PrivateDesktop& desktop, const Options& options) : desktop_(desktop) {
    std::vector<std::string> command{PALLWICK_TEST_CLIENT,
                                     "--title",
                                     options.title,
                                     "--class",
                                     options.windowClass,
                                     "--ground",
                                     hexadecimal(options.ground),
                                     "--mark",
                                     hexadecimal(options.mark),
                                     "--rect",
                                     std::to_string(options.rect.x) + " " + std::to_string(options.rect.y) + " " +
                                         std::to_string(options.rect.width) + " " +
                                         std::to_string(options.rect.height)};
    if (options.overrideRedirect) {
        command.emplace_back("--override-redirect");
    }
    if (options.undecorated) {
        command.emplace_back("--undecorated");
    }
    if (options.fullScreen) {
        command.emplace_back("--full-screen");
    }
    process_ =
        std::make_unique<Process>(command, Process::Options{.environment = desktop.environment(), .descriptors = {}});
    const std::string line = process_->readLine();
    window_ = static_cast<xcb_window_t>(std::stoul(line.substr(line.find(' ') + 1)));
    awaitEvent("paint");
}

PixelRect TestClient::rect() {
    return desktop_.windows().rect(window_).value_or(PixelRect{});
}

const std::vector<std::string>& TestClient::events() {
    // The server hands a client its events in order: whatever came before this message is read before its answer.
    ++pings_;
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window_;
    event.type = desktop_.x().atom("PALLWICK_TEST_PING");
    event.data.data32[0] = pings_;
    xcb_send_event(desktop_.x().get(), 0, window_, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&event));
    desktop_.x().roundTrip();
    const std::string answer = "pong " + std::to_string(pings_);
    const Deadline deadline;
    for (std::string line; (line = process_->readLine(deadline)) != answer;) {
        events_.push_back(line);
    }
    return events_;
}

int TestClient::count(const std::string& prefix) {
    return static_cast<int>(
        std::ranges::count_if(events(), [&](const std::string& line) { return startsWith(line, prefix); }));
}

void TestClient::forgetEvents() {
    events();
    events_.clear();
}

std::string TestClient::awaitEvent(const std::string& prefix) {
    const Deadline deadline;
    auto found = std::ranges::find_if(events_, [&](const std::string& line) { return startsWith(line, prefix); });
    while (found == events_.end()) {
        try {
            events_.push_back(process_->readLine(deadline));
        } catch (const Timeout& timeout) {
            throw Timeout("the test client awaited \"" + prefix + "\": " + timeout.what());
        }
        found = startsWith(events_.back(), prefix) ? std::prev(events_.end()) : events_.end();
    }
    return *found;
}

void TestClient::setColours(Colour ground, Colour mark) {
    tell("colours " + hexadecimal(ground) + " " + hexadecimal(mark));
}

void TestClient::place(const PixelRect& rect) {
    tell("place " + std::to_string(rect.x) + " " + std::to_string(rect.y) + " " + std::to_string(rect.width) + " " +
         std::to_string(rect.height));
}

void TestClient::raise() {
    tell("raise");
}

void TestClient::map() {
    tell("map");
}

void TestClient::unmap() {
    tell("unmap");
}

void TestClient::setFullScreen(bool on) {
    tell(std::string("full-screen ") + (on ? "on" : "off"));
    const PixelRect screen = desktop_.x().rootRect();
    desktop_.x().await("the test client over the whole screen", [&] { return (rect() == screen) == on; });
}

void TestClient::tell(const std::string& command) {
    process_->writeLine(command);
}

}  // namespace pallwick::support

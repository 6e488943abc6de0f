#include <PallwickMac/Platform/ActivationToken.h>

#include <charconv>
#include <cstdlib>
#include <string_view>
#include <utility>

namespace pallwick {

namespace {

std::uint32_t timeIn(std::string_view id) {
    constexpr std::string_view mark = "_TIME";
    const std::size_t place = id.rfind(mark);
    if (place == std::string_view::npos) {
        return 0;
    }
    const std::string_view digits = id.substr(place + mark.size());
    std::uint32_t time = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), time);
    return error == std::errc() && end == digits.data() + digits.size() ? time : 0;
}

}  // namespace

ActivationToken ActivationToken::ofThisStart() {
    for (const char* variable : {"DESKTOP_STARTUP_ID", "XDG_ACTIVATION_TOKEN"}) {
        const char* id = std::getenv(variable);
        if (id != nullptr && *id != '\0') {
            return ofStartupID(id);
        }
    }
    return {};
}

ActivationToken ActivationToken::ofStartupID(std::string id) {
    const std::uint32_t time = timeIn(id);
    return {.id = std::move(id), .time = time};
}

}  // namespace pallwick

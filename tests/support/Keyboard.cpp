#include "Keyboard.h"

#include <xcb/xcb_keysyms.h>
#include <xcb/xtest.h>

#include <memory>
#include <vector>

namespace pallwick::support {
namespace {

struct FreeKeySymbols {
    void operator()(xcb_key_symbols_t* symbols) const { xcb_key_symbols_free(symbols); }
};
using KeySymbols = std::unique_ptr<xcb_key_symbols_t, FreeKeySymbols>;

void send(XConnection& x, std::uint8_t type, xcb_keycode_t code) {
    xcb_test_fake_input(x.get(), type, code, XCB_CURRENT_TIME, noWindow, 0, 0, 0);
    x.roundTrip();
}

xcb_keycode_t keycode(xcb_key_symbols_t* symbols, xcb_keysym_t key) {
    const Reply<xcb_keycode_t> codes(xcb_key_symbols_get_keycode(symbols, key));
    if (!codes || *codes == XCB_NO_SYMBOL) {
        throw std::runtime_error("the keyboard has no key for keysym " + std::to_string(key));
    }
    return *codes;
}

}  // namespace

void Keyboard::press(xcb_keysym_t key, std::initializer_list<xcb_keysym_t> modifiers) {
    const KeySymbols symbols(xcb_key_symbols_alloc(x_.get()));
    std::vector<xcb_keycode_t> held;
    for (const xcb_keysym_t modifier : modifiers) {
        held.push_back(keycode(symbols.get(), modifier));
    }
    const xcb_keycode_t code = keycode(symbols.get(), key);
    if (xcb_key_symbols_get_keysym(symbols.get(), code, 0) != key) {
        held.push_back(keycode(symbols.get(), XK_Shift_L));
    }
    for (const xcb_keycode_t modifier : held) {
        send(x_, XCB_KEY_PRESS, modifier);
    }
    send(x_, XCB_KEY_PRESS, code);
    send(x_, XCB_KEY_RELEASE, code);
    for (auto modifier = held.rbegin(); modifier != held.rend(); ++modifier) {
        send(x_, XCB_KEY_RELEASE, *modifier);
    }
}

void Keyboard::type(const std::string& text) {
    for (const char character : text) {
        // The keysym of a printable Latin-1 character is its code.
        press(static_cast<unsigned char>(character));
    }
}

}  // namespace pallwick::support

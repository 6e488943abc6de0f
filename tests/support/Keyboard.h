#pragma once

#include <X11/keysym.h>

#include <initializer_list>
#include <string>

#include "XConnection.h"

namespace pallwick::support {

/// The keyboard, typed on as a real one is (XTEST). What is typed goes to the window that has the focus.
class Keyboard {
public:
    explicit Keyboard(XConnection& x) : x_(x) {}

    /// A key of <X11/keysymdef.h> with modifiers held, as in `press(XK_e, {XK_Control_L})`.
    /// Throws `std::runtime_error` for a key that the server's layout lacks.
    void press(xcb_keysym_t key, std::initializer_list<xcb_keysym_t> modifiers = {});
    /// Printable ASCII.
    void type(const std::string& text);

private:
    XConnection& x_;
};

}  // namespace pallwick::support

// Another program that keeps a window above all clients in the way that the program itself does: by the program's own
// stack guard. Started with the four numbers of a rectangle, it says which window it is, and ends with its input.

#include <PallwickMac/Platform/X11/StackGuard.h>
#include <PallwickMac/Platform/X11/SurfaceWindow.h>
#include <xcb/xcb_aux.h>

#include <array>
#include <cstdlib>
#include <iostream>
#include <string>

int main(int argc, char** argv) {
    using namespace pallwick::x11;
    if (argc != 5) {
        return 1;
    }
    const auto number = [argv](int index) { return std::atoi(argv[index]); };
    const Connection connection;
    StackGuard guard(connection);
    SurfaceWindow window(connection);
    window.place({.x = number(1), .y = number(2), .width = number(3), .height = number(4)},
                 guard.windowBelowNextPanel());
    guard.add(window.id());
    connection.flush();
    std::cout << window.id() << std::endl;
    for (std::string line; std::getline(std::cin, line);) {
        // The events of its own window are nobody's concern.
        while (void* event = xcb_poll_for_event(connection.xcb())) {
            std::free(event);
        }
        xcb_aux_sync(connection.xcb());
        std::cout << line << std::endl;
    }
    return 0;
}

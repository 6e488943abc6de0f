#include <array>
#include <iostream>

#include "Panels.h"
#include "Views.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: pallwick-pictures <output directory>" << std::endl;
        return 2;
    }
    try {
        using namespace pallwick::pictures;
        Gallery gallery(argv[1]);
        const std::array<Look, 5> looks{{{.name = "light"},
                                         {.name = "dark", .dark = true},
                                         {.name = "light-2x", .scale = 2},
                                         {.name = "dark-2x", .scale = 2, .dark = true},
                                         {.name = "large-text", .largeText = true}}};
        for (const Look& look : looks) {
            Session session(gallery, look);
            showViews(session);
        }
        const std::array<Look, 8> desktops{
            {{.name = "light"},
             {.name = "light-composited", .composited = true},
             {.name = "dark", .dark = true},
             {.name = "dark-composited", .dark = true, .composited = true},
             {.name = "light-2x", .scale = 2},
             {.name = "light-2x-composited", .scale = 2, .composited = true},
             {.name = "dark-2x", .scale = 2, .dark = true},
             {.name = "dark-2x-composited", .scale = 2, .dark = true, .composited = true}}};
        for (const Look& look : desktops) {
            Session session(gallery, look);
            showPanels(session);
        }
        std::cout << gallery.count() << " pictures and index.txt are in " << argv[1] << std::endl;
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "pallwick-pictures: " << error.what() << std::endl;
        return 1;
    }
}

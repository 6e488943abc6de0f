#include <iostream>

#include <support/Process.h>

#include "FeatureTour.h"
#include "Tour.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: pallwick-tour <output directory>" << std::endl;
        return 2;
    }
    try {
        using pallwick::tour::Compositor;
        using pallwick::tour::Tour;
        pallwick::tour::Record record(argv[1]);
        Tour(record, 1, Compositor::none, "").walk();
        Tour(record, 1, Compositor::picom, "-composited").walk();
        Tour(record, 2, Compositor::none, "-scale-2").walk();
        Tour(record, 1, Compositor::none, "-dark").showDark();
        record.attempt("the other features", [&] { pallwick::tour::FeatureTour(record).walk(); });
        record.heading("Pictures are in " + std::string(argv[1]));
        std::cout << record.passed() << " passed, " << record.failed() << " failed" << std::endl;
        return record.failed() == 0 ? 0 : 1;
    } catch (const std::exception& error) {
        std::cerr << "pallwick-tour: " << error.what() << std::endl;
        return 1;
    }
}

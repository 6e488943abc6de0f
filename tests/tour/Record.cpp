#include "Record.h"

#include <iostream>

namespace pallwick::tour {

void Record::heading(const std::string& text) {
    std::cout << "\n" << text << std::endl;
}

void Record::check(bool isTrue, const std::string& sentence, const std::string& seen) {
    ++(isTrue ? passed_ : failed_);
    std::cout << (isTrue ? "  ok    " : "  FAIL  ") << sentence;
    if (!isTrue && !seen.empty()) {
        std::cout << "; seen: " << seen;
    }
    std::cout << std::endl;
}

bool Record::attempt(const std::string& part, const std::function<void()>& body) {
    try {
        body();
        return true;
    } catch (const std::exception& error) {
        check(false, part, error.what());
        return false;
    }
}

}  // namespace pallwick::tour

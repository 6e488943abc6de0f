#pragma once

#include <PallwickMacCore/Models/Date.h>

namespace pallwick::test {

/// A clock that is one second later at every read, starting with second 1001. Must outlive the clocks it hands out.
class SteppingClock {
public:
    SteppingClock() = default;
    SteppingClock(const SteppingClock&) = delete;
    SteppingClock& operator=(const SteppingClock&) = delete;

    [[nodiscard]] Clock clock() {
        return [this] { return Date{1000.0 + ++reads_}; };
    }

    [[nodiscard]] int reads() const { return reads_; }

private:
    int reads_ = 0;
};

}  // namespace pallwick::test

#include "Deadline.h"

#include <algorithm>

namespace pallwick::support {

int Deadline::remainingMilliseconds() const {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end_ - std::chrono::steady_clock::now());
    return static_cast<int>(std::max<std::chrono::milliseconds::rep>(0, left.count()));
}

}  // namespace pallwick::support

#pragma once

#include <stdexcept>

namespace pallwick {

/// Base of every error that the core throws. `what()` is one sentence, fit for a status line.
class CoreError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace pallwick

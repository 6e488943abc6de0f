#pragma once

#include <cstdlib>
#include <memory>

namespace pallwick::x11 {

struct FreeDeleter {
    void operator()(void* memory) const noexcept { std::free(memory); }
};

/// Owns what the xcb library allocates with malloc: replies, events, errors. Null where a request failed.
template <typename T>
using Reply = std::unique_ptr<T, FreeDeleter>;

/// Takes ownership of an xcb reply, event or error.
template <typename T>
[[nodiscard]] Reply<T> own(T* memory) {
    return Reply<T>(memory);
}

}  // namespace pallwick::x11

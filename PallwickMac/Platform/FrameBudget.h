#pragma once

#include <chrono>
#include <optional>

namespace pallwick {

/// How often what changes without end is drawn anew, so that all of its pictures together take a small share of one
/// processor: as often as a person can tell where a picture is cheap, and less often where it is dear, as on a server
/// that draws without a graphics card, though no fewer than five times a second. It reads no clock of its own.
class FrameBudget {
public:
    using Duration = std::chrono::steady_clock::duration;

    /// A frame has taken so long, the server's part included.
    void note(Duration cost);

    /// From one frame to the next, in the long run.
    [[nodiscard]] Duration interval() const;

private:
    /// The running mean; none before the first frame.
    std::optional<Duration> cost_;
};

}  // namespace pallwick

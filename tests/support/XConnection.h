#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Deadline.h"
#include "PixelRect.h"
#include "Process.h"

namespace pallwick::support {

struct FreeReply {
    void operator()(void* reply) const { std::free(reply); }
};

/// Owns a reply or an event of xcb.
template <typename T>
using Reply = std::unique_ptr<T, FreeReply>;

/// What the protocol calls None; xcb has it as several enumerators of different types.
inline constexpr xcb_window_t noWindow = 0;
inline constexpr xcb_atom_t noAtom = 0;

/// The test's own connection to a private X server, and the one place where tests wait.
///
/// It listens to everything that a waited-for condition can depend on: windows that come, go and change anywhere
/// in the tree, their properties, the keyboard focus, owners of well-known selections and, once a condition on
/// pixels was used, every change on the screen.
class XConnection {
public:
    /// Throws `std::runtime_error` when there is no such display.
    explicit XConnection(const std::string& display);
    ~XConnection();
    XConnection(const XConnection&) = delete;
    XConnection& operator=(const XConnection&) = delete;

    [[nodiscard]] xcb_connection_t* get() const { return connection_; }
    /// A second connection, to read pictures of windows with. It asks for no event: while a server puts the picture of
    /// redirected windows together it reports the damage that this does, and writes that event into the middle of the
    /// very reply, after which nothing on that connection makes sense any more (seen on Xvfb 21.1).
    [[nodiscard]] xcb_connection_t* forPictures() const { return forPictures_; }
    [[nodiscard]] xcb_window_t root() const { return root_; }
    /// The root window, at 0,0.
    [[nodiscard]] PixelRect rootRect() const { return rootRect_; }
    xcb_atom_t atom(std::string_view name);
    std::string atomName(xcb_atom_t atom);

    /// Returns once the server has done everything that was asked of it before.
    void roundTrip();

    /// Returns as soon as `condition` holds. It is asked once at first and then after each event.
    /// Throws `Timeout` with `what` and `seen()` when it does not come to hold, at once when the server or one of
    /// the guarded processes ends, for then it never will.
    void await(const std::string& what, const std::function<bool()>& condition,
               const std::function<std::string()>& seen = {}, std::chrono::milliseconds patience = defaultPatience);

    /// From now on `await` asks its condition after changes of pixels too.
    void listenToPixels();
    /// `await` also wakes when `descriptor` becomes readable, which must be read by the condition.
    void addSource(int descriptor) { sources_.push_back(descriptor); }
    void removeSource(int descriptor) { std::erase(sources_, descriptor); }
    /// `await` gives up when `process` ends; `process` must stay until `release`.
    void guard(Process& process) { guarded_.push_back(&process); }
    void release(Process& process) { std::erase(guarded_, &process); }

private:
    void listen(xcb_window_t window);
    void handle(const xcb_generic_event_t& event);
    void failIfHopeless(const std::string& what);

    xcb_connection_t* connection_;
    xcb_connection_t* forPictures_;
    xcb_window_t root_ = noWindow;
    PixelRect rootRect_;
    std::map<std::string, xcb_atom_t, std::less<>> atoms_;
    std::vector<int> sources_;
    std::vector<Process*> guarded_;
    std::uint32_t damage_ = 0;
    std::uint8_t damageEvent_ = 0;
};

}  // namespace pallwick::support

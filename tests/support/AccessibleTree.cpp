#include "AccessibleTree.h"

#include <gio/gio.h>

#include <array>
#include <cmath>

namespace pallwick::support {
namespace {

constexpr const char* accessibleInterface = "org.a11y.atspi.Accessible";
constexpr const char* componentInterface = "org.a11y.atspi.Component";
constexpr const char* actionInterface = "org.a11y.atspi.Action";
constexpr const char* valueInterface = "org.a11y.atspi.Value";
constexpr const char* textInterface = "org.a11y.atspi.Text";
constexpr const char* propertiesInterface = "org.freedesktop.DBus.Properties";
constexpr const char* rootPath = "/org/a11y/atspi/accessible/root";
constexpr int callMilliseconds = 10000;

struct UnrefObject {
    void operator()(void* object) const { g_object_unref(object); }
};
struct UnrefVariant {
    void operator()(GVariant* variant) const { g_variant_unref(variant); }
};
using Variant = std::unique_ptr<GVariant, UnrefVariant>;

std::string stringIn(GVariant* variant) {
    return g_variant_get_string(variant, nullptr);
}

}  // namespace

/// A connection to the bus that a desktop's accessibility service runs beside the session bus.
class AccessibleConnection {
public:
    AccessibleConnection(const std::string& address, const PrivateDesktop& desktop, double scale)
        : desktop_(desktop), scale_(scale) {
        GError* error = nullptr;
        connection_.reset(g_dbus_connection_new_for_address_sync(
            address.c_str(),
            static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                              G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
            nullptr, nullptr, &error));
        if (!connection_) {
            const std::string message = error->message;
            g_error_free(error);
            throw std::runtime_error("no connection to " + address + ": " + message);
        }
        // The default is to end the whole test when a bus goes away.
        g_dbus_connection_set_exit_on_close(connection_.get(), FALSE);
    }

    /// Takes over a floating `arguments`. Empty when the call failed.
    [[nodiscard]] Variant call(const std::string& owner, const std::string& path, const char* interface,
                               const char* method, GVariant* arguments = nullptr) const {
        return Variant(g_dbus_connection_call_sync(connection_.get(), owner.c_str(), path.c_str(), interface, method,
                                                   arguments, nullptr, G_DBUS_CALL_FLAGS_NONE, callMilliseconds,
                                                   nullptr, nullptr));
    }

    /// Empty when there is no such property.
    [[nodiscard]] Variant property(const std::string& owner, const std::string& path, const char* interface,
                                   const char* name) const {
        const Variant reply = call(owner, path, propertiesInterface, "Get", g_variant_new("(ss)", interface, name));
        if (!reply) {
            return nullptr;
        }
        const Variant boxed(g_variant_get_child_value(reply.get(), 0));
        return Variant(g_variant_get_variant(boxed.get()));
    }

    /// Qt keeps a monitor's corner where it is in pixels and scales what lies on it about that corner.
    [[nodiscard]] PixelRect pixels(const PixelRect& points) const {
        const auto scaled = [this](int length) { return static_cast<int>(std::lround(length * scale_)); };
        PixelPoint corner;
        for (const PixelRect& monitor : desktop_.monitors()) {
            const PixelRect inPoints{.x = monitor.x,
                                     .y = monitor.y,
                                     .width = static_cast<int>(monitor.width / scale_),
                                     .height = static_cast<int>(monitor.height / scale_)};
            if (inPoints.contains(points.centre())) {
                corner = {.x = monitor.x, .y = monitor.y};
                break;
            }
        }
        return {.x = corner.x + scaled(points.x - corner.x),
                .y = corner.y + scaled(points.y - corner.y),
                .width = scaled(points.width),
                .height = scaled(points.height)};
    }

private:
    std::unique_ptr<GDBusConnection, UnrefObject> connection_;
    const PrivateDesktop& desktop_;
    double scale_;
};

std::string Accessible::name() const {
    const Variant value = connection_->property(owner_, path_, accessibleInterface, "Name");
    return value ? stringIn(value.get()) : std::string();
}

std::string Accessible::description() const {
    const Variant value = connection_->property(owner_, path_, accessibleInterface, "Description");
    return value ? stringIn(value.get()) : std::string();
}

std::string Accessible::role() const {
    const Variant reply = connection_->call(owner_, path_, accessibleInterface, "GetRoleName");
    if (!reply) {
        return {};
    }
    const Variant name(g_variant_get_child_value(reply.get(), 0));
    return stringIn(name.get());
}

std::string Accessible::text() const {
    // Offset -1 means the end.
    const Variant reply = connection_->call(owner_, path_, textInterface, "GetText", g_variant_new("(ii)", 0, -1));
    if (!reply) {
        return {};
    }
    const Variant content(g_variant_get_child_value(reply.get(), 0));
    return stringIn(content.get());
}

std::optional<double> Accessible::value() const {
    const Variant value = connection_->property(owner_, path_, valueInterface, "CurrentValue");
    if (!value) {
        return std::nullopt;
    }
    return g_variant_get_double(value.get());
}

void Accessible::setValue(double value) const {
    const Variant reply =
        connection_->call(owner_, path_, propertiesInterface, "Set",
                          g_variant_new("(ssv)", valueInterface, "CurrentValue", g_variant_new_double(value)));
    if (!reply) {
        throw std::runtime_error(role() + " \"" + name() + "\" takes no value");
    }
}

bool Accessible::has(AccessibleState state) const {
    const Variant reply = connection_->call(owner_, path_, accessibleInterface, "GetState");
    if (!reply) {
        return false;
    }
    // Two words of 32 states each.
    std::array<guint32, 2> words{};
    const Variant list(g_variant_get_child_value(reply.get(), 0));
    for (gsize index = 0; index < words.size() && index < g_variant_n_children(list.get()); ++index) {
        g_variant_get_child(list.get(), index, "u", &words.at(index));
    }
    const auto bit = static_cast<std::size_t>(state);
    return (words.at(bit / 32) >> (bit % 32) & 1U) != 0;
}

PixelRect Accessible::extents() const {
    // Coordinate type 0: relative to the screen.
    const Variant reply = connection_->call(owner_, path_, componentInterface, "GetExtents", g_variant_new("(u)", 0U));
    PixelRect rect;
    if (reply) {
        g_variant_get(reply.get(), "((iiii))", &rect.x, &rect.y, &rect.width, &rect.height);
    }
    return connection_->pixels(rect);
}

std::vector<Accessible> Accessible::children() const {
    std::vector<Accessible> result;
    const Variant reply = connection_->call(owner_, path_, accessibleInterface, "GetChildren");
    if (reply) {
        const Variant list(g_variant_get_child_value(reply.get(), 0));
        for (gsize index = 0; index < g_variant_n_children(list.get()); ++index) {
            const char* owner = nullptr;
            const char* path = nullptr;
            g_variant_get_child(list.get(), index, "(&s&o)", &owner, &path);
            result.emplace_back(connection_, owner, path);
        }
    }
    return result;
}

std::vector<std::string> Accessible::actions() const {
    std::vector<std::string> names;
    const Variant reply = connection_->call(owner_, path_, actionInterface, "GetActions");
    if (reply) {
        const Variant list(g_variant_get_child_value(reply.get(), 0));
        for (gsize index = 0; index < g_variant_n_children(list.get()); ++index) {
            const char* name = nullptr;
            const char* description = nullptr;
            const char* key = nullptr;
            g_variant_get_child(list.get(), index, "(&s&s&s)", &name, &description, &key);
            names.emplace_back(name);
        }
    }
    return names;
}

void Accessible::doAction(const std::string& action) const {
    const std::vector<std::string> names = actions();
    for (std::size_t index = 0; index < names.size(); ++index) {
        if (names[index] == action) {
            const Variant reply = connection_->call(owner_, path_, actionInterface, "DoAction",
                                                    g_variant_new("(i)", static_cast<gint32>(index)));
            if (reply) {
                return;
            }
        }
    }
    throw std::runtime_error(role() + " \"" + name() + "\" has no action \"" + action + "\"");
}

void Accessible::grabFocus() const {
    const Variant reply = connection_->call(owner_, path_, componentInterface, "GrabFocus");
}

std::vector<Accessible> Accessible::findAll(const std::function<bool(const Accessible&)>& test) const {
    std::vector<Accessible> found;
    if (test(*this)) {
        found.push_back(*this);
    }
    for (const Accessible& child : children()) {
        std::vector<Accessible> more = child.findAll(test);
        found.insert(found.end(), more.begin(), more.end());
    }
    return found;
}

std::optional<Accessible> Accessible::find(const std::string& wantedRole, const std::string& wantedName) const {
    if (role() == wantedRole && (wantedName.empty() || name() == wantedName)) {
        return *this;
    }
    for (const Accessible& child : children()) {
        if (std::optional<Accessible> found = child.find(wantedRole, wantedName)) {
            return found;
        }
    }
    return std::nullopt;
}

std::string Accessible::describe() const {
    std::string lines = role() + " \"" + name() + "\" " + support::describe(extents()) + "\n";
    for (const Accessible& child : children()) {
        const std::string inner = child.describe();
        std::size_t start = 0;
        for (std::size_t end = 0; (end = inner.find('\n', start)) != std::string::npos; start = end + 1) {
            lines += "  " + inner.substr(start, end - start + 1);
        }
    }
    return lines;
}

AccessibleTree::AccessibleTree(PrivateDesktop& desktop, pid_t program, double scale) {
    const AccessibleConnection session(desktop.sessionBusAddress(), desktop, scale);
    const Variant reply = session.call("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress");
    if (!reply) {
        throw std::runtime_error("the desktop has no accessibility service");
    }
    const Variant address(g_variant_get_child_value(reply.get(), 0));
    const auto connection = std::make_shared<AccessibleConnection>(stringIn(address.get()), desktop, scale);
    const Deadline deadline;
    while (!application_) {
        // The registry's root has one child a program.
        const Variant list = connection->call("org.a11y.atspi.Registry", rootPath, accessibleInterface, "GetChildren");
        const Variant children(list ? g_variant_get_child_value(list.get(), 0) : nullptr);
        for (gsize index = 0; children && index < g_variant_n_children(children.get()); ++index) {
            const char* owner = nullptr;
            const char* path = nullptr;
            g_variant_get_child(children.get(), index, "(&s&o)", &owner, &path);
            const Variant process =
                connection->call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                 "GetConnectionUnixProcessID", g_variant_new("(s)", owner));
            guint32 pid = 0;
            if (process) {
                g_variant_get(process.get(), "(u)", &pid);
            }
            if (static_cast<pid_t>(pid) == program) {
                application_.emplace(connection, owner, path);
            }
        }
        if (!application_ && deadline.hasPassed()) {
            throw Timeout("process " + std::to_string(program) + " did not register with the accessibility service");
        }
    }
}

Accessible AccessibleTree::await(const std::string& role, const std::string& name) const {
    std::optional<Accessible> found;
    awaitCondition(role + " \"" + name + "\"", [&] {
        found = find(role, name);
        return found.has_value();
    });
    return *found;
}

void AccessibleTree::awaitCondition(const std::string& what, const std::function<bool()>& condition) const {
    const Deadline deadline;
    while (!condition()) {
        if (deadline.hasPassed()) {
            throw Timeout("awaited in vain: " + what + "; the accessible tree:\n" + application_->describe());
        }
        // So that a condition that asks the program nothing still gives it its turn.
        static_cast<void>(application_->role());
    }
}

}  // namespace pallwick::support

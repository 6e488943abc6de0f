#include "AccessibleEvents.h"

#include <gio/gio.h>

#include <stdexcept>

namespace pallwick::support {
namespace {

struct UnrefObject {
    void operator()(void* object) const { g_object_unref(object); }
};
struct UnrefVariant {
    void operator()(GVariant* variant) const { g_variant_unref(variant); }
};
struct UnrefContext {
    void operator()(GMainContext* context) const { g_main_context_unref(context); }
};
using Connection = std::unique_ptr<GDBusConnection, UnrefObject>;
using Variant = std::unique_ptr<GVariant, UnrefVariant>;

Connection connect(const std::string& address) {
    Connection connection(g_dbus_connection_new_for_address_sync(
        address.c_str(),
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr));
    if (!connection) {
        throw std::runtime_error("no connection to " + address);
    }
    g_dbus_connection_set_exit_on_close(connection.get(), FALSE);
    return connection;
}

/// Takes over a floating `arguments`.
Variant call(const Connection& connection, const char* owner, const char* path, const char* interface,
             const char* method, GVariant* arguments = nullptr) {
    Variant reply(g_dbus_connection_call_sync(connection.get(), owner, path, interface, method, arguments, nullptr,
                                              G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
    if (!reply) {
        throw std::runtime_error(std::string(interface) + "." + method + " failed");
    }
    return reply;
}

std::string accessibilityAddress(const PrivateDesktop& desktop) {
    const Connection session = connect(desktop.sessionBusAddress());
    const Variant reply = call(session, "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress");
    const Variant address(g_variant_get_child_value(reply.get(), 0));
    return g_variant_get_string(address.get(), nullptr);
}

}  // namespace

class AccessibleEvents::Bus {
public:
    Bus(const std::string& address, const std::string& property, std::vector<std::string>& sources)
        : context_(g_main_context_new()) {
        // Whatever is subscribed here is handed out where this context turns.
        g_main_context_push_thread_default(context_.get());
        connection_ = connect(address);
        subscription_ = g_dbus_connection_signal_subscribe(connection_.get(), nullptr, "org.a11y.atspi.Event.Object",
                                                           "PropertyChange", nullptr, property.c_str(),
                                                           G_DBUS_SIGNAL_FLAGS_NONE, &Bus::hear, &sources, nullptr);
        g_main_context_pop_thread_default(context_.get());
        // Programs tell only what somebody has asked the registry for.
        const std::string event = "object:property-change:" + property;
        call(connection_, "org.a11y.atspi.Registry", "/org/a11y/atspi/registry", "org.a11y.atspi.Registry",
             "RegisterEvent", g_variant_new("(sass)", event.c_str(), nullptr, ""));
    }
    ~Bus() {
        g_dbus_connection_signal_unsubscribe(connection_.get(), subscription_);
        turn();
    }
    Bus(const Bus&) = delete;
    Bus& operator=(const Bus&) = delete;

    /// Returns when what the bus had for us before is handed out.
    void turn() {
        call(connection_, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetId");
        while (g_main_context_iteration(context_.get(), FALSE) != FALSE) {
        }
    }

private:
    static void hear(GDBusConnection* /*connection*/, const gchar* /*sender*/, const gchar* path,
                     const gchar* /*interface*/, const gchar* /*signal*/, GVariant* /*arguments*/, gpointer sources) {
        static_cast<std::vector<std::string>*>(sources)->emplace_back(path);
    }

    std::unique_ptr<GMainContext, UnrefContext> context_;
    Connection connection_;
    guint subscription_ = 0;
};

AccessibleEvents::AccessibleEvents(PrivateDesktop& desktop, const std::string& property)
    : bus_(std::make_unique<Bus>(accessibilityAddress(desktop), property, sources_)) {}

AccessibleEvents::~AccessibleEvents() = default;

const std::vector<std::string>& AccessibleEvents::sources() {
    bus_->turn();
    return sources_;
}

}  // namespace pallwick::support

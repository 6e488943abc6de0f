#include "StatusNotifierPanel.h"

#include <algorithm>

namespace pallwick::desktop {

using support::Deadline;
using support::Timeout;

namespace {

constexpr const char* watcherName = "org.kde.StatusNotifierWatcher";
constexpr const char* watcherPath = "/StatusNotifierWatcher";
constexpr const char* itemInterface = "org.kde.StatusNotifierItem";
constexpr const char* itemPath = "/StatusNotifierItem";
constexpr const char* menuInterface = "com.canonical.dbusmenu";
constexpr const char* busName = "org.freedesktop.DBus";
constexpr int callMilliseconds = 10000;

constexpr const char* interfaces = R"(<node><interface name="org.kde.StatusNotifierWatcher">
<method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
<method name="RegisterStatusNotifierHost"><arg type="s" direction="in"/></method>
<property name="RegisteredStatusNotifierItems" type="as" access="read"/>
<property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
<property name="ProtocolVersion" type="i" access="read"/>
<signal name="StatusNotifierItemRegistered"><arg type="s"/></signal>
<signal name="StatusNotifierItemUnregistered"><arg type="s"/></signal>
<signal name="StatusNotifierHostRegistered"/>
<signal name="StatusNotifierHostUnregistered"/>
</interface></node>)";

template <typename T>
T check(T result, GError* error) {
    if (error != nullptr) {
        const std::string message = error->message;
        g_error_free(error);
        throw std::runtime_error(message);
    }
    return result;
}

std::string labelIn(GVariant* properties) {
    const char* text = nullptr;
    if (g_variant_lookup(properties, "type", "&s", &text) != FALSE && std::string(text) == "separator") {
        return "-";
    }
    return g_variant_lookup(properties, "label", "&s", &text) != FALSE ? text : "";
}

}  // namespace

StatusNotifierPanel::StatusNotifierPanel(support::PrivateDesktop& desktop, Host host)
    : context_(g_main_context_new()), hasHost_(host == Host::present) {
    // Whatever is set up between these two lines is called back while `context_` is iterated.
    g_main_context_push_thread_default(context_);
    GError* error = nullptr;
    connection_ = check(g_dbus_connection_new_for_address_sync(
                            desktop.sessionBusAddress().c_str(),
                            static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                              G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
                            nullptr, nullptr, &error),
                        error);
    g_dbus_connection_set_exit_on_close(connection_, FALSE);
    interfaces_ = check(g_dbus_node_info_new_for_xml(interfaces, &error), error);
    const GDBusInterfaceVTable functions{handleCall, readProperty, nullptr, {}};
    check(g_dbus_connection_register_object(connection_, watcherPath, interfaces_->interfaces[0], &functions, this,
                                            nullptr, &error),
          error);
    g_dbus_connection_signal_subscribe(connection_, busName, busName, "NameOwnerChanged", nullptr, nullptr,
                                       G_DBUS_SIGNAL_FLAGS_NONE, handleOwnerChange, this, nullptr);
    g_dbus_connection_signal_subscribe(connection_, nullptr, menuInterface, "ItemsPropertiesUpdated", nullptr, nullptr,
                                       G_DBUS_SIGNAL_FLAGS_NONE, handleMenuChange, this, nullptr);
    g_main_context_pop_thread_default(context_);
    call(busName, "/org/freedesktop/DBus", busName, "RequestName", g_variant_new("(su)", watcherName, 0U));
}

StatusNotifierPanel::~StatusNotifierPanel() {
    g_dbus_connection_close_sync(connection_, nullptr, nullptr);
    pump();
    g_dbus_node_info_unref(interfaces_);
    g_object_unref(connection_);
    g_main_context_unref(context_);
}

void StatusNotifierPanel::handleCall(GDBusConnection*, const char* sender, const char*, const char*, const char* method,
                                     GVariant* arguments, GDBusMethodInvocation* invocation, void* panel) {
    auto& self = *static_cast<StatusNotifierPanel*>(panel);
    const char* service = nullptr;
    g_variant_get(arguments, "(&s)", &service);
    if (std::string(method) == "RegisterStatusNotifierItem") {
        const std::string item = *service == '/' ? sender : service;
        if (std::ranges::find(self.items_, item) == self.items_.end()) {
            self.items_.push_back(item);
        }
        if (self.onRegistration_) {
            self.onRegistration_();
        }
    }
    g_dbus_method_invocation_return_value(invocation, nullptr);
}

GVariant* StatusNotifierPanel::readProperty(GDBusConnection*, const char*, const char*, const char*, const char* name,
                                            GError**, void* panel) {
    const auto& self = *static_cast<StatusNotifierPanel*>(panel);
    const std::string wanted = name;
    if (wanted == "IsStatusNotifierHostRegistered") {
        return g_variant_new_boolean(self.hasHost_ ? TRUE : FALSE);
    }
    if (wanted == "ProtocolVersion") {
        return g_variant_new_int32(0);
    }
    return g_variant_new_strv(nullptr, 0);
}

void StatusNotifierPanel::handleOwnerChange(GDBusConnection*, const char*, const char*, const char*, const char*,
                                            GVariant* names, void* panel) {
    const char* name = nullptr;
    const char* owner = nullptr;
    g_variant_get(names, "(&s&s&s)", &name, nullptr, &owner);
    if (*owner == '\0') {
        std::erase(static_cast<StatusNotifierPanel*>(panel)->items_, name);
    }
}

void StatusNotifierPanel::handleMenuChange(GDBusConnection*, const char*, const char*, const char*, const char*,
                                           GVariant* changes, void* panel) {
    const Value updated(g_variant_get_child_value(changes, 0));
    for (gsize index = 0; index < g_variant_n_children(updated.get()); ++index) {
        const Value item(g_variant_get_child_value(updated.get(), index));
        const Value properties(g_variant_get_child_value(item.get(), 1));
        static_cast<StatusNotifierPanel*>(panel)->announced_.push_back(labelIn(properties.get()));
    }
}

void StatusNotifierPanel::pump() {
    while (g_main_context_iteration(context_, FALSE) != FALSE) {
    }
}

void StatusNotifierPanel::await(const std::string& what, const std::function<bool()>& condition) {
    const Deadline deadline;
    for (pump(); !condition(); pump()) {
        if (deadline.hasPassed()) {
            throw Timeout("awaited in vain: " + what);
        }
        // Its firing does nothing but end the wait.
        GSource* timeout = g_timeout_source_new(static_cast<guint>(deadline.remainingMilliseconds()));
        g_source_set_callback(
            timeout, [](void*) { return G_SOURCE_REMOVE; }, nullptr, nullptr);
        g_source_attach(timeout, context_);
        g_main_context_iteration(context_, TRUE);
        g_source_destroy(timeout);
        g_source_unref(timeout);
    }
}

void StatusNotifierPanel::setHost(Host host) {
    hasHost_ = host == Host::present;
    g_dbus_connection_emit_signal(connection_, nullptr, watcherPath, watcherName,
                                  hasHost_ ? "StatusNotifierHostRegistered" : "StatusNotifierHostUnregistered", nullptr,
                                  nullptr);
}

const std::vector<std::string>& StatusNotifierPanel::items() {
    pump();
    return items_;
}

void StatusNotifierPanel::awaitItem() {
    await("one status item on the bus", [&] { return items_.size() == 1; });
}

void StatusNotifierPanel::awaitNoItem() {
    await("no status item on the bus", [&] { return items_.empty(); });
}

StatusNotifierPanel::Value StatusNotifierPanel::call(const std::string& service, const std::string& path,
                                                     const char* interface, const char* method, GVariant* arguments) {
    GError* error = nullptr;
    return Value(
        check(g_dbus_connection_call_sync(connection_, service.c_str(), path.c_str(), interface, method, arguments,
                                          nullptr, G_DBUS_CALL_FLAGS_NONE, callMilliseconds, nullptr, &error),
              error));
}

void StatusNotifierPanel::tell(const std::string& path, const char* interface, const char* method,
                               GVariant* arguments) {
    g_dbus_connection_call(connection_, items_.at(0).c_str(), path.c_str(), interface, method, arguments, nullptr,
                           G_DBUS_CALL_FLAGS_NONE, callMilliseconds, nullptr, nullptr, nullptr);
    g_dbus_connection_flush_sync(connection_, nullptr, nullptr);
}

StatusNotifierPanel::Value StatusNotifierPanel::property(const std::string& name) {
    const Value reply = call(items_.at(0), itemPath, "org.freedesktop.DBus.Properties", "Get",
                             g_variant_new("(ss)", itemInterface, name.c_str()));
    const Value boxed(g_variant_get_child_value(reply.get(), 0));
    return Value(g_variant_get_variant(boxed.get()));
}

std::string StatusNotifierPanel::text(const std::string& name) {
    const Value value = property(name);
    return g_variant_get_string(value.get(), nullptr);
}

void StatusNotifierPanel::activate() {
    tell(itemPath, itemInterface, "Activate", g_variant_new("(ii)", 0, 0));
}

void StatusNotifierPanel::requestMenu() {
    tell(itemPath, itemInterface, "ContextMenu", g_variant_new("(ii)", 0, 0));
}

std::vector<StatusNotifierPanel::Entry> StatusNotifierPanel::menu() {
    const std::string path = text("Menu");
    const Value reply = call(items_.at(0), path, menuInterface, "GetLayout", g_variant_new("(iias)", 0, -1, nullptr));
    const Value layout(g_variant_get_child_value(reply.get(), 1));
    const Value children(g_variant_get_child_value(layout.get(), 2));
    std::vector<Entry> entries;
    for (gsize index = 0; index < g_variant_n_children(children.get()); ++index) {
        const Value boxed(g_variant_get_child_value(children.get(), index));
        const Value child(g_variant_get_variant(boxed.get()));
        const Value id(g_variant_get_child_value(child.get(), 0));
        const Value properties(g_variant_get_child_value(child.get(), 1));
        entries.push_back({.id = g_variant_get_int32(id.get()), .label = labelIn(properties.get())});
    }
    return entries;
}

std::vector<std::string> StatusNotifierPanel::labels() {
    std::vector<std::string> labels;
    for (const Entry& entry : menu()) {
        labels.push_back(entry.label);
    }
    return labels;
}

void StatusNotifierPanel::choose(const std::string& label) {
    const std::vector<Entry> entries = menu();
    const auto entry = std::ranges::find(entries, label, &Entry::label);
    if (entry == entries.end()) {
        throw std::runtime_error("no entry " + label);
    }
    tell(text("Menu"), menuInterface, "Event",
         g_variant_new("(isvu)", entry->id, "clicked", g_variant_new_int32(0), 0U));
}

std::vector<std::string> StatusNotifierPanel::takeAnnouncedLabels() {
    pump();
    return std::exchange(announced_, {});
}

}  // namespace pallwick::desktop

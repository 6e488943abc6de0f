#pragma once

#include <gio/gio.h>
#include <support/PrivateDesktop.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pallwick::desktop {

/// A panel that shows status items from the session bus: the watcher that keeps their list and, unless told otherwise,
/// a host that shows them (StatusNotifierItem, com.canonical.dbusmenu). It acts only while something is awaited through
/// it.
class StatusNotifierPanel {
public:
    enum class Host { absent, present };

    /// Returns once it owns the watcher's name.
    explicit StatusNotifierPanel(support::PrivateDesktop& desktop, Host host = Host::present);
    /// As a crash would.
    ~StatusNotifierPanel();
    StatusNotifierPanel(const StatusNotifierPanel&) = delete;
    StatusNotifierPanel& operator=(const StatusNotifierPanel&) = delete;

    /// The host comes or goes, and the watcher says so.
    void setHost(Host host);
    /// Called whenever an item is registered.
    void onRegistration(std::function<void()> action) { onRegistration_ = std::move(action); }

    /// The bus names of the items that are there now.
    [[nodiscard]] const std::vector<std::string>& items();
    void awaitItem();
    void awaitNoItem();
    void await(const std::string& what, const std::function<bool()>& condition);

    // Of the only item.

    struct Variant {
        void operator()(GVariant* variant) const { g_variant_unref(variant); }
    };
    using Value = std::unique_ptr<GVariant, Variant>;
    struct Entry {
        int id = 0;
        /// A dash for a separator.
        std::string label;
    };

    /// Throws `std::runtime_error` where it has none.
    [[nodiscard]] Value property(const std::string& name);
    [[nodiscard]] std::string text(const std::string& name);
    void activate();
    void requestMenu();
    [[nodiscard]] std::vector<Entry> menu();
    [[nodiscard]] std::vector<std::string> labels();
    /// Tells that the entry with this label was clicked.
    void choose(const std::string& label);
    /// The labels that the menu has announced for its entries since the last call.
    [[nodiscard]] std::vector<std::string> takeAnnouncedLabels();

private:
    static void handleCall(GDBusConnection*, const char* sender, const char*, const char*, const char* method,
                           GVariant* arguments, GDBusMethodInvocation* invocation, void* panel);
    static GVariant* readProperty(GDBusConnection*, const char*, const char*, const char*, const char* name, GError**,
                                  void* panel);
    static void handleOwnerChange(GDBusConnection*, const char*, const char*, const char*, const char*, GVariant* names,
                                  void* panel);
    static void handleMenuChange(GDBusConnection*, const char*, const char*, const char*, const char*,
                                 GVariant* changes, void* panel);

    Value call(const std::string& service, const std::string& path, const char* interface, const char* method,
               GVariant* arguments);
    /// Does not wait for an answer: a program that is told to quit may not live to give one.
    void tell(const std::string& path, const char* interface, const char* method, GVariant* arguments);
    void pump();

    GMainContext* context_;
    GDBusConnection* connection_ = nullptr;
    GDBusNodeInfo* interfaces_ = nullptr;
    bool hasHost_;
    std::vector<std::string> items_;
    std::vector<std::string> announced_;
    std::function<void()> onRegistration_;
};

}  // namespace pallwick::desktop

#pragma once

#include <sys/types.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "PrivateDesktop.h"

namespace pallwick::support {

/// States of AT-SPI 2 that tests ask for; the values are the protocol's bit numbers.
enum class AccessibleState {
    active = 1,
    checked = 4,
    editable = 7,
    enabled = 8,
    focusable = 11,
    focused = 12,
    pressed = 20,
    selected = 23,
    sensitive = 24,
    showing = 25,
    visible = 30,
};

class AccessibleConnection;

/// One thing of a program's user interface, as the accessibility service shows it (AT-SPI 2 over D-Bus).
///
/// Every question is a round trip to the program. What has gone meanwhile answers with empty values.
class Accessible {
public:
    Accessible(std::shared_ptr<AccessibleConnection> connection, std::string owner, std::string path)
        : connection_(std::move(connection)), owner_(std::move(owner)), path_(std::move(path)) {}

    [[nodiscard]] std::string name() const;
    /// AT-SPI's name of the role, "push button" for one.
    [[nodiscard]] std::string role() const;
    [[nodiscard]] std::string description() const;
    /// The content of a label or an editor.
    [[nodiscard]] std::string text() const;
    /// The value of a slider or spin box.
    [[nodiscard]] std::optional<double> value() const;
    void setValue(double value) const;
    [[nodiscard]] bool has(AccessibleState state) const;
    /// In root pixels, though Qt tells them in its own points. Empty while it is not shown.
    [[nodiscard]] PixelRect extents() const;
    [[nodiscard]] std::vector<Accessible> children() const;
    /// Names of what `doAction` takes.
    [[nodiscard]] std::vector<std::string> actions() const;
    /// Throws `std::runtime_error` where there is no such action.
    void doAction(const std::string& action) const;
    void grabFocus() const;

    /// Itself and everything in it that passes, depth first.
    [[nodiscard]] std::vector<Accessible> findAll(const std::function<bool(const Accessible&)>& test) const;
    /// The first of that role and name; an empty name fits every one.
    [[nodiscard]] std::optional<Accessible> find(const std::string& role, const std::string& name) const;
    /// The whole tree, one line each, for messages.
    [[nodiscard]] std::string describe() const;

private:
    std::shared_ptr<AccessibleConnection> connection_;
    std::string owner_;
    std::string path_;
};

/// The user interface of one running program.
class AccessibleTree {
public:
    /// Waits until process `program` has registered with the accessibility service. Throws `Timeout`.
    /// `scale` is the program's, in pixels per point.
    AccessibleTree(PrivateDesktop& desktop, pid_t program, double scale = 1);

    [[nodiscard]] const Accessible& application() const { return *application_; }
    [[nodiscard]] std::optional<Accessible> find(const std::string& role, const std::string& name) const {
        return application_->find(role, name);
    }
    /// Returns the first of that role and name, once there is one. Throws `Timeout` with the whole tree.
    [[nodiscard]] Accessible await(const std::string& role, const std::string& name) const;
    /// Returns once `condition` holds; asks again after each round trip. Throws `Timeout` with the whole tree.
    void awaitCondition(const std::string& what, const std::function<bool()>& condition) const;

private:
    std::optional<Accessible> application_;
};

}  // namespace pallwick::support

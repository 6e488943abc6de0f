#pragma once

#include <PallwickMac/Platform/Freedesktop/StatusNotifierTypes.h>
#include <PallwickMac/Platform/StatusItem.h>

#include <QDBusAbstractAdaptor>
#include <QDBusObjectPath>

#include <functional>

namespace pallwick::freedesktop {

/// What a panel sees of a status item on the session bus (StatusNotifierItem, in the form that KDE gave it and everyone
/// uses).
class StatusNotifierAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category CONSTANT)
    Q_PROPERTY(QString Id READ id CONSTANT)
    Q_PROPERTY(QString Title READ title CONSTANT)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(int WindowId READ windowId CONSTANT)
    Q_PROPERTY(QString IconThemePath READ none CONSTANT)
    Q_PROPERTY(QString IconName READ none CONSTANT)
    Q_PROPERTY(pallwick::freedesktop::IconImages IconPixmap READ iconPixmap)
    Q_PROPERTY(QString OverlayIconName READ none CONSTANT)
    Q_PROPERTY(pallwick::freedesktop::IconImages OverlayIconPixmap READ noPixmap CONSTANT)
    Q_PROPERTY(QString AttentionIconName READ none CONSTANT)
    Q_PROPERTY(pallwick::freedesktop::IconImages AttentionIconPixmap READ noPixmap CONSTANT)
    Q_PROPERTY(QString AttentionMovieName READ none CONSTANT)
    Q_PROPERTY(pallwick::freedesktop::StatusToolTip ToolTip READ toolTip CONSTANT)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu CONSTANT)
    Q_PROPERTY(QDBusObjectPath Menu READ menu CONSTANT)

public:
    /// What a person does with the icon.
    struct Handlers {
        std::function<void(const ActivationToken& token)> activate;
        /// In a panel that does not show the menu itself.
        std::function<void()> requestMenu;
    };

    /// `object` is what is registered on the bus; it owns the adaptor.
    StatusNotifierAdaptor(QObject* object, const StatusItemDescription& description, const QString& menuPath,
                          Handlers handlers);

    void setIcon(const QIcon& icon);

    [[nodiscard]] static QString category() { return QStringLiteral("ApplicationStatus"); }
    [[nodiscard]] static QString id() { return QStringLiteral("pallwick"); }
    [[nodiscard]] QString title() const { return title_; }
    [[nodiscard]] static QString status() { return QStringLiteral("Active"); }
    [[nodiscard]] static int windowId() { return 0; }
    [[nodiscard]] static QString none() { return {}; }
    /// Pictures, and no name: a name is looked up in the icon theme, which does not have ours before the program is
    /// installed, and whose colours a panel may change to one that does not suit it.
    [[nodiscard]] IconImages iconPixmap() const { return imagesOf(icon_); }
    [[nodiscard]] static IconImages noPixmap() { return {}; }
    [[nodiscard]] StatusToolTip toolTip() const;
    /// A click on the icon does something else than showing the menu.
    [[nodiscard]] static bool itemIsMenu() { return false; }
    [[nodiscard]] QDBusObjectPath menu() const { return menu_; }

public Q_SLOTS:
    // The interface's methods, by its names; coordinates are hints that nothing needs here.
    void ContextMenu(int x, int y) const;
    void Activate(int x, int y);
    void SecondaryActivate(int x, int y) const;
    void Scroll(int delta, const QString& orientation) const;
    /// Comes before `Activate`.
    void ProvideXdgActivationToken(const QString& token);

Q_SIGNALS:
    void NewTitle();
    void NewIcon();
    void NewAttentionIcon();
    void NewOverlayIcon();
    void NewToolTip();
    void NewStatus(const QString& status);

private:
    QString title_;
    QString toolTip_;
    QIcon icon_;
    QDBusObjectPath menu_;
    Handlers handlers_;
    QString activationToken_;
};

}  // namespace pallwick::freedesktop

#include <PallwickMac/Platform/Freedesktop/StatusNotifierAdaptor.h>

#include <utility>

namespace pallwick::freedesktop {

StatusNotifierAdaptor::StatusNotifierAdaptor(QObject* object, const StatusItemDescription& description,
                                             const QString& menuPath, Handlers handlers)
    : QDBusAbstractAdaptor(object),
      title_(description.title),
      toolTip_(description.toolTip),
      icon_(description.icon),
      menu_(menuPath),
      handlers_(std::move(handlers)) {
    registerStatusNotifierTypes();
}

void StatusNotifierAdaptor::setIcon(const QIcon& icon) {
    icon_ = icon;
    Q_EMIT NewIcon();
}

StatusToolTip StatusNotifierAdaptor::toolTip() const {
    return {.iconName = {}, .icon = {}, .title = toolTip_, .text = {}};
}

void StatusNotifierAdaptor::ContextMenu(int /*x*/, int /*y*/) const {
    handlers_.requestMenu();
}

void StatusNotifierAdaptor::Activate(int /*x*/, int /*y*/) {
    handlers_.activate(ActivationToken::ofStartupID(std::exchange(activationToken_, {}).toStdString()));
}

void StatusNotifierAdaptor::SecondaryActivate(int /*x*/, int /*y*/) const {}

void StatusNotifierAdaptor::Scroll(int /*delta*/, const QString& /*orientation*/) const {}

void StatusNotifierAdaptor::ProvideXdgActivationToken(const QString& token) {
    activationToken_ = token;
}

}  // namespace pallwick::freedesktop

// The model's preset commands.

#include <PallwickMac/App/AppModel.h>
#include <PallwickMac/Platform/DesktopPlatform.h>

#include <exception>
#include <utility>

namespace pallwick {

void AppModel::saveDisplayPreset() {
    if (const std::optional<PresetScope> scope = displayScope()) {
        savePreset(*scope, QStringLiteral("Display preset saved"));
    } else {
        setStatusText(QStringLiteral("Could not save display preset"));
    }
}

void AppModel::loadDisplayPreset() {
    if (const std::optional<PresetScope> scope = displayScope()) {
        loadPreset(*scope, QStringLiteral("Display preset loaded"), QStringLiteral("No display preset saved"));
    } else {
        setStatusText(QStringLiteral("Could not load display preset"));
    }
}

void AppModel::saveApplicationPreset() {
    if (const std::optional<PresetScope> scope = applicationScope()) {
        savePreset(*scope, QStringLiteral("App preset saved"));
    } else {
        setStatusText(QStringLiteral("No foreground app detected"));
    }
}

void AppModel::loadApplicationPreset() {
    if (const std::optional<PresetScope> scope = applicationScope()) {
        loadPreset(*scope, QStringLiteral("App preset loaded"), QStringLiteral("No app preset saved"));
    } else {
        setStatusText(QStringLiteral("No foreground app detected"));
    }
}

std::optional<PresetScope> AppModel::displayScope() const {
    const std::vector<Screen> screens = platform_.screens();
    if (!presetStore_ || screens.empty() || !screens.front().displayID) {
        return std::nullopt;
    }
    return PresetScope::screen(*screens.front().displayID);
}

std::optional<PresetScope> AppModel::applicationScope() const {
    const std::optional<std::string> bundleID = foregroundApplicationService_.currentBundleID();
    if (!presetStore_ || !bundleID) {
        return std::nullopt;
    }
    return PresetScope::application(*bundleID);
}

void AppModel::savePreset(const PresetScope& scope, const QString& saved) {
    try {
        presetStore_->save(overlays_, scope);
    } catch (const std::exception& error) {
        setStatusText(QStringLiteral("Save failed: ") + QString::fromUtf8(error.what()));
        return;
    }
    setStatusText(saved);
}

void AppModel::loadPreset(const PresetScope& scope, const QString& loaded, const QString& nothingSaved) {
    std::vector<BlurOverlay> overlays;
    try {
        overlays = presetStore_->load(scope);
    } catch (const std::exception& error) {
        setStatusText(QStringLiteral("Load failed: ") + QString::fromUtf8(error.what()));
        return;
    }
    const std::optional<UUID> first = overlays.empty() ? std::nullopt : std::optional(overlays.front().id());
    store_.replace(std::move(overlays));
    setSelectedOverlayID(first);
    setStatusText(first ? loaded : nothingSaved);
    refreshFromStore();
}

}  // namespace pallwick

#pragma once

#include <PallwickMac/Services/ForegroundApplicationService.h>
#include <PallwickMac/Services/WindowTrackingService.h>
#include <PallwickMacCore/Models/BlurOverlay.h>
#include <PallwickMacCore/Models/PresetScope.h>
#include <PallwickMacCore/Models/TrackedWindow.h>
#include <PallwickMacCore/Services/OverlayWindowController.h>
#include <PallwickMacCore/Stores/OverlayStore.h>
#include <PallwickMacCore/Stores/PresetStore.h>

#include <QObject>
#include <QString>
#include <QTimer>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace pallwick {

class DesktopPlatform;

/// The one model of the program: every view reads its published state and calls its commands. Main thread only.
///
/// A command changes the store, sets a one-line status text, then publishes the store's list and brings the panels in
/// step. Commands never fail; without a selection they mostly do nothing. Each published field has one notification,
/// sent only when the field's value has changed.
class AppModel final : public QObject {
    Q_OBJECT

public:
    using PresetStoreFactory = std::function<std::unique_ptr<PresetStore>()>;

    /// `platform` is not owned and must outlive the model. `makePresetStore` is called once; if it throws or gives
    /// nothing, the preset commands say that they cannot be done.
    AppModel(DesktopPlatform& platform, const PresetStoreFactory& makePresetStore);
    ~AppModel() override;

    // Published state.
    [[nodiscard]] const std::vector<BlurOverlay>& overlays() const { return overlays_; }
    [[nodiscard]] const std::optional<UUID>& selectedOverlayID() const { return selectedOverlayID_; }
    /// True: panels can be moved, resized and deleted. False: they are locked and clicks pass through.
    [[nodiscard]] bool editMode() const { return editMode_; }
    /// One-line result of the last command.
    [[nodiscard]] const QString& statusText() const { return statusText_; }
    /// The windows that an overlay can be attached to, as they were when `refreshWindows` last asked.
    [[nodiscard]] const std::vector<TrackedWindow>& visibleWindows() const { return visibleWindows_; }
    /// The number of the window chosen for attachment.
    [[nodiscard]] std::optional<std::uint32_t> selectedWindowID() const { return selectedWindowID_; }

    /// The overlay that commands on "the selected overlay" act on: the selected one, or the first where the selection
    /// is empty or stale; null only while the list is empty. Valid until the next command.
    [[nodiscard]] const BlurOverlay* selectedOverlay() const;

    /// Publishes the selection and does nothing else.
    void setSelectedOverlayID(const std::optional<UUID>& id);

    /// Publishes the choice and does nothing else.
    void setSelectedWindowID(std::optional<std::uint32_t> id);

    /// Adds an overlay in the middle of the primary screen's visible area, selects it and turns edit mode on.
    void addOverlay();
    /// Also for an unknown id the selection moves to the first overlay.
    void removeOverlay(const UUID& id);
    void removeSelectedOverlay();
    void clearOverlays();
    void select(const BlurOverlay& overlay);
    void toggleEditMode();
    /// Absent arguments keep their current value.
    void updateSelectedStyle(std::optional<std::int64_t> intensity, const std::optional<std::string>& colorHex,
                             std::optional<std::int64_t> opacity, std::optional<bool> glassBlur);
    void updateSelectedShape(OverlayShape shape);

    /// Asks for the windows anew. A choice that is no longer among them is cleared.
    void refreshWindows();
    /// Attaches the selected overlay to the chosen window, at the window's place as it was when the windows were last
    /// asked for. Until it is detached, the overlay follows the window and shows only while its owner is in front.
    void attachSelectedOverlayToWindow();
    /// The overlay stays where it is.
    void detachSelectedOverlayFromWindow();

    // The whole list, saved and brought back: for the primary screen, or for the application in front, which is this
    // program while its own window is. Loading replaces the list, also by an empty one where nothing was saved.
    void saveDisplayPreset();
    void loadDisplayPreset();
    void saveApplicationPreset();
    void loadApplicationPreset();

Q_SIGNALS:
    void overlaysChanged();
    void selectedOverlayIDChanged();
    void editModeChanged();
    void statusTextChanged();
    void visibleWindowsChanged();
    void selectedWindowIDChanged();

private:
    enum class PanelSync { no, yes };

    void refreshFromStore(PanelSync syncPanels = PanelSync::yes);
    void updateFrameFromPanel(const UUID& id, const Rect& frame);
    void startWindowTracking();
    void updateAttachedOverlays();
    [[nodiscard]] std::optional<PresetScope> displayScope() const;
    [[nodiscard]] std::optional<PresetScope> applicationScope() const;
    void savePreset(const PresetScope& scope, const QString& saved);
    void loadPreset(const PresetScope& scope, const QString& loaded, const QString& nothingSaved);
    OverlayWindowController& overlayController();
    void setStatusText(const QString& text);
    void setEditMode(bool editMode);

    DesktopPlatform& platform_;
    std::vector<BlurOverlay> overlays_;
    std::optional<UUID> selectedOverlayID_;
    bool editMode_ = true;
    QString statusText_ = QStringLiteral("Ready");
    std::vector<TrackedWindow> visibleWindows_;
    std::optional<std::uint32_t> selectedWindowID_;
    OverlayStore store_;
    std::unique_ptr<PresetStore> presetStore_;
    ForegroundApplicationService foregroundApplicationService_;
    WindowTrackingService windowTrackingService_;
    QTimer windowTrackingTimer_{this};
    /// Made at the first command that brings the panels in step.
    std::unique_ptr<OverlayWindowController> overlayController_;
};

}  // namespace pallwick

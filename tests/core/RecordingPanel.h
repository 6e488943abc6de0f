#pragma once

#include <PallwickMacCore/Services/OverlayPanelControlling.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace pallwick::test {

class RecordingPanel;

/// The calls that panels received, across all of them and in order, each as the first digit of the overlay's UUID and
/// a verb; and the panels themselves, in the order of their making.
struct PanelJournal {
    std::vector<std::string> calls;
    std::vector<std::weak_ptr<RecordingPanel>> panels;

    /// The panel made at `index`; throws where it is gone.
    [[nodiscard]] std::shared_ptr<RecordingPanel> panel(std::size_t index) const {
        return std::shared_ptr<RecordingPanel>(panels.at(index));
    }
};

/// A panel that shows nothing and writes down what it is told. The journal must outlive it.
class RecordingPanel : public OverlayPanelControlling {
public:
    RecordingPanel(PanelJournal& journal, const BlurOverlay& overlay, FrameChangedCallback frameChanged,
                   DeleteRequestedCallback deleteRequested)
        : onFrameChanged(std::move(frameChanged)),
          onDeleteRequested(std::move(deleteRequested)),
          shown(overlay),
          journal_(journal) {
        record("make");
    }

    void update(const BlurOverlay& overlay, bool editMode) override {
        shown = overlay;
        record(editMode ? "edit" : "lock");
    }

    void show() override { record("show"); }
    void hide() override { record("hide"); }

    void close() override {
        record("close");
        std::exchange(onClose, [] {})();
    }

    FrameChangedCallback onFrameChanged;
    DeleteRequestedCallback onDeleteRequested;
    std::function<void()> onClose = [] {};
    /// What the panel was made with or last updated to.
    BlurOverlay shown;

private:
    void record(const std::string& verb) {
        journal_.calls.push_back(shown.id().uuidString().substr(0, 1) + " " + verb);
    }

    PanelJournal& journal_;
};

/// A factory of panels that write to `journal`.
inline PanelFactory recordingFactory(PanelJournal& journal) {
    return [&journal](const BlurOverlay& overlay, FrameChangedCallback onFrameChanged,
                      DeleteRequestedCallback onDeleteRequested) {
        auto panel =
            std::make_shared<RecordingPanel>(journal, overlay, std::move(onFrameChanged), std::move(onDeleteRequested));
        journal.panels.push_back(panel);
        return panel;
    };
}

}  // namespace pallwick::test

#include "ViewTestSupport.h"

#include <PallwickMac/App/PallwickMacApp.h>

#include <QApplication>
#include <QLabel>
#include <QTest>

namespace pallwick {

namespace {

class ToolkitEnvironment final : public ::testing::Environment {
public:
    void SetUp() override { PallwickMacApp::prepareToolkit(); }
};

const ::testing::Environment* const toolkit = ::testing::AddGlobalTestEnvironment(new ToolkitEnvironment);

}  // namespace

ModelTest::~ModelTest() {
    // Closed panels let go of their surfaces while the platform is still there.
    owner_.reset();
    QCoreApplication::sendPostedEvents();
}

void ModelTest::addOverlays(int count) {
    for (int added = 0; added < count; ++added) {
        model.addOverlay();
    }
}

void ModelTest::dragPanelTo(int number, const Point& origin) {
    FakeOverlaySurface* surface = platform.surfaces().at(static_cast<std::size_t>(number - 1));
    const Rect frame = surface->frame();
    surface->press({.x = frame.width / 2, .y = frame.height / 2});
    surface->dragTo({.x = origin.x - frame.x, .y = origin.y - frame.y});
    surface->release();
}

UUID ModelTest::idOf(int number) const {
    return model.overlays().at(static_cast<std::size_t>(number - 1)).id();
}

NotificationLog::NotificationLog(const AppModel& model) {
    QObject::connect(&model, &AppModel::overlaysChanged, &context_, [this] { names_.emplace_back("overlays"); });
    QObject::connect(&model, &AppModel::selectedOverlayIDChanged, &context_,
                     [this] { names_.emplace_back("selectedOverlayID"); });
    QObject::connect(&model, &AppModel::editModeChanged, &context_, [this] { names_.emplace_back("editMode"); });
    QObject::connect(&model, &AppModel::visibleWindowsChanged, &context_,
                     [this] { names_.emplace_back("visibleWindows"); });
    QObject::connect(&model, &AppModel::selectedWindowIDChanged, &context_,
                     [this] { names_.emplace_back("selectedWindowID"); });
    QObject::connect(&model, &AppModel::statusTextChanged, &context_, [this] { names_.emplace_back("statusText"); });
}

bool showsText(const QWidget& root, const char* text) {
    for (const QLabel* label : root.findChildren<QLabel*>()) {
        if (label->isVisible() && label->text() == QLatin1String(text)) {
            return true;
        }
    }
    return false;
}

void click(QWidget* button) {
    ASSERT_TRUE(button);
    QTest::mouseClick(button, Qt::LeftButton);
}

void showNow(QWidget& widget) {
    widget.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&widget));
    widget.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&widget));
}

QPalette darkPalette() {
    const QColor window(0x2b, 0x2d, 0x31);
    const QColor text(0xe8, 0xe8, 0xea);
    QPalette palette(QColor(0x33, 0x35, 0x3a), window);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::Base, QColor(0x1f, 0x20, 0x23));
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(0x80, 0x82, 0x88));
    palette.setColor(QPalette::Highlight, QColor(0x3d, 0x8b, 0xe0));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

ApplicationPalette::ApplicationPalette(const QPalette& palette) : before_(QApplication::palette()) {
    QApplication::setPalette(palette);
    // Widgets hear of it through the event queue.
    QCoreApplication::sendPostedEvents();
}

ApplicationPalette::~ApplicationPalette() {
    QApplication::setPalette(before_);
    QCoreApplication::sendPostedEvents();
}

}  // namespace pallwick

#pragma once

#include <PallwickMac/App/AppModel.h>
#include <PallwickMac/Platform/Fake/FakePlatform.h>

#include <QPalette>
#include <QString>
#include <QWidget>

#include <gmock/gmock.h>

#include <memory>
#include <ostream>
#include <string>
#include <vector>

class QAbstractButton;
class QSlider;

namespace pallwick {

/// For models whose presets nobody asks for: nothing is kept anywhere.
inline std::unique_ptr<PresetStore> withoutPresets() {
    return nullptr;
}

/// A model above a fake desktop.
class ModelTest : public ::testing::Test {
protected:
    ModelTest() = default;
    ~ModelTest() override;

    /// Adds overlays with these frames through the panels, as a person would who drags them there.
    void addOverlays(int count);

    /// Moves the panel of the overlay that was added `number`th, from 1, so that its frame begins at `origin`.
    void dragPanelTo(int number, const Point& origin);

    [[nodiscard]] UUID idOf(int number) const;

    FakePlatform platform;

private:
    std::unique_ptr<AppModel> owner_ = std::make_unique<AppModel>(platform, withoutPresets);

protected:
    AppModel& model = *owner_;
};

/// The texts of the model's notifications, in order, from now on.
class NotificationLog {
public:
    explicit NotificationLog(const AppModel& model);

    [[nodiscard]] const std::vector<std::string>& names() const { return names_; }

private:
    std::vector<std::string> names_;
    /// Its end is the end of the connections.
    QObject context_;
};

/// The one visible-by-contract widget of `Widget`'s type with that accessible name; fails the test where there is none.
template <typename Widget>
Widget* named(const QWidget& root, const char* accessibleName) {
    for (Widget* candidate : root.findChildren<Widget*>()) {
        if (candidate->accessibleName() == QLatin1String(accessibleName)) {
            return candidate;
        }
    }
    ADD_FAILURE() << "nothing is named " << accessibleName;
    return nullptr;
}

/// True where a label on the screen has exactly this text.
[[nodiscard]] bool showsText(const QWidget& root, const char* text);

/// A mouse click in the middle of the button.
void click(QWidget* button);

/// Shows the widget and waits until it has been laid out.
void showNow(QWidget& widget);

/// A palette of light text on dark.
[[nodiscard]] QPalette darkPalette();

/// A palette to try a view with, by the name that its test has.
struct Scheme {
    const char* name;
    QPalette palette;

    friend void PrintTo(const Scheme& scheme, std::ostream* stream) { *stream << scheme.name; }
};

/// Sets the application's palette for as long as it lives.
class ApplicationPalette {
public:
    explicit ApplicationPalette(const QPalette& palette);
    ~ApplicationPalette();

    ApplicationPalette(const ApplicationPalette&) = delete;
    ApplicationPalette& operator=(const ApplicationPalette&) = delete;

private:
    QPalette before_;
};

}  // namespace pallwick

inline void PrintTo(const QString& text, std::ostream* stream) {
    *stream << '"' << text.toStdString() << '"';
}

#pragma once

#include <PallwickMacCore/Models/TrackedWindow.h>

#include <QComboBox>

#include <cstdint>
#include <optional>
#include <vector>

namespace pallwick {

/// Offers windows by their display names, after an entry for none of them.
class WindowPicker final : public QComboBox {
    Q_OBJECT

public:
    explicit WindowPicker(QWidget* parent = nullptr);

    /// Shows what it is given and says nothing of it. A window that is not offered counts as none.
    void setChoice(const std::vector<TrackedWindow>& windows, std::optional<std::uint32_t> chosen);

    /// Names are cut to the room there is, in the field and in its list.
    [[nodiscard]] QSize sizeHint() const override;

Q_SIGNALS:
    /// A person chose the window of that number, or none.
    void windowChosen(std::optional<std::uint32_t> id);

protected:
    /// Shows the chosen name where the field had to cut it short.
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    /// Left to what scrolls around it: a choice is not made in passing.
    void wheelEvent(QWheelEvent* event) override;

private:
    /// Where the chosen name is written.
    [[nodiscard]] QRect textField() const;

    std::vector<TrackedWindow> windows_;
};

}  // namespace pallwick

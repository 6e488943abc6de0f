#pragma once

#include <PallwickMac/Platform/ActivationToken.h>

#include <QIcon>
#include <QObject>
#include <QString>

#include <vector>

namespace pallwick {

/// One line of a status item's menu.
struct StatusItemEntry {
    /// Plain text, nothing in it stands for a key. Empty for a separator.
    QString label;
    bool isSeparator = false;

    friend bool operator==(const StatusItemEntry&, const StatusItemEntry&) = default;
};

/// What a status item is at first.
struct StatusItemDescription {
    QString title;
    QString toolTip;
    /// Asked for whatever size the desktop shows; it must be legible on light and on dark.
    QIcon icon;
    std::vector<StatusItemEntry> menu;
};

/// The program's icon with a menu among those of the desktop's panel. It shows whenever the desktop has a place for it,
/// which may come, go and come again at any time, and in one place at most. Main thread only.
class StatusItem : public QObject {
    Q_OBJECT

public:
    ~StatusItem() override = default;

    /// Also where the same icon looks different now.
    virtual void setIcon(const QIcon& icon) = 0;
    virtual void setMenu(const std::vector<StatusItemEntry>& entries) = 0;

    /// Whether a person can see it at this moment.
    [[nodiscard]] virtual bool isShown() const = 0;

Q_SIGNALS:
    void shownChanged(bool shown);

    /// The icon itself was clicked.
    void activated(const pallwick::ActivationToken& token);

    /// The person chose the entry with this index, separators counted.
    void entryChosen(int index);

    /// The person asked for the menu in a place where the desktop does not show it by itself: it belongs beside the
    /// pointer.
    void menuRequested();

protected:
    StatusItem() = default;
};

}  // namespace pallwick

#include <PallwickMac/Platform/Freedesktop/DBusMenuAdaptor.h>

#include <QSignalSpy>

#include <gmock/gmock.h>

namespace pallwick::freedesktop {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::vector<StatusItemEntry> someEntries{
    {.label = QStringLiteral("One")}, {.label = {}, .isSeparator = true}, {.label = QStringLiteral("snake_case")}};

class DBusMenuAdaptorTest : public ::testing::Test {
protected:
    DBusMenuAdaptorTest() { menu.setEntries(someEntries); }

    [[nodiscard]] MenuLayout layout(int parent, int depth, const QStringList& names = {}) const {
        MenuLayout layout;
        static_cast<void>(menu.GetLayout(parent, depth, names, layout));
        return layout;
    }

    [[nodiscard]] static QVariantMap label(const char* text) {
        return {{QStringLiteral("label"), QString::fromUtf8(text)}};
    }

    std::vector<int> chosen;
    QObject object;
    DBusMenuAdaptor& menu = *new DBusMenuAdaptor(&object, [this](int index) { chosen.push_back(index); });
};

TEST_F(DBusMenuAdaptorTest, HasItsEntriesInItsLayout) {
    const MenuLayout all = layout(0, -1);

    ASSERT_EQ(all.children.size(), 3);
    EXPECT_EQ(all.properties.value(QStringLiteral("children-display")), QStringLiteral("submenu"));
    EXPECT_EQ(all.children[0].properties, label("One"));
    EXPECT_EQ(all.children[1].properties.value(QStringLiteral("type")), QStringLiteral("separator"));
    EXPECT_EQ(all.children[2].id, 3);
}

TEST_F(DBusMenuAdaptorTest, EscapesWhatWouldMarkAKey) {
    EXPECT_EQ(layout(0, -1).children[2].properties, label("snake__case"));
}

TEST_F(DBusMenuAdaptorTest, GivesOnlyWhatWasAskedFor) {
    EXPECT_THAT(layout(0, 0).children, IsEmpty());
    EXPECT_THAT(layout(2, -1).children, IsEmpty());
    EXPECT_THAT(layout(0, -1, {QStringLiteral("icon-name")}).children[0].properties, IsEmpty());
    EXPECT_EQ(menu.GetGroupProperties({3, 99}, {}).size(), 1);
    EXPECT_EQ(menu.GetGroupProperties({}, {}).size(), 4);
    EXPECT_EQ(menu.GetProperty(1, QStringLiteral("label")).variant(), QStringLiteral("One"));
    EXPECT_TRUE(menu.GetProperty(99, QStringLiteral("label")).variant().isValid());
}

TEST_F(DBusMenuAdaptorTest, TellsOfClicksOnEntriesAlone) {
    menu.Event(3, QStringLiteral("clicked"), {}, 0);
    menu.Event(1, QStringLiteral("hovered"), {}, 0);
    for (const int id : {-1, 0, 4}) {
        menu.Event(id, QStringLiteral("clicked"), {}, 0);
    }

    EXPECT_THAT(chosen, ElementsAre(2));
}

TEST_F(DBusMenuAdaptorTest, TakesManyEventsAtOnce) {
    const QString clicked = QStringLiteral("clicked");

    const QList<int> unknown = menu.EventGroup({{.id = 1, .name = clicked}, {.id = 9, .name = clicked}});

    EXPECT_THAT(chosen, ElementsAre(0));
    EXPECT_THAT(unknown, ElementsAre(9));
}

TEST_F(DBusMenuAdaptorTest, AnnouncesAChangedLabelByItself) {
    QSignalSpy properties(&menu, &DBusMenuAdaptor::ItemsPropertiesUpdated);
    QSignalSpy layouts(&menu, &DBusMenuAdaptor::LayoutUpdated);
    std::vector<StatusItemEntry> entries = someEntries;
    entries[0].label = QStringLiteral("Two");

    menu.setEntries(entries);
    menu.setEntries(entries);

    ASSERT_EQ(properties.count(), 1);
    const auto updated = properties.front().front().value<QList<MenuItem>>();
    ASSERT_EQ(updated.size(), 1);
    EXPECT_EQ(updated.front().id, 1);
    EXPECT_EQ(updated.front().properties, label("Two"));
    EXPECT_EQ(layouts.count(), 0);
}

TEST_F(DBusMenuAdaptorTest, AnnouncesAnotherLayoutWithANewRevision) {
    QSignalSpy layouts(&menu, &DBusMenuAdaptor::LayoutUpdated);
    MenuLayout unused;
    const uint before = menu.GetLayout(0, 0, {}, unused);

    menu.setEntries({{.label = QStringLiteral("One")}});

    ASSERT_EQ(layouts.count(), 1);
    EXPECT_GT(layouts.front().front().toUInt(), before);
    EXPECT_EQ(menu.GetLayout(0, 0, {}, unused), layouts.front().front().toUInt());
}

}  // namespace
}  // namespace pallwick::freedesktop

#include "Views.h"

#include <support/TestClient.h>

#include <fstream>

namespace pallwick::pictures {
namespace {

using support::PixelPoint;
using support::PixelRect;
using support::TestClient;

void closeMenu(Session& session, xcb_window_t menu) {
    session.desktop().keyboard().press(XK_Escape);
    session.desktop().x().await("the menu closed", [&] { return !session.desktop().windows().isViewable(menu); });
}

void showMenuOfBar(Session& session, const std::string& title) {
    session.program().click("menu item", title);
    const xcb_window_t menu = session.main().awaitMenu();
    session.takeMenu("menu-" + title, "The menu \"" + title + "\" open", menu);
    closeMenu(session, menu);
}

void showMenuOfRow(Session& session) {
    const PixelRect row = session.main().rows().front().extents();
    session.desktop().pointer().click(row.centre(), support::MouseButton::right);
    const xcb_window_t menu = session.main().awaitMenu();
    session.takeMenu("row-menu", "The menu of a row of the list", menu);
    closeMenu(session, menu);
}

void showPresets(Session& session) {
    session.program().click("button menu", "Presets");
    const xcb_window_t menu = session.main().awaitMenu();
    session.takeMenu("presets", "The menu \"Presets\" open", menu);
    closeMenu(session, menu);
}

void showPicker(Session& session) {
    session.program().click("combo box", "");
    const xcb_window_t list = session.main().awaitMenu();
    session.takeMenu("window-picker", "The list of windows open", list);
    closeMenu(session, list);
}

void showDialog(Session& session, const std::string& title, const std::string& name, const std::string& sentence) {
    const xcb_window_t window = session.desktop().windows().awaitClient(title);
    session.program().giveKeyboardTo(window);
    session.takeWindow(name, sentence, window);
    session.desktop().keyboard().press(XK_Escape);
    session.desktop().x().await(title + " closed", [&] { return !session.desktop().windows().isViewable(window); });
    session.program().giveKeyboardTo(session.main().window());
}

void showUnselected(Session& session) {
    const PixelRect list = session.program().controls().await("list", "Manual Overlays").extents();
    session.desktop().pointer().click({.x = list.centre().x, .y = list.maxY() - session.program().pixels(6)});
    session.takeMainWindow("unselected", "Overlays, none of them selected in the list");
    session.desktop().pointer().click(session.main().rows().front().extents().centre());
}

/// The first overlay, partly beyond the left and the lower edge of the screen.
void showNegativeCoordinates(Session& session) {
    const support::Program::Overlay overlay = session.program().awaitOverlayCount(2).back();
    const PixelPoint grip = overlay.rect.centre();
    const PixelRect screen = session.desktop().x().rootRect();
    const PixelPoint goal{.x = session.program().pixels(40), .y = screen.height - session.program().pixels(30)};
    session.desktop().pointer().drag(grip, goal);
    session.program().awaitOverlay("the overlay in the corner",
                                   [&](const support::Program::Overlay& seen) { return seen.rect.centre() == goal; });
    session.takeMainWindow("negative-coordinates", "An overlay beyond the screen's left and lower edge");
}

void showFailure(Session& session) {
    const std::filesystem::path directory = session.desktop().dataHome() / "Pallwick";
    std::filesystem::create_directories(directory);
    std::ofstream(directory / "presets.json") << "{\"display\": [not a preset";
    session.main().choosePreset("Save Display Preset");
    session.takeMainWindow("failure", "A command that failed, in the status line");
}

}  // namespace

void showViews(Session& session) {
    TestClient notes(session.desktop(), {.title = "Notes", .windowClass = "Ledger"});
    TestClient figures(session.desktop(),
                       {.title = "Quarterly figures of the whole company, third revision, not yet approved by anybody",
                        .windowClass = "Spreadsheet of the Accounts Department"});
    session.program().giveKeyboardTo(session.main().window());

    session.takeMainWindow("empty", "The main window at first");
    showMenuOfBar(session, "Pallwick");
    showMenuOfBar(session, "Overlay");
    session.desktop().keyboard().press(XK_comma, {XK_Control_L});
    showDialog(session, "Pallwick Settings", "settings", "The settings window");

    session.program().click("Add");
    session.program().awaitOverlayCount(1);
    session.program().click("Add");
    session.program().awaitOverlayCount(2);
    session.takeMainWindow("overlays", "Two overlays, the newer one selected");
    showUnselected(session);
    showMenuOfRow(session);
    showPresets(session);

    session.main().chooseLastWindow();
    session.takeMainWindow("window-chosen", "A window with a long title chosen, the focus on its picker");
    showPicker(session);
    session.program().click("Attach");
    session.takeMainWindow("attached", "An overlay attached to a window with a long title");
    session.program().click("Detach");

    showNegativeCoordinates(session);
    showFailure(session);

    session.program().click("Lock");
    session.takeMainWindow("locked", "The main window while overlays are locked");
    session.program().click("Edit");

    session.program().click("Color");
    showDialog(session, "Color", "colour-chooser", "The chooser of the tint's colour");
}

}  // namespace pallwick::pictures

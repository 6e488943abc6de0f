#include <PallwickMac/Views/ProgramStyle.h>

#include <PallwickMac/Views/Appearance.h>
#include <PallwickMac/Views/ControlPainting.h>
#include <PallwickMac/Views/MenuPainting.h>

#include <QPainter>
#include <QStyleOption>

namespace pallwick {

namespace {

constexpr double controlRadius = 5;
constexpr int sliderHandleDiameter = 18;
constexpr int menuMargin = 4;

void drawHorizontalSlider(QPainter& painter, const QStyleOptionSlider& option, const QRect& handle) {
    const QPalette& palette = option.palette;
    const bool enabled = option.state.testFlag(QStyle::State_Enabled);
    const double middle = handle.y() + handle.height() / 2.0;
    const double centre = handle.x() + handle.width() / 2.0;
    const QRectF groove(option.rect.x() + 2.0, middle - 2, option.rect.width() - 4.0, 4);
    const QRectF knob(centre - 7.5, middle - 7.5, 15, 15);

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(blended(palette.color(QPalette::Window), palette.color(QPalette::WindowText), 0.18));
    painter.drawRoundedRect(groove, 2, 2);

    QRectF filled = groove;
    if (option.upsideDown) {
        filled.setLeft(centre);
    } else {
        filled.setRight(centre);
    }
    painter.setBrush(enabled ? palette.color(QPalette::Highlight) : separatorColor(palette));
    painter.drawRoundedRect(filled, 2, 2);

    painter.setPen(blended(controlOutline(palette), palette.color(QPalette::WindowText), 0.15));
    QStyleOption knobOption = option;
    knobOption.state.setFlag(QStyle::State_Sunken, option.activeSubControls.testFlag(QStyle::SC_SliderHandle) &&
                                                       option.state.testFlag(QStyle::State_Sunken));
    painter.setBrush(isDark(palette) ? blended(controlFill(knobOption), palette.color(QPalette::WindowText), 0.8)
                                     : controlFill(knobOption));
    painter.drawEllipse(knob);
    if (showsFocus(option)) {
        drawFocusRing(painter, knob.adjusted(-1, -1, 1, 1), 8.5, palette);
    }
    painter.restore();
}

}  // namespace

ProgramStyle::ProgramStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

void ProgramStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                 const QWidget* widget) const {
    switch (element) {
        case PE_PanelButtonCommand:
            drawControlSurface(*painter, option->rect, controlRadius, *option);
            // Fusion marks the focus of a button by its panel alone.
            if (showsFocus(*option)) {
                drawFocusRing(*painter, option->rect, controlRadius, option->palette);
            }
            return;
        case PE_PanelButtonTool: {
            const bool pressed = option->state.testFlag(State_Sunken) || option->state.testFlag(State_On);
            const bool hovered = option->state.testFlag(State_Enabled) && option->state.testFlag(State_MouseOver);
            if (pressed || hovered) {
                painter->save();
                painter->setRenderHint(QPainter::Antialiasing);
                painter->setPen(Qt::NoPen);
                painter->setBrush(blended(option->palette.color(QPalette::Window),
                                          option->palette.color(QPalette::WindowText), pressed ? 0.2 : 0.12));
                painter->drawRoundedRect(option->rect, controlRadius, controlRadius);
                painter->restore();
            }
            return;
        }
        case PE_PanelMenu:
            // Fusion's frame is darker than the window, which on a dark one nobody sees.
            painter->save();
            painter->setPen(controlOutline(option->palette));
            painter->setBrush(option->palette.color(QPalette::Base));
            painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
            painter->restore();
            return;
        case PE_FrameFocusRect:
            if (option->state.testFlag(State_KeyboardFocusChange)) {
                drawFocusRing(*painter, option->rect, controlRadius, option->palette);
            }
            return;
        default:
            QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void ProgramStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
    const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    if (element == CE_MenuItem && item && item->menuItemType == QStyleOptionMenuItem::Separator &&
        item->text.isEmpty()) {
        const QRect& rect = item->rect;
        painter->fillRect(rect.x() + 8, rect.center().y(), rect.width() - 16, 1, separatorColor(item->palette));
        return;
    }
    switch (element) {
        case CE_MenuItem:
            if (item && isPlainMenuItem(*item, widget)) {
                drawPlainMenuItem(*painter, *item);
                return;
            }
            break;
        case CE_MenuBarItem:
            if (item) {
                drawMenuBarItem(*painter, *item);
                return;
            }
            break;
        case CE_MenuBarEmptyArea:
            painter->fillRect(option->rect, option->palette.color(QPalette::Window));
            return;
        default:
            break;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
}

void ProgramStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                                      const QWidget* widget) const {
    const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option);
    if (control == CC_Slider && slider && slider->orientation == Qt::Horizontal) {
        drawHorizontalSlider(*painter, *slider, proxy()->subControlRect(CC_Slider, slider, SC_SliderHandle, widget));
        return;
    }
    QProxyStyle::drawComplexControl(control, option, painter, widget);
}

int ProgramStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    switch (metric) {
        case PM_SliderThickness:
        case PM_SliderControlThickness:
        case PM_SliderLength:
            return sliderHandleDiameter;
        case PM_MenuVMargin:
            return menuMargin;
        case PM_MenuHMargin:
            // Entries are painted over what is beneath them, and the frame must not be.
            return 1;
        case PM_ButtonShiftHorizontal:
        case PM_ButtonShiftVertical:
            return 0;
        default:
            return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

QSize ProgramStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contentsSize,
                                     const QWidget* widget) const {
    const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    if (type == CT_MenuItem && item && isPlainMenuItem(*item, widget)) {
        return plainMenuItemSize(*item);
    }
    const QSize size = QProxyStyle::sizeFromContents(type, option, contentsSize, widget);
    switch (type) {
        case CT_PushButton:
            return size + QSize(8, 2);
        case CT_ComboBox:
            // As high as the buttons beside it.
            return size + QSize(0, 2);
        default:
            return size;
    }
}

int ProgramStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                            QStyleHintReturn* returnData) const {
    // A click on the groove means the value there, not a step towards it.
    if (hint == SH_Slider_AbsoluteSetButtons) {
        return Qt::LeftButton;
    }
    // Symbols of the desktop's theme would stand among our own.
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons) {
        return 0;
    }
    return QProxyStyle::styleHint(hint, option, widget, returnData);
}

}  // namespace pallwick

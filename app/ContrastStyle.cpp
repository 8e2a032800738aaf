#include "app/ContrastStyle.h"

#include <QPainter>
#include <QStyleOptionComplex>

namespace quellbox {

namespace {

constexpr int darkest = 32; // lightness of a window below which outlines cannot be told from it

bool HasLostOutlines(const QStyleOption& option) {
    return option.palette.color(QPalette::Window).lightness() < darkest;
}

QPen Outline(const QStyleOption& option) {
    const bool focused = (option.state & QStyle::State_HasFocus) && (option.state & QStyle::State_KeyboardFocusChange);
    return {option.palette.color(focused ? QPalette::Highlight : QPalette::WindowText), 1};
}

void DrawOutline(const QStyleOption& option, QPainter& painter, QRect rect, bool round = false) {
    painter.save();
    painter.setPen(Outline(option));
    painter.setBrush(Qt::NoBrush);
    rect.adjust(0, 0, -1, -1);
    if (round) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.drawEllipse(rect);
    } else {
        painter.drawRect(rect);
    }
    painter.restore();
}

/// Buttons of a toolbar have an outline only while something is the matter with them.
bool IsRaised(const QStyleOption& option) {
    const QStyle::State focused = QStyle::State_HasFocus | QStyle::State_KeyboardFocusChange;
    return (option.state & (QStyle::State_On | QStyle::State_Sunken)) || (option.state & focused) == focused;
}

bool HasOutline(QStyle::PrimitiveElement element, const QStyleOption& option) {
    switch (element) {
    case QStyle::PE_IndicatorRadioButton:
    case QStyle::PE_IndicatorCheckBox:
    case QStyle::PE_PanelButtonCommand:
    case QStyle::PE_FrameLineEdit:
    case QStyle::PE_FrameTabWidget:
    case QStyle::PE_Frame:
        return true;
    case QStyle::PE_PanelButtonTool:
        return IsRaised(option);
    default:
        return false;
    }
}

} // namespace

ContrastStyle::ContrastStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

void ContrastStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                  const QWidget* widget) const {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (HasLostOutlines(*option) && HasOutline(element, *option)) {
        DrawOutline(*option, *painter, option->rect, element == PE_IndicatorRadioButton);
    }
}

void ContrastStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                                const QWidget* widget) const {
    QProxyStyle::drawControl(element, option, painter, widget);
    if (HasLostOutlines(*option) && element == CE_TabBarTabShape && (option->state & State_Selected)) {
        DrawOutline(*option, *painter, option->rect);
    }
}

void ContrastStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                                       const QWidget* widget) const {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    if (!HasLostOutlines(*option)) {
        return;
    }
    if (control == CC_ComboBox) {
        DrawOutline(*option, *painter, option->rect);
    } else if (control == CC_GroupBox) {
        QRect frame = option->rect;
        frame.setTop(subControlRect(CC_GroupBox, option, SC_GroupBoxLabel, widget).bottom() + 1);
        DrawOutline(*option, *painter, frame);
    } else if (control == CC_Slider) {
        DrawOutline(*option, *painter, subControlRect(CC_Slider, option, SC_SliderHandle, widget));
    } else if (control == CC_ScrollBar) {
        DrawOutline(*option, *painter, subControlRect(CC_ScrollBar, option, SC_ScrollBarSlider, widget));
    }
}

} // namespace quellbox

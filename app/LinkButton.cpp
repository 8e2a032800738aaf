#include "app/LinkButton.h"

#include <QKeyEvent>
#include <QStyleOptionFocusRect>
#include <QStylePainter>

namespace quellbox {

namespace {

constexpr int margin = 2; // pixels around the text, for the frame of the focus

} // namespace

LinkButton::LinkButton(QWidget* parent) : QAbstractButton(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setForegroundRole(QPalette::Link);
}

QSize LinkButton::sizeHint() const {
    return fontMetrics().size(Qt::TextSingleLine | Qt::TextHideMnemonic, text()) + QSize(2 * margin, 2 * margin);
}

QSize LinkButton::minimumSizeHint() const {
    return sizeHint();
}

void LinkButton::paintEvent(QPaintEvent* /*event*/) {
    QStylePainter painter(this);
    QFont underlined = font();
    underlined.setUnderline(true);
    painter.setFont(underlined);
    painter.setPen(palette().color(foregroundRole()));
    painter.drawText(rect().adjusted(margin, margin, -margin, -margin),
                     Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextHideMnemonic, text());
    if (hasFocus()) {
        QStyleOptionFocusRect frame;
        frame.initFrom(this);
        frame.backgroundColor = palette().color(QPalette::Window);
        painter.drawPrimitive(QStyle::PE_FrameFocusRect, frame);
    }
}

// Enter would press the default button of the dialog.
void LinkButton::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        click();
        return;
    }
    QAbstractButton::keyPressEvent(event);
}

} // namespace quellbox

#include "app/BarChart.h"

#include "app/BarChartAccess.h"
#include "app/PicturePaint.h"
#include "app/PlainToolTip.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QFontInfo>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>
#include <optional>

namespace quellbox {

namespace {

constexpr double margin = 6;
constexpr QSize smallestFile(640, 400);

std::optional<PictureMove> MoveOf(int key) {
    switch (key) {
    case Qt::Key_Left:
        return PictureMove::Left;
    case Qt::Key_Right:
        return PictureMove::Right;
    case Qt::Key_Up:
        return PictureMove::Up;
    case Qt::Key_Down:
        return PictureMove::Down;
    case Qt::Key_Home:
        return PictureMove::First;
    case Qt::Key_End:
        return PictureMove::Last;
    default:
        return std::nullopt;
    }
}

} // namespace

BarChart::BarChart(QWidget* parent) : QWidget(parent) {
    InstallBarChartAccess();
    setFocusPolicy(Qt::StrongFocus);
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);
}

void BarChart::SetPicture(const OverviewPicture& picture) {
    if (picture == picture_) {
        return;
    }
    const bool isSomewhere = current_.bar >= 0;
    const MessageGroup group = isSomewhere ? GroupAt(picture_, current_) : MessageGroup();
    picture_ = picture;
    current_ = isSomewhere ? PlaceWith(picture_, group) : OverviewPlace();
    LayOut();
}

QRectF BarChart::Inside() const {
    return QRectF(rect()).adjusted(margin, margin, -margin, -margin);
}

void BarChart::LayOut() {
    shown_ = LayOutPicture(picture_, Inside().size().expandedTo({0, 0}), FontOfPicture(font()));
    update();
    QAccessibleEvent changed(this, QAccessible::ObjectReorder);
    QAccessible::updateAccessibility(&changed);
    Q_EMIT LaidOut();
}

QRect BarChart::RectOf(OverviewPlace place) const {
    return shown_.RectOf(place).translated(Inside().topLeft()).toAlignedRect();
}

QString BarChart::TextOf(OverviewPlace place) const {
    const auto count = static_cast<int>(CountAt(picture_, place));
    const QString messages = count == 1 ? tr("one message") : tr("%n messages", nullptr, count);
    return tr("%1: %2").arg(NameAt(picture_, place), messages);
}

void BarChart::SetCurrent(OverviewPlace place) {
    if (place == current_) {
        return;
    }
    current_ = place;
    update();
    TellFocus();
}

void BarChart::TellFocus() {
    const auto found = std::find_if(shown_.marks.begin(), shown_.marks.end(),
                                    [this](const PictureMark& mark) { return mark.place == current_; });
    if (!hasFocus() || found == shown_.marks.end()) {
        return;
    }
    QAccessibleEvent focus(this, QAccessible::Focus);
    focus.setChild(static_cast<int>(found - shown_.marks.begin()));
    QAccessible::updateAccessibility(&focus);
}

void BarChart::Choose(OverviewPlace place, bool adds) {
    if (place.bar < 0 || CountAt(picture_, place) == 0) {
        return;
    }
    SetCurrent(place);
    const MessageGroup group = GroupAt(picture_, place); // the answer may change the picture
    Q_EMIT Chosen(group, adds);
}

QSize BarChart::minimumSizeHint() const {
    const int line = fontMetrics().height();
    return {14 * line, 9 * line};
}

QSize BarChart::sizeHint() const {
    return minimumSizeHint() * 3 / 2;
}

void BarChart::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const QRectF inside = Inside();
    if (picture_.bars.empty()) {
        painter.drawText(inside, Qt::AlignCenter | Qt::TextWordWrap, tr("No messages are shown."));
        return;
    }
    painter.translate(inside.topLeft());
    const PictureColours colours = ColoursOf(palette());
    PaintPicture(painter, shown_, colours);
    const QRectF place = shown_.RectOf(current_);
    if (hasFocus() && !place.isEmpty()) {
        const QRectF frame = place.adjusted(-2, 0, 2, 0); // beside the letters
        painter.setRenderHint(QPainter::Antialiasing, false);
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(QColor(colours.background), 4));
        painter.drawRect(frame);
        painter.setPen(QPen(QColor(colours.text), 2));
        painter.drawRect(frame);
    }
}

void BarChart::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    LayOut();
}

void BarChart::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        updateGeometry();
        LayOut();
    }
}

void BarChart::keyPressEvent(QKeyEvent* event) {
    const bool chooses =
        event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Space;
    if (const std::optional<PictureMove> move = MoveOf(event->key())) {
        SetCurrent(MovedPlace(picture_, shown_, current_, *move));
    } else if (chooses) {
        Choose(current_, event->modifiers() & Qt::ControlModifier);
    } else {
        QWidget::keyPressEvent(event);
    }
}

OverviewPlace BarChart::PlaceIn(const QPoint& point) const {
    return shown_.PlaceAt(QPointF(point) - Inside().topLeft());
}

void BarChart::mousePressEvent(QMouseEvent* event) {
    const OverviewPlace place = PlaceIn(event->position().toPoint());
    if (event->button() == Qt::LeftButton) {
        Choose(place, event->modifiers() & Qt::ControlModifier);
    } else if (place.bar >= 0) {
        SetCurrent(place); // of which the menu is
    }
}

// By the key it is the menu of the bar that has the focus.
void BarChart::contextMenuEvent(QContextMenuEvent* event) {
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    const OverviewPlace place = isByKey ? current_ : PlaceIn(event->pos());
    const bool isOnBar = place.bar >= 0 && CountAt(picture_, place) > 0;
    if (isOnBar) {
        SetCurrent(place);
    }
    const QRect bar = RectOf(place);
    Q_EMIT MenuWanted(isOnBar, isByKey && !bar.isEmpty() ? mapToGlobal(bar.center()) : event->globalPos());
}

void BarChart::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    if (shown_.RectOf(current_).isEmpty()) {
        current_ = MovedPlace(picture_, shown_, {}, PictureMove::First);
    }
    update();
    TellFocus();
}

void BarChart::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    update();
}

bool BarChart::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) {
        return QWidget::event(event);
    }
    const auto* help = static_cast<QHelpEvent*>(event);
    const OverviewPlace place = PlaceIn(help->pos());
    if (place.bar < 0) {
        QToolTip::hideText();
    } else {
        QToolTip::showText(help->globalPos(), PlainToolTip(TextOf(place)), this, RectOf(place));
    }
    return true;
}

BarPicture BarChart::ForFile() const {
    const QSizeF size = this->size().expandedTo(smallestFile);
    const PictureFont pictureFont = FontOfPicture(font());
    const QString title = TitleOf(picture_.kind);
    return WithTitle(picture_, size, title, pictureFont);
}

QImage BarChart::Image() const {
    const BarPicture picture = ForFile();
    const PictureColours colours = ColoursOf(palette());
    QImage image(picture.size.toSize() * devicePixelRatioF(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(devicePixelRatioF());
    image.fill(QColor(colours.background));
    QPainter painter(&image);
    painter.setFont(font());
    PaintPicture(painter, picture, colours);
    return image;
}

QByteArray BarChart::Svg() const {
    return PictureSvg(picture_, ForFile(), ColoursOf(palette()),
                      {QFontInfo(font()).family(), static_cast<double>(QFontInfo(font()).pixelSize())});
}

} // namespace quellbox

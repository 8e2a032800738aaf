#include "app/PicturePaint.h"

#include <QFontMetricsF>

#include <cmath>

namespace quellbox {

namespace {

constexpr int blackWindow = 32; // lightness below which outlines are needed
constexpr int middle = 128;

QColor Mixed(const QColor& one, const QColor& other, double share) {
    const auto mix = [share](int left, int right) {
        return static_cast<int>(std::lround(left + share * (right - left)));
    };
    return {mix(one.red(), other.red()), mix(one.green(), other.green()), mix(one.blue(), other.blue())};
}

void PaintBar(QPainter& painter, const PictureShape& shape, const PictureColours& colours) {
    const QString outline = OutlineOf(colours, shape);
    painter.setPen(outline.isEmpty() ? QPen(Qt::NoPen) : QPen(QColor(outline), 0));
    painter.setBrush(QColor(ColourOf(colours, shape.tone)));
    painter.drawRect(shape.rect);
}

} // namespace

PictureFont FontOfPicture(const QFont& font) {
    const QFontMetricsF metrics(font);
    // Characters may reach beyond their advance; without a reserve the last one would be cut.
    return {
        [metrics](const QString& text) { return text.isEmpty() ? 0 : std::ceil(metrics.horizontalAdvance(text)) + 1; },
        metrics.height()};
}

PictureColours ColoursOf(const QPalette& palette) {
    const QColor ground = palette.color(QPalette::Base);
    const QColor text = palette.color(QPalette::Text);
    const bool isDark = ground.lightness() < middle;
    const bool isBlack = palette.color(QPalette::Window).lightness() < blackWindow;
    return {ground.name(),
            text.name(),
            Mixed(ground, text, 0.2).name(),
            palette.color(QPalette::Highlight).name(),
            isDark ? QStringLiteral("#58a6e8") : QStringLiteral("#3f88cf"),
            isDark ? QStringLiteral("#b48ae0") : QStringLiteral("#8a4fa8"),
            isDark ? QStringLiteral("#ff7a66") : QStringLiteral("#c0182a"),
            isBlack ? text.name() : QString()};
}

void PaintPicture(QPainter& painter, const BarPicture& picture, const PictureColours& colours) {
    for (const PictureShape& shape : picture.shapes) {
        switch (shape.kind) {
        case PictureShape::Kind::Bar:
            PaintBar(painter, shape, colours);
            break;
        case PictureShape::Kind::Line:
            painter.setPen(QPen(QColor(shape.isFaint ? colours.faint : colours.text), 0));
            painter.drawLine(shape.rect.topLeft(), shape.rect.bottomRight());
            break;
        case PictureShape::Kind::Text:
            painter.setPen(QColor(colours.text));
            painter.drawText(shape.rect,
                             static_cast<int>(shape.alignment.toInt()) | Qt::AlignAbsolute | Qt::TextSingleLine |
                                 Qt::TextDontClip,
                             shape.text);
            break;
        }
    }
}

} // namespace quellbox

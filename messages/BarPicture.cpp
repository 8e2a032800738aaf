#include "messages/BarPicture.h"

#include "messages/BarColumns.h"
#include "messages/BarRows.h"

#include <algorithm>

namespace quellbox {

namespace {

/// Another bar of those that are shown.
OverviewPlace NeighbourBar(const BarPicture& shown, OverviewPlace from, int step) {
    const int last = shown.firstBar + shown.barCount - 1;
    return {std::clamp(from.bar + step, shown.firstBar, last), OverviewPlace::whole};
}

/// The whole of a day lies below its parts.
OverviewPlace NeighbourPart(const OverviewPicture& picture, OverviewPlace from, int step) {
    const int parts = static_cast<int>(picture.bars[static_cast<size_t>(from.bar)].parts.size());
    return {from.bar, std::clamp(from.part + step, OverviewPlace::whole, parts - 1)};
}

} // namespace

OverviewPlace BarPicture::PlaceAt(QPointF point) const {
    const auto found = std::find_if(marks.rbegin(), marks.rend(),
                                    [point](const PictureMark& mark) { return mark.rect.contains(point); });
    return found == marks.rend() ? OverviewPlace() : found->place;
}

QRectF BarPicture::RectOf(OverviewPlace place) const {
    const auto found =
        std::find_if(marks.begin(), marks.end(), [place](const PictureMark& mark) { return mark.place == place; });
    return found == marks.end() ? QRectF() : found->rect;
}

BarPicture LayOutPicture(const OverviewPicture& picture, QSizeF size, const PictureFont& font) {
    return picture.kind == OverviewKind::Days ? LayOutColumns(picture, size, font) : LayOutRows(picture, size, font);
}

BarPicture WithTitle(const OverviewPicture& picture, QSizeF size, const QString& title, const PictureFont& font) {
    const double margin = font.lineHeight / 2;
    const double top = 2 * font.lineHeight;
    const QSizeF inside(std::max(0.0, size.width() - 2 * margin), std::max(0.0, size.height() - top - margin));
    BarPicture laidOut = LayOutPicture(picture, inside, font);
    for (PictureShape& shape : laidOut.shapes) {
        shape.rect.translate(margin, top);
    }
    for (PictureMark& mark : laidOut.marks) {
        mark.rect.translate(margin, top);
    }
    const QRectF line(margin, margin / 2, inside.width(), font.lineHeight);
    laidOut.shapes.push_back({PictureShape::Kind::Text, line, FittingText(title, line.width(), font)});
    laidOut.size = size;
    return laidOut;
}

QString FittingText(const QString& text, double width, const PictureFont& font) {
    if (font.width(text) <= width) {
        return text;
    }
    qsizetype fits = 0;
    for (qsizetype tooLong = text.size(); fits + 1 < tooLong;) {
        const qsizetype middle = (fits + tooLong) / 2;
        (font.width(text.first(middle) + u'\u2026') <= width ? fits : tooLong) = middle;
    }
    if (fits > 0 && text[fits - 1].isHighSurrogate()) {
        --fits;
    }
    const QString shortened = text.first(fits).trimmed() + u'\u2026';
    return font.width(shortened) <= width ? shortened : QString();
}

OverviewPlace MovedPlace(const OverviewPicture& picture, const BarPicture& shown, OverviewPlace from,
                         PictureMove move) {
    if (shown.barCount == 0) {
        return {};
    }
    const OverviewPlace first{shown.firstBar};
    const OverviewPlace last{shown.firstBar + shown.barCount - 1};
    const bool isDays = picture.kind == OverviewKind::Days;
    if (from.bar < first.bar || from.bar > last.bar) {
        return isDays ? last : first;
    }
    switch (move) {
    case PictureMove::First:
        return first;
    case PictureMove::Last:
        return last;
    case PictureMove::Left:
        return NeighbourBar(shown, from, -1);
    case PictureMove::Right:
        return NeighbourBar(shown, from, 1);
    case PictureMove::Up:
        return isDays ? NeighbourPart(picture, from, 1) : NeighbourBar(shown, from, -1);
    case PictureMove::Down:
        return isDays ? NeighbourPart(picture, from, -1) : NeighbourBar(shown, from, 1);
    }
    return from;
}

} // namespace quellbox

#include "messages/BarRows.h"

#include <algorithm>

namespace quellbox {

namespace {

constexpr double heightOfRow = 1.5;  // of a line
constexpr double heightOfBar = 0.85; // of a line
constexpr double mostOfLabels = 0.5; // of the width
constexpr double gapOfTexts = 0.5;   // of a line

/// The columns of such a picture.
struct RowColumns {
    double label = 0;
    double bar = 0; ///< of the longest one
    double barBegin = 0;
    double number = 0;
};

using Bars = std::vector<OverviewBar>;

double WidestOf(const Bars& bars, int count, const auto& widthOf) {
    double widest = 0;
    for (int bar = 0; bar < count; ++bar) {
        widest = std::max(widest, widthOf(bars[static_cast<size_t>(bar)]));
    }
    return widest;
}

RowColumns ColumnsOf(const Bars& bars, int count, double width, const PictureFont& font) {
    const double space = gapOfTexts * font.lineHeight;
    RowColumns columns;
    columns.number =
        WidestOf(bars, count, [&](const OverviewBar& bar) { return font.width(QString::number(bar.Count())); });
    columns.label = std::min(WidestOf(bars, count, [&](const OverviewBar& bar) { return font.width(bar.label); }),
                             width * mostOfLabels);
    columns.barBegin = columns.label + space;
    columns.bar = std::max(0.0, width - columns.barBegin - space / 2 - columns.number);
    return columns;
}

double ToneOf(const OverviewPicture& picture, const OverviewPart& part) {
    const auto levels = static_cast<double>(picture.series.size());
    return part.series < 0 ? -1 : levels < 2 ? 1 : part.series / (levels - 1);
}

} // namespace

BarPicture LayOutRows(const OverviewPicture& picture, QSizeF size, const PictureFont& font) {
    BarPicture laidOut{size, {}, {}};
    const double height = heightOfRow * font.lineHeight;
    const int fitting = static_cast<int>(std::max(0.0, size.height() / height));
    const int count = std::min(fitting, static_cast<int>(picture.bars.size()));
    const RowColumns columns = ColumnsOf(picture.bars, count, size.width(), font);
    const auto most = WidestOf(picture.bars, count, [](const OverviewBar& bar) { return double(bar.Count()); });
    laidOut.barCount = count;
    for (int row = 0; row < count; ++row) {
        const OverviewBar& bar = picture.bars[static_cast<size_t>(row)];
        const QRectF whole(0, row * height, size.width(), height);
        const double thickness = heightOfBar * font.lineHeight;
        const double length = std::max(1.0, columns.bar * static_cast<double>(bar.Count()) / most);
        const QRectF shape(columns.barBegin, whole.center().y() - thickness / 2, length, thickness);
        const double end = shape.right() + gapOfTexts * font.lineHeight / 2;
        const QRectF label(0, whole.top(), columns.label, height);
        laidOut.shapes.push_back({PictureShape::Kind::Bar, shape, {}, {}, ToneOf(picture, bar.parts.front())});
        laidOut.shapes.push_back({PictureShape::Kind::Text, label, FittingText(bar.label, columns.label, font),
                                  Qt::AlignLeft | Qt::AlignVCenter});
        laidOut.shapes.push_back({PictureShape::Kind::Text, QRectF(end, whole.top(), columns.number, height),
                                  QString::number(bar.Count()), Qt::AlignLeft | Qt::AlignVCenter});
        laidOut.marks.push_back({{row, OverviewPlace::whole}, whole});
    }
    return laidOut;
}

} // namespace quellbox

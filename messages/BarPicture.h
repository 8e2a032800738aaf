#pragma once

#include "messages/OverviewTable.h"

#include <QRectF>
#include <QSizeF>

#include <functional>
#include <vector>

namespace quellbox {

/// What a picture has to know of its font; lengths in the units of the picture.
struct PictureFont {
    std::function<double(const QString&)> width;
    double lineHeight = 0;
};

/// One thing that is drawn.
struct PictureShape {
    enum class Kind { Bar, Line, Text };

    Kind kind = Kind::Text;
    QRectF rect{}; ///< of a line its two ends are top left and bottom right
    QString text{};
    Qt::Alignment alignment = Qt::AlignLeft | Qt::AlignVCenter; ///< of a text in its rect, into which it fits
    double tone = -1; ///< of a bar: from 0, the lowest level, to 1, the highest; -1 where there are none
    bool isFaint = false;
};

/// A place that can be chosen, where a click finds it and a frame shows that it has the focus.
struct PictureMark {
    OverviewPlace place;
    QRectF rect;
};

/// A picture as a list of shapes in the order in which they are drawn. It knows nothing of painting, so that a window
/// and a file show the same.
struct BarPicture {
    QSizeF size;
    std::vector<PictureShape> shapes;
    std::vector<PictureMark> marks; ///< whole bars before their parts, in the order of the bars
    int firstBar = 0;               ///< bars before it, and behind the last one, have no room
    int barCount = 0;

    /// The place at a point: a part, else a whole bar, else nowhere.
    OverviewPlace PlaceAt(QPointF point) const;

    /// The rect of a place; empty where it has no room.
    QRectF RectOf(OverviewPlace place) const;
};

/// Lays a picture out: days as columns from left to right, the latest where there is no room for all, with their levels
/// above each other; everything else as bars from the top, with names at their left and numbers at their right.
BarPicture LayOutPicture(const OverviewPicture& picture, QSizeF size, const PictureFont& font);

/// The same with a title above it, for a file.
BarPicture WithTitle(const OverviewPicture& picture, QSizeF size, const QString& title, const PictureFont& font);

/// A text that is no wider than that; where it has to be shortened, it ends in U+2026.
QString FittingText(const QString& text, double width, const PictureFont& font);

/// Where a key that moves leads to: to another bar, or to a part of a day and back to the whole of it. From nowhere,
/// and from a place that has no room, to the first bar that is shown, of days to the last one.
enum class PictureMove { Left, Right, Up, Down, First, Last };
OverviewPlace MovedPlace(const OverviewPicture& picture, const BarPicture& shown, OverviewPlace from, PictureMove move);

} // namespace quellbox

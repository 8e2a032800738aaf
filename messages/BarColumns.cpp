#include "messages/BarColumns.h"

#include <algorithm>
#include <cmath>

namespace quellbox {

namespace {

// In lines of text.
constexpr double narrowestColumn = 0.5;
constexpr double widestColumn = 3;
constexpr double textSpace = 0.5;
constexpr double linesOfStep = 2;
constexpr double widthOfSwatch = 0.8;

// Of a column's room, so that columns do not touch.
constexpr double filledShare = 0.8;

class ColumnLayout {
public:
    ColumnLayout(const OverviewPicture& picture, QSizeF size, const PictureFont& font)
        : picture_(picture), font_(font), laidOut_{size, {}, {}} {}

    BarPicture Make() {
        const double line = font_.lineHeight;
        const double legend = AddLegend();
        plot_ = QRectF(0, line / 2, laidOut_.size.width(), laidOut_.size.height() - legend - 2 * line);
        if (picture_.bars.empty() || plot_.height() < line) {
            laidOut_.shapes.clear();
            return laidOut_;
        }
        AddAxis();
        ChooseBars();
        for (int place = 0; place < laidOut_.barCount; ++place) {
            AddColumn(laidOut_.firstBar + place, plot_.left() + place * columnWidth_);
        }
        AddDays();
        return laidOut_;
    }

private:
    qint64 Most() const {
        qint64 most = 1;
        for (const OverviewBar& bar : picture_.bars) {
            most = std::max(most, bar.Count());
        }
        return most;
    }

    double ToneOf(int series) const {
        const auto levels = static_cast<double>(picture_.series.size());
        return levels < 2 ? 1 : series / (levels - 1);
    }

    void AddText(const QRectF& rect, const QString& text, Qt::Alignment alignment) {
        laidOut_.shapes.push_back({PictureShape::Kind::Text, rect, text, alignment});
    }

    /// The levels below the picture, as many as have room. Returns the height that they take.
    double AddLegend() {
        const double line = font_.lineHeight;
        double left = 0;
        const double top = laidOut_.size.height() - line;
        for (int series = 0; series < picture_.series.size(); ++series) {
            const QString& text = picture_.series[series];
            const double textLeft = left + (widthOfSwatch + 0.3) * line;
            const double width = font_.width(text);
            if (textLeft + width > laidOut_.size.width()) {
                break;
            }
            const QRectF swatch(left, top + (1 - widthOfSwatch) / 2 * line, widthOfSwatch * line, widthOfSwatch * line);
            laidOut_.shapes.push_back({PictureShape::Kind::Bar, swatch, {}, {}, ToneOf(series)});
            AddText(QRectF(textLeft, top, width, line), text, Qt::AlignLeft | Qt::AlignVCenter);
            left = textLeft + width + 2 * textSpace * line;
        }
        return picture_.series.isEmpty() ? 0 : (1 + textSpace) * line;
    }

    void AddAxis() {
        const qint64 most = Most();
        const double line = font_.lineHeight;
        const int steps = std::max(2, static_cast<int>(plot_.height() / (linesOfStep * line)));
        const qint64 step = StepOfAxis(most, steps);
        top_ = most;
        const double labels = font_.width(QString::number(top_));
        plot_.setLeft(std::min(labels + textSpace * line, plot_.right()));
        for (qint64 value = 0; value <= top_; value += step) {
            const double y = plot_.bottom() - HeightOf(value);
            laidOut_.shapes.push_back({PictureShape::Kind::Line,
                                       QRectF(QPointF(plot_.left(), y), QPointF(plot_.right(), y)),
                                       {},
                                       {},
                                       -1,
                                       true});
            AddText(QRectF(0, y - line / 2, labels, line), QString::number(value), Qt::AlignRight | Qt::AlignVCenter);
        }
    }

    double HeightOf(qint64 count) const {
        return plot_.height() * static_cast<double>(count) / static_cast<double>(top_);
    }

    void ChooseBars() {
        const int fitting = static_cast<int>(plot_.width() / (narrowestColumn * font_.lineHeight));
        laidOut_.barCount = std::min(std::max(fitting, 1), static_cast<int>(picture_.bars.size()));
        laidOut_.firstBar = static_cast<int>(picture_.bars.size()) - laidOut_.barCount;
        columnWidth_ = std::min(plot_.width() / laidOut_.barCount, widestColumn * font_.lineHeight);
    }

    void AddColumn(int bar, double left) {
        const double line = font_.lineHeight;
        const QRectF room(left, plot_.top(), columnWidth_, plot_.height() + line);
        laidOut_.marks.push_back({{bar, OverviewPlace::whole}, room});
        const OverviewBar& parts = picture_.bars[static_cast<size_t>(bar)];
        double bottom = plot_.bottom();
        for (size_t part = 0; part < parts.parts.size(); ++part) {
            const double height = HeightOf(parts.parts[part].count);
            const QRectF shape(left + columnWidth_ * (1 - filledShare) / 2, bottom - height, columnWidth_ * filledShare,
                               height);
            laidOut_.shapes.push_back({PictureShape::Kind::Bar, shape, {}, {}, ToneOf(parts.parts[part].series)});
            laidOut_.marks.push_back({{bar, static_cast<int>(part)}, shape});
            bottom -= height;
        }
    }

    /// Month and day below the columns, as far apart as they need to be; the last one always.
    void AddDays() {
        const double line = font_.lineHeight;
        const double width = font_.width(QStringLiteral("00-00"));
        const int every = std::max(1, static_cast<int>(std::ceil((width + textSpace * line) / columnWidth_)));
        for (int place = laidOut_.barCount - 1; place >= 0; place -= every) {
            const double middle = plot_.left() + (place + 0.5) * columnWidth_;
            const double left = std::clamp(middle - width / 2, 0.0, std::max(0.0, laidOut_.size.width() - width));
            const int bar = laidOut_.firstBar + place;
            const QString& day = picture_.bars[static_cast<size_t>(bar)].label;
            AddText(QRectF(left, plot_.bottom() + line * 0.1, width, line), day.mid(day.size() - 5), Qt::AlignCenter);
        }
    }

    const OverviewPicture& picture_;
    const PictureFont& font_;
    BarPicture laidOut_;
    QRectF plot_;
    qint64 top_ = 1;
    double columnWidth_ = 0;
};

} // namespace

qint64 StepOfAxis(qint64 most, int steps) {
    for (qint64 power = 1;; power *= 10) {
        for (const qint64 step : {power, 2 * power, 5 * power}) {
            if ((most + step - 1) / step <= steps) {
                return step;
            }
        }
    }
}

BarPicture LayOutColumns(const OverviewPicture& picture, QSizeF size, const PictureFont& font) {
    return ColumnLayout(picture, size, font).Make();
}

} // namespace quellbox

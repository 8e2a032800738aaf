#include "messages/BarPicture.h"

#include "messages/BarColumns.h"
#include "messages/PictureSvg.h"

#include <QXmlStreamReader>

#include <gtest/gtest.h>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

/// Each character is as wide as half a line.
const PictureFont font{[](const QString& text) { return 5.0 * static_cast<double>(text.size()); }, 10};

OverviewPicture Senders(const std::vector<qint64>& counts) {
    OverviewPicture picture{OverviewKind::Senders};
    for (const qint64 count : counts) {
        const QString label = u"s%1.example"_s.arg(picture.bars.size());
        picture.bars.push_back({label, {{count}}});
    }
    return picture;
}

OverviewPicture Days(int count, qint64 low = 10, qint64 high = 30) {
    OverviewPicture picture{OverviewKind::Days, {u"7"_s, u"9"_s}};
    for (int day = 0; day < count; ++day) {
        const QString label = u"2026-06-%1"_s.arg(day + 1, 2, 10, QLatin1Char('0'));
        picture.bars.push_back({label, {{low, 0}, {high, 1}}});
    }
    return picture;
}

std::vector<PictureShape> Shapes(const BarPicture& laidOut, PictureShape::Kind kind) {
    std::vector<PictureShape> found;
    for (const PictureShape& shape : laidOut.shapes) {
        if (shape.kind == kind) {
            found.push_back(shape);
        }
    }
    return found;
}

bool HasText(const BarPicture& laidOut, const QString& text) {
    const auto texts = Shapes(laidOut, PictureShape::Kind::Text);
    return std::any_of(texts.begin(), texts.end(), [&text](const PictureShape& shape) { return shape.text == text; });
}

} // namespace

TEST(BarPictureTest, BarsAreAsLongAsTheirNumbers) {
    const BarPicture laidOut = LayOutPicture(Senders({100, 50, 25}), {400, 100}, font);
    const auto bars = Shapes(laidOut, PictureShape::Kind::Bar);
    ASSERT_EQ(bars.size(), 3U);
    EXPECT_DOUBLE_EQ(bars[1].rect.width(), bars[0].rect.width() / 2);
    EXPECT_DOUBLE_EQ(bars[2].rect.width(), bars[0].rect.width() / 4);
    EXPECT_LT(bars[0].rect.bottom(), bars[1].rect.top());
    EXPECT_TRUE(HasText(laidOut, u"s0.example"_s));
    EXPECT_TRUE(HasText(laidOut, u"100"_s));
}

TEST(BarPictureTest, EverythingIsInsideThePicture) {
    for (const QSizeF size : {QSizeF(400, 100), QSizeF(80, 40), QSizeF(1000, 700)}) {
        for (const OverviewPicture& picture : {Senders({123456, 7, 1}), Days(25), Days(1)}) {
            const BarPicture laidOut = LayOutPicture(picture, size, font);
            const QRectF whole = QRectF(QPointF(), size).adjusted(-0.01, -0.01, 0.01, 0.01);
            for (const PictureShape& shape : laidOut.shapes) {
                EXPECT_TRUE(whole.contains(shape.rect) || shape.kind == PictureShape::Kind::Line)
                    << shape.text.toStdString() << ' ' << shape.rect.right() << ' ' << shape.rect.bottom();
                EXPECT_LE(font.width(shape.text), shape.rect.width() + 0.01) << shape.text.toStdString();
            }
            for (const PictureMark& mark : laidOut.marks) {
                EXPECT_TRUE(whole.contains(mark.rect)) << mark.place.bar;
            }
        }
    }
}

TEST(BarPictureTest, OnlySoManyBarsAreShownAsHaveRoom) {
    const OverviewPicture picture = Senders(std::vector<qint64>(50, 1));
    EXPECT_EQ(LayOutPicture(picture, {400, 150}, font).barCount, 10);
    EXPECT_EQ(LayOutPicture(picture, {400, 14}, font).barCount, 0);
    EXPECT_EQ(LayOutPicture(picture, {400, 9000}, font).barCount, 50);
}

TEST(BarPictureTest, ALongNameIsShortened) {
    OverviewPicture picture = Senders({1});
    picture.bars[0].label = QString(100, u'x');
    EXPECT_TRUE(HasText(LayOutPicture(picture, {400, 100}, font), QString(39, u'x') + u'…'));
    EXPECT_EQ(FittingText(u"abc"_s, 15, font), u"abc"_s);
    EXPECT_EQ(FittingText(u"abcd"_s, 15, font), u"ab…"_s);
    EXPECT_EQ(FittingText(u"abcd"_s, 5, font), u"…"_s);
    EXPECT_EQ(FittingText(u"abcd"_s, 4, font), QString());
    EXPECT_EQ(FittingText(u"\U0001F600\U0001F600"_s, 10, font), u"…"_s) << "no half of a character";
}

TEST(BarPictureTest, DaysAreColumnsOfTheirLevels) {
    const BarPicture laidOut = LayOutPicture(Days(3), {400, 200}, font);
    EXPECT_EQ(laidOut.barCount, 3);
    const QRectF low = laidOut.RectOf({0, 0});
    const QRectF high = laidOut.RectOf({0, 1});
    EXPECT_DOUBLE_EQ(high.height(), 3 * low.height());
    EXPECT_DOUBLE_EQ(high.bottom(), low.top()) << "above each other";
    EXPECT_TRUE(laidOut.RectOf({0}).contains(high));
    EXPECT_TRUE(HasText(laidOut, u"06-03"_s));
    EXPECT_TRUE(HasText(laidOut, u"7"_s)) << "the legend";
    EXPECT_TRUE(HasText(laidOut, u"40"_s)) << "the axis";
}

TEST(BarPictureTest, OfManyDaysTheLatestAreShown) {
    const BarPicture laidOut = LayOutPicture(Days(30), {100, 200}, font);
    EXPECT_EQ(laidOut.firstBar + laidOut.barCount, 30);
    EXPECT_GT(laidOut.firstBar, 0);
    EXPECT_TRUE(laidOut.RectOf({0}).isEmpty());
    EXPECT_FALSE(laidOut.RectOf({29}).isEmpty());
}

TEST(BarPictureTest, APointIsInAPartElseInAWholeBar) {
    const BarPicture laidOut = LayOutPicture(Days(3), {400, 200}, font);
    EXPECT_EQ(laidOut.PlaceAt(laidOut.RectOf({1, 1}).center()), (OverviewPlace{1, 1}));
    const QRectF whole = laidOut.RectOf({1});
    EXPECT_EQ(laidOut.PlaceAt({whole.center().x(), whole.bottom() - 1}), (OverviewPlace{1}));
    EXPECT_EQ(laidOut.PlaceAt({-1, -1}), OverviewPlace());
}

TEST(BarPictureTest, WithoutRoomOrBarsThereIsNothing) {
    EXPECT_TRUE(LayOutPicture(Days(3), {400, 20}, font).shapes.empty());
    EXPECT_TRUE(LayOutPicture(Days(0), {400, 200}, font).marks.empty());
    EXPECT_TRUE(LayOutPicture(Senders({}), {400, 200}, font).marks.empty());
    EXPECT_EQ(MovedPlace(Senders({}), LayOutPicture(Senders({}), {400, 200}, font), {}, PictureMove::Down),
              OverviewPlace());
}

TEST(BarPictureTest, ATitleStandsAboveThePicture) {
    const BarPicture laidOut = WithTitle(Senders({3, 2}), {400, 200}, u"Senders"_s, font);
    EXPECT_EQ(laidOut.size, QSizeF(400, 200));
    EXPECT_TRUE(HasText(laidOut, u"Senders"_s));
    EXPECT_GE(Shapes(laidOut, PictureShape::Kind::Bar).front().rect.top(), font.lineHeight);
}

TEST(BarPictureTest, StepsOfAnAxisAreRound) {
    EXPECT_EQ(StepOfAxis(1, 5), 1);
    EXPECT_EQ(StepOfAxis(5, 5), 1);
    EXPECT_EQ(StepOfAxis(6, 5), 2);
    EXPECT_EQ(StepOfAxis(11, 5), 5);
    EXPECT_EQ(StepOfAxis(26, 5), 10);
    EXPECT_EQ(StepOfAxis(32'000, 1), 50'000);
}

TEST(BarPictureTest, KeysMoveAmongBars) {
    const OverviewPicture picture = Senders({3, 2, 1});
    const BarPicture laidOut = LayOutPicture(picture, {400, 200}, font);
    const auto moved = [&](OverviewPlace from, PictureMove move) {
        return MovedPlace(picture, laidOut, from, move).bar;
    };
    EXPECT_EQ(moved({}, PictureMove::Down), 0);
    EXPECT_EQ(moved({0}, PictureMove::Down), 1);
    EXPECT_EQ(moved({2}, PictureMove::Down), 2);
    EXPECT_EQ(moved({0}, PictureMove::Up), 0);
    EXPECT_EQ(moved({1}, PictureMove::Last), 2);
    EXPECT_EQ(moved({1}, PictureMove::First), 0);
}

TEST(BarPictureTest, KeysMoveAmongDaysAndTheirParts) {
    const OverviewPicture picture = Days(3);
    const BarPicture laidOut = LayOutPicture(picture, {400, 200}, font);
    const auto moved = [&](OverviewPlace from, PictureMove move) { return MovedPlace(picture, laidOut, from, move); };
    EXPECT_EQ(moved({}, PictureMove::Left), (OverviewPlace{2}));
    EXPECT_EQ(moved({2}, PictureMove::Left), (OverviewPlace{1}));
    EXPECT_EQ(moved({1}, PictureMove::Up), (OverviewPlace{1, 0}));
    EXPECT_EQ(moved({1, 0}, PictureMove::Up), (OverviewPlace{1, 1}));
    EXPECT_EQ(moved({1, 1}, PictureMove::Up), (OverviewPlace{1, 1}));
    EXPECT_EQ(moved({1, 0}, PictureMove::Down), (OverviewPlace{1}));
    EXPECT_EQ(moved({1, 1}, PictureMove::Right), (OverviewPlace{2}));
}

TEST(BarPictureTest, ColoursGoFromTheLowestToTheHighest) {
    const PictureColours colours{{}, {}, {}, u"#123456"_s, u"#0000ff"_s, u"#00ff00"_s, u"#ff0000"_s, {}};
    EXPECT_EQ(ColourOf(colours, 0), u"#0000ff"_s);
    EXPECT_EQ(ColourOf(colours, 0.5), u"#00ff00"_s);
    EXPECT_EQ(ColourOf(colours, 0.75), u"#808000"_s);
    EXPECT_EQ(ColourOf(colours, 1), u"#ff0000"_s);
    EXPECT_EQ(ColourOf(colours, -1), u"#123456"_s);
}

TEST(BarPictureTest, AnSvgHasEveryShapeAndIsWhole) {
    OverviewPicture picture = Senders({3, 2});
    picture.bars[0].label = u"<a&b>\u0001\uFFFE"_s + QChar(0xD800);
    const BarPicture laidOut = LayOutPicture(picture, {400, 200}, font);
    const QByteArray bytes = PictureSvg(
        picture, laidOut, {u"#ffffff"_s, u"#000000"_s, u"#cccccc"_s, u"#0000ff"_s, {}, {}, {}, {}}, {u"Sans"_s, 8});
    QXmlStreamReader svg(bytes);
    int rects = 0;
    QStringList texts;
    while (!svg.atEnd()) {
        svg.readNext();
        rects += svg.isStartElement() && svg.name() == u"rect" ? 1 : 0;
        if (svg.isStartElement() && svg.name() == u"text") {
            texts.append(svg.readElementText());
        }
    }
    EXPECT_FALSE(svg.hasError()) << svg.errorString().toStdString();
    EXPECT_EQ(rects, 3) << "the ground and two bars";
    EXPECT_EQ(texts, QStringList({u"<a&b>\uFFFD"_s, u"3"_s, u"s1.example"_s, u"2"_s}));
}

} // namespace quellbox

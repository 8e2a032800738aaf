#include "messages/PictureSvg.h"

#include "messages/TableLines.h"

#include <QCoreApplication>
#include <QXmlStreamWriter>

#include <algorithm>
#include <array>
#include <cmath>

namespace quellbox {

namespace {

int ByteOf(const QString& colour, int place) {
    return QStringView(colour).mid(1 + 2 * place, 2).toInt(nullptr, 16);
}

QString Number(double value) {
    return QString::number(std::round(value * 100) / 100);
}

/// Without what no XML may hold, not even written as a number: most control characters, halves of surrogate pairs, and
/// U+FFFE and U+FFFF.
QString XmlText(const QString& text) {
    QString allowed = QString::fromUtf8(TableBytes(text));
    allowed.removeIf([](QChar unit) {
        return (unit < u' ' && unit != u'\t' && unit != u'\n') || unit == QChar(0xFFFE) || unit == QChar(0xFFFF);
    });
    return allowed;
}

void WriteNumbers(QXmlStreamWriter& svg, std::initializer_list<std::pair<const char*, double>> numbers) {
    for (const auto& [name, value] : numbers) {
        svg.writeAttribute(QLatin1String(name), Number(value));
    }
}

void WriteAttribute(QXmlStreamWriter& svg, const char* name, const QString& value) {
    svg.writeAttribute(QLatin1String(name), value);
}

void WriteBar(QXmlStreamWriter& svg, const PictureShape& shape, const PictureColours& colours) {
    svg.writeEmptyElement(QStringLiteral("rect"));
    WriteNumbers(
        svg,
        {{"x", shape.rect.x()}, {"y", shape.rect.y()}, {"width", shape.rect.width()}, {"height", shape.rect.height()}});
    WriteAttribute(svg, "fill", ColourOf(colours, shape.tone));
    const QString outline = OutlineOf(colours, shape);
    WriteAttribute(svg, "stroke", outline.isEmpty() ? QStringLiteral("none") : outline);
}

void WriteLine(QXmlStreamWriter& svg, const PictureShape& shape, const PictureColours& colours) {
    svg.writeEmptyElement(QStringLiteral("line"));
    WriteNumbers(
        svg,
        {{"x1", shape.rect.left()}, {"y1", shape.rect.top()}, {"x2", shape.rect.right()}, {"y2", shape.rect.bottom()}});
    WriteAttribute(svg, "stroke", shape.isFaint ? colours.faint : colours.text);
}

void WriteText(QXmlStreamWriter& svg, const PictureShape& shape, const PictureColours& colours,
               const PictureLettering& lettering) {
    constexpr double baseline = 0.35; // of the size of the font, below the middle of its digits and capitals
    const bool isRight = shape.alignment & Qt::AlignRight;
    const bool isMiddle = shape.alignment & Qt::AlignHCenter;
    const double x = isRight ? shape.rect.right() : isMiddle ? shape.rect.center().x() : shape.rect.left();
    svg.writeStartElement(QStringLiteral("text"));
    WriteNumbers(svg, {{"x", x}, {"y", shape.rect.center().y() + baseline * lettering.pixels}});
    WriteAttribute(svg, "fill", colours.text);
    WriteAttribute(svg, "text-anchor", QLatin1String(isRight ? "end" : isMiddle ? "middle" : "start"));
    svg.writeCharacters(XmlText(shape.text));
    svg.writeEndElement();
}

QString DescriptionOf(const OverviewPicture& picture) {
    QStringList lines;
    for (size_t bar = 0; bar < picture.bars.size(); ++bar) {
        const OverviewPlace place{static_cast<int>(bar)};
        lines.append(QCoreApplication::translate("quellbox", "%1: %2")
                         .arg(NameAt(picture, place), QString::number(CountAt(picture, place))));
    }
    return lines.join(u'\n');
}

void WriteShape(QXmlStreamWriter& svg, const PictureShape& shape, const PictureColours& colours,
                const PictureLettering& lettering) {
    switch (shape.kind) {
    case PictureShape::Kind::Bar:
        return WriteBar(svg, shape, colours);
    case PictureShape::Kind::Line:
        return WriteLine(svg, shape, colours);
    case PictureShape::Kind::Text:
        return WriteText(svg, shape, colours, lettering);
    }
}

} // namespace

QString ColourOf(const PictureColours& colours, double tone) {
    if (tone < 0) {
        return colours.bar;
    }
    const bool isLow = tone < 0.5;
    const QString& below = isLow ? colours.lowest : colours.middle;
    const QString& above = isLow ? colours.middle : colours.highest;
    const double share = isLow ? 2 * tone : 2 * tone - 1;
    QString mixed(u'#');
    for (int place = 0; place < 3; ++place) {
        const double byte = (1 - share) * ByteOf(below, place) + share * ByteOf(above, place);
        mixed += QStringLiteral("%1").arg(static_cast<int>(std::lround(byte)), 2, 16, QLatin1Char('0'));
    }
    return mixed;
}

QString OutlineOf(const PictureColours& colours, const PictureShape& bar) {
    constexpr double lowestDivided = 4;
    const QString divider = bar.rect.height() < lowestDivided ? QString() : colours.background;
    return colours.outline.isEmpty() ? divider : colours.outline;
}

QByteArray PictureSvg(const OverviewPicture& picture, const BarPicture& laidOut, const PictureColours& colours,
                      const PictureLettering& lettering) {
    QByteArray bytes;
    QXmlStreamWriter svg(&bytes);
    svg.setAutoFormatting(true);
    svg.writeStartDocument();
    svg.writeStartElement(QStringLiteral("svg"));
    WriteAttribute(svg, "xmlns", QStringLiteral("http://www.w3.org/2000/svg"));
    WriteAttribute(svg, "version", QStringLiteral("1.1"));
    WriteNumbers(svg, {{"width", laidOut.size.width()}, {"height", laidOut.size.height()}});
    WriteAttribute(svg, "viewBox",
                   QStringLiteral("0 0 %1 %2").arg(Number(laidOut.size.width()), Number(laidOut.size.height())));
    WriteAttribute(svg, "font-family", lettering.family);
    WriteNumbers(svg, {{"font-size", lettering.pixels}});
    svg.writeTextElement(QStringLiteral("title"), TitleOf(picture.kind));
    svg.writeTextElement(QStringLiteral("desc"), XmlText(DescriptionOf(picture)));
    svg.writeEmptyElement(QStringLiteral("rect"));
    WriteAttribute(svg, "width", QStringLiteral("100%"));
    WriteAttribute(svg, "height", QStringLiteral("100%"));
    WriteAttribute(svg, "fill", colours.background);
    for (const PictureShape& shape : laidOut.shapes) {
        WriteShape(svg, shape, colours, lettering);
    }
    svg.writeEndDocument();
    return bytes;
}

} // namespace quellbox

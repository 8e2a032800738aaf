#include "dialogs/frmWrapLabel.h"

#include <QPainter>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace quellbox {

namespace {

constexpr int readableColumns = 52; // of average width; what is easily read

/// Lays a text out in lines of `width` pixels, its line feeds obeyed, and returns its height.
qreal LayOut(QTextLayout& layout, qreal width) {
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    qreal height = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        line.setPosition({0, height});
        height += line.height();
    }
    layout.endLayout();
    return height;
}

QString LayoutText(const QString& text) {
    QString lines = text;
    return lines.replace(QLatin1Char('\n'), QChar(QChar::LineSeparator));
}

} // namespace

WrapLabel::WrapLabel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

int WrapLabel::heightForWidth(int width) const {
    QTextLayout layout(LayoutText(text()), font());
    return static_cast<int>(std::ceil(LayOut(layout, std::max(width, 1))));
}

QSize WrapLabel::sizeHint() const {
    const int width = readableColumns * fontMetrics().averageCharWidth();
    return {width, heightForWidth(width)};
}

QSize WrapLabel::minimumSizeHint() const {
    return {readableColumns * fontMetrics().averageCharWidth() / 2, fontMetrics().height()};
}

void WrapLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, foregroundRole()));
    QTextLayout layout(LayoutText(text()), font());
    LayOut(layout, width());
    layout.draw(&painter, {0, 0});
}

} // namespace quellbox

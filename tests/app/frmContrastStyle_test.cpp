#include "app/ContrastStyle.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QImage>
#include <QLineEdit>
#include <QPixmapCache>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QStyleFactory>
#include <QTreeWidget>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace quellbox {
namespace {

/// One of each control, without a text: what is bright in its picture is an outline.
std::vector<std::unique_ptr<QWidget>> Controls() {
    std::vector<std::unique_ptr<QWidget>> controls;
    controls.push_back(std::make_unique<QRadioButton>());
    controls.push_back(std::make_unique<QCheckBox>());
    controls.push_back(std::make_unique<QPushButton>());
    controls.push_back(std::make_unique<QLineEdit>());
    controls.push_back(std::make_unique<QComboBox>());
    controls.push_back(std::make_unique<QGroupBox>());
    controls.push_back(std::make_unique<QSlider>(Qt::Horizontal));
    controls.push_back(std::make_unique<QTreeWidget>());
    for (const auto& control : controls) {
        control->resize(80, 40);
        control->setEnabled(true);
    }
    static_cast<QTreeWidget*>(controls.back().get())->setHeaderHidden(true);
    return controls;
}

QPalette Black() {
    QPalette palette(Qt::white, Qt::black, Qt::black, Qt::black, Qt::black, Qt::white, Qt::white, Qt::black, Qt::black);
    palette.setColor(QPalette::Highlight, Qt::cyan);
    return palette;
}

QImage Picture(QWidget& control, QStyle& style, const QPalette& palette) {
    QPixmapCache::clear(); // in which the plain style would find what the other has drawn
    control.setStyle(&style);
    control.setPalette(palette);
    const QImage picture = control.grab().toImage();
    control.setStyle(nullptr);
    return picture;
}

int BrightPixels(const QImage& picture) {
    constexpr int bright = 200;
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            count += picture.pixelColor(x, y).lightness() > bright ? 1 : 0;
        }
    }
    return count;
}

TEST(ContrastStyle, EveryControlHasABrightOutlineOnBlack) {
    ContrastStyle style;
    const std::unique_ptr<QStyle> plain(QStyleFactory::create(QStringLiteral("Fusion")));
    for (const auto& control : Controls()) {
        const int gained =
            BrightPixels(Picture(*control, style, Black())) - BrightPixels(Picture(*control, *plain, Black()));
        EXPECT_GE(gained, 10) << control->metaObject()->className();
    }
}

TEST(ContrastStyle, OnOtherDesktopsNothingChanges) {
    ContrastStyle style;
    const std::unique_ptr<QStyle> plain(QStyleFactory::create(QStringLiteral("Fusion")));
    for (const QPalette& palette : {QPalette(Qt::lightGray), QPalette(QColor(49, 49, 49))}) {
        for (const auto& control : Controls()) {
            EXPECT_EQ(Picture(*control, style, palette), Picture(*control, *plain, palette))
                << control->metaObject()->className();
        }
    }
}

// The boundary is the lightness 32.
TEST(ContrastStyle, OutlinesAreDrawnBelowALightness) {
    ContrastStyle style;
    const std::unique_ptr<QStyle> plain(QStyleFactory::create(QStringLiteral("Fusion")));
    QCheckBox box;
    QPalette palette = Black();
    palette.setColor(QPalette::Window, QColor(31, 31, 31));
    EXPECT_NE(Picture(box, style, palette), Picture(box, *plain, palette));
    palette.setColor(QPalette::Window, QColor(32, 32, 32));
    EXPECT_EQ(Picture(box, style, palette), Picture(box, *plain, palette));
}

} // namespace
} // namespace quellbox

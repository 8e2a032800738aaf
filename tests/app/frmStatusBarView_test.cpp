#include "app/StatusBarView.h"

#include <QTextDocument>
#include <QtTest/QTest>

#include <gtest/gtest.h>

namespace quellbox {
namespace {

class StatusBar : public testing::Test {
protected:
    /// The tool tip that the panel "size" has for a text.
    QString TipOf(const QString& text) {
        panels_.SetSize(QStringLiteral("1 KB"), text);
        QCoreApplication::processEvents();
        return bar_.findChild<QLabel*>(QStringLiteral("stbBottom_size"))->toolTip();
    }

    StatusPanels panels_;
    StatusBarView bar_{panels_, nullptr};
};

TEST_F(StatusBar, AToolTipOfPlainTextIsThatText) {
    for (const QString& text : {QString(), QStringLiteral("Research & Development"), QStringLiteral("a < b"),
                                QStringLiteral("&amp;"), QStringLiteral("\"quoted\"")}) {
        EXPECT_EQ(TipOf(text).toStdString(), text.toStdString());
    }
}

TEST_F(StatusBar, AToolTipThatLooksLikeMarkupIsShownAndNotInterpreted) {
    const QString text = QStringLiteral("<b>Research</b> & <img src=\"x.png\"> &lt;");
    const QString tip = TipOf(text);
    ASSERT_TRUE(Qt::mightBeRichText(tip));
    QTextDocument shown;
    shown.setHtml(tip);
    EXPECT_EQ(shown.toPlainText().toStdString(), text.toStdString());
}

} // namespace
} // namespace quellbox

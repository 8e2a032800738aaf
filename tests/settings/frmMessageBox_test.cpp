#include "settings/frmMessageBox.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QTest>
#include <QTimer>

#include <functional>

namespace quellbox {

namespace {

const MessageBoxTexts texts{QStringLiteral("msgTest"), QStringLiteral("Title"),
                            QStringLiteral("<b>bold</b>\r\n\r\nsecond")};

/// Does something to the box as soon as it is shown.
void OnceShown(const std::function<void(QMessageBox&)>& act) {
    QTimer::singleShot(0, qApp, [act] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        act(*box);
    });
}

bool AnswerTo(int key) {
    OnceShown([key](QMessageBox& box) { QTest::keyClick(&box, static_cast<Qt::Key>(key)); });
    return AskInMessageBox(QMessageBox::Question, texts, nullptr);
}

} // namespace

TEST(MessageBox, ShowsItsTextAsItIs) {
    bool seen = false;
    OnceShown([&seen](QMessageBox& box) {
        seen = true;
        EXPECT_EQ(box.objectName(), QStringLiteral("msgTest"));
        EXPECT_EQ(box.windowTitle(), QStringLiteral("Title"));
        EXPECT_EQ(box.text(), QStringLiteral("<b>bold</b>\n\nsecond"));
        EXPECT_EQ(box.textFormat(), Qt::PlainText);
        EXPECT_EQ(box.icon(), QMessageBox::Warning);
        EXPECT_EQ(box.standardButtons(), QMessageBox::Ok);
        box.accept();
    });
    ShowMessageBox(QMessageBox::Warning, texts, nullptr);
    EXPECT_TRUE(seen);
}

TEST(MessageBox, AsksForYesAndTakesReturnAndEscapeForNo) {
    OnceShown([](QMessageBox& box) { box.button(QMessageBox::Yes)->click(); });
    EXPECT_TRUE(AskInMessageBox(QMessageBox::Question, texts, nullptr));
    EXPECT_FALSE(AnswerTo(Qt::Key_Return));
    EXPECT_FALSE(AnswerTo(Qt::Key_Escape));
}

} // namespace quellbox

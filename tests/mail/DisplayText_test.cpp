#include "mail/DisplayText.h"

#include <gtest/gtest.h>

using namespace quellbox;

TEST(CleanseForDisplay, LeavesATextThatOthersShareAsItIs) {
    const QString shared = QStringLiteral("a clean beginning\u202E").append(QStringLiteral("\tend"));
    const QString other = shared;
    EXPECT_EQ(CleanseForDisplay(shared), QStringLiteral("a clean beginning end"));
    EXPECT_EQ(other.size(), 22);
    EXPECT_EQ(shared, other);
}

TEST(WindowTitle, KeepsTheMarkAndShowsNothingThatMisleads) {
    EXPECT_EQ(WindowTitle(QStringLiteral("/mail/x[*]/")), QStringLiteral("/mail/x[*][*]/"));
    EXPECT_EQ(WindowTitle(QStringLiteral("[*][*]")), QStringLiteral("[*][*][*][*]"));
    EXPECT_EQ(WindowTitle(QString::fromUtf16(u"a\u202E\nb[\u202A*]")), QStringLiteral("a b[*][*]"));
}

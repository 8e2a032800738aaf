#include "tests/shares/ShareFixture.h"

#include "dialogs/PickupTest.h"

#include <algorithm>

namespace quellbox {

class ShareActions : public ShareTest {
protected:
    /// What the client calls a file; smbnetfs writes two characters as a URL does.
    static QString Shown(QString name) {
        if (GetParam() == ShareClient::SmbNetFs) {
            name.replace(QLatin1Char('%'), QStringLiteral("%25")).replace(QLatin1Char('@'), QStringLiteral("%40"));
        }
        return name;
    }

    /// Every row whose number is `first` plus a multiple of `step`.
    std::vector<int> Every(int step, int first) const {
        std::vector<int> rows;
        for (int row = first; row < model_.Count(); row += step) {
            rows.push_back(row);
        }
        return rows;
    }
};

TEST_P(ShareActions, Deletes) {
    ASSERT_NO_FATAL_FAILURE(DeliverMany(Behind("archive"), 6));
    Refresh();
    const DisposalResult result = Dispose(Action::remove, {0, 1, 5});
    EXPECT_EQ(result.rowsGone, 3);
    EXPECT_EQ(Reasons(result.failures), "");
    ExpectExactly(Behind("archive"),
                  {QStringLiteral("00002.EML"), QStringLiteral("00003.EML"), QStringLiteral("00004.EML")});
}

TEST_P(ShareActions, ToleratesByHand) {
    ASSERT_NO_FATAL_FAILURE(DeliverMany(Behind("archive"), 2));
    Refresh();
    EXPECT_EQ(Reasons(Dispose(Action::unblockTolerated, {1}).failures), "");
    ExpectExactly(Behind("archive"), {QStringLiteral("00000.EML")});
    ExpectExactly(Behind("pickup"), {QStringLiteral("00001.EML")});
}

TEST_P(ShareActions, ToleratesByItself) {
    store_.SetValue(QStringLiteral("Tolerate"), QStringLiteral("@friends.example"), QStringLiteral("0"));
    state_.TolerationLevel = 2;
    ASSERT_NO_FATAL_FAILURE(DeliverMany(Behind("archive"), 4));
    ASSERT_NO_FATAL_FAILURE(Deliver(Behind("archive"), QStringLiteral("f1.EML"), 500, "Ann@Friends.example"));
    ASSERT_NO_FATAL_FAILURE(Deliver(Behind("archive"), QStringLiteral("f2.EML"), 500, "bob@friends.example"));
    const RefreshResult result = Refresh();
    EXPECT_EQ(Reasons(result.failures), "");
    EXPECT_EQ(model_.Count(), 4);
    ExpectExactly(Behind("pickup"), {QStringLiteral("f1.EML"), QStringLiteral("f2.EML")});
    ExpectExactly(Behind("archive"), Keys());
}

TEST_P(ShareActions, Cleanses) {
    ASSERT_NO_FATAL_FAILURE(DeliverMany(Behind("archive"), 30));
    ASSERT_NO_FATAL_FAILURE(Deliver(Behind("archive"), QStringLiteral("notes.txt")));
    QFile old(Behind("archive") + QStringLiteral("00003.EML"));
    ASSERT_TRUE(old.open(QIODevice::ReadWrite));
    ASSERT_TRUE(old.setFileTime(clock_.Now().addDays(-7), QFileDevice::FileModificationTime));
    old.close();
    CleansingResult result = Cleanse(7);
    EXPECT_EQ(result.count, 1);
    EXPECT_EQ(Reasons(result.failures), "");
    EXPECT_FALSE(old.exists());
    result = Cleanse(0);
    EXPECT_EQ(result.count, 29);
    EXPECT_EQ(Reasons(result.failures), "");
    ExpectExactly(Behind("archive"), {QStringLiteral("notes.txt")});
}

TEST_P(ShareActions, WritesThePickupTestAgainAndAgain) {
    for (const char* moment : {"today", "tomorrow, somewhat later"}) {
        WritePickupTest(*files_, QStringLiteral("joe"), state_.PickupDir, Text(moment));
        ExpectExactly(Behind("pickup"), {QStringLiteral("quellbox.eml")});
        EXPECT_EQ(ReadWhole(*files_, Behind("pickup") + QStringLiteral("quellbox.eml")),
                  PickupTestMessage(QStringLiteral("joe"), state_.PickupDir, Text(moment)));
    }
}

// Each character in a name of its own, so that one that fails does not hide the others.
TEST_P(ShareActions, TakesEveryCharacterThatTheServerAllows) {
    QStringList names{QStringLiteral("\U0001F600.EML"), QStringLiteral("%41%00%zz.EML"), QStringLiteral(".hidden.EML"),
                      QString(200, QLatin1Char('n')) + QStringLiteral(".EML")};
    for (const QChar character : NameCharacters()) {
        names += QStringLiteral("x%1%2y.EML").arg(names.size()).arg(character);
    }
    for (const QString& name : names) {
        ASSERT_NO_FATAL_FAILURE(Deliver(Behind("archive"), name));
    }
    Refresh();
    ASSERT_EQ(model_.Count(), names.size());
    for (int row = 0; row < model_.Count(); ++row) {
        EXPECT_EQ(model_.Row(row).Key().toStdString(), Shown(names.at(row)).toStdString());
        EXPECT_EQ(model_.Row(row).Cell(ColumnSubject).toStdString(), "About " + names.at(row).toStdString());
    }
    EXPECT_EQ(Reasons(DisposeOfAll(Action::unblock).failures), "");
    ExpectExactly(Behind("archive"), {});
    ExpectExactly(Behind("pickup"), names);
    Use(Mounted("pickup"), Mounted("archive"));
    Refresh();
    EXPECT_EQ(model_.Count(), names.size());
    EXPECT_EQ(Reasons(DisposeOfAll(Action::remove).failures), "");
    ExpectExactly(Behind("pickup"), {});
}

TEST_P(ShareActions, DealsWithTwoThousandMessages) {
    constexpr int count = 2000;
    ASSERT_NO_FATAL_FAILURE(DeliverMany(Behind("archive"), count));
    Refresh();
    ASSERT_EQ(model_.Count(), count);
    const QStringList names = Keys();
    EXPECT_TRUE(std::is_sorted(names.begin(), names.end()));
    // Every fifth message is deleted, every tenth unblocked, and the others go with a cleansing.
    const DisposalResult deleted = Dispose(Action::remove, Every(5, 0));
    EXPECT_EQ(Reasons(deleted.failures), "");
    ExpectExactly(Behind("archive"), Keys());
    QStringList unblocked = Keys();
    EXPECT_EQ(Reasons(Dispose(Action::unblock, Every(10, 3)).failures), "");
    unblocked.removeIf([this](const QString& name) { return model_.RowOfKey(name) >= 0; });
    ExpectExactly(Behind("pickup"), unblocked);
    ExpectExactly(Behind("archive"), Keys());
    EXPECT_EQ(Cleanse(0).count, model_.Count());
    ExpectExactly(Behind("archive"), {});
}

QUELLBOX_ON_EACH_CLIENT(ShareActions);

} // namespace quellbox

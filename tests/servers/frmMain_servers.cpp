#include "tests/servers/BlockedMessages.h"
#include "tests/support/RealFolderWindow.h"

#include <cstdio>

namespace quellbox::servers {

namespace {

using namespace Qt::StringLiterals;

/// The main window over a folder that a real filter has filled.
class ServerWindowTest : public RealFolderWindowTest, public testing::WithParamInterface<const char*> {
protected:
    ServerWindowTest() : folder_(ReadBlockedFolder(QLatin1String(GetParam()))) {
        store.SetValue(u"Settings"_s, u"ArchiveDir"_s, folder_.archive);
        store.SetValue(u"Settings"_s, u"ServerProfile"_s, folder_.profile);
        store.SetValue(u"Settings"_s, u"AutoRefresh"_s, u"0"_s);
    }

    /// Whether the row is as its message wants it; says what is not.
    bool IsRight(const MessageRow& row) const {
        const auto expected = folder_.messages.constFind(row.Key());
        if (expected == folder_.messages.constEnd()) {
            ADD_FAILURE() << row.Key().toStdString() << " is no blocked message";
            return false;
        }
        EXPECT_EQ(row.Cell(ColumnScl), expected->rating) << row.Key().toStdString();
        EXPECT_EQ(row.Tag(), expected->sender) << row.Key().toStdString();
        return row.Cell(ColumnScl) == expected->rating && row.Tag() == expected->sender;
    }

    /// Selects the messages that are to be released on a way, and unblocks them on it.
    void Unblock(const QString& way) {
        store.SetValue(u"Settings"_s, u"Delivery"_s, way);
        store.SetValue(u"Settings"_s, u"SmtpHost"_s, folder_.host);
        store.SetValue(u"Settings"_s, u"SmtpPort"_s, QString::number(folder_.port));
        store.SetValue(u"Settings"_s, u"SmtpSecurity"_s, u"none"_s);
        store.SetValue(u"Settings"_s, u"DeliveryCommand"_s, folder_.command);
        Open();
        int chosen = 0;
        for (int row = 0; row < window->Messages().Count(); ++row) {
            if (folder_.messages[window->Messages().Row(row).Key()].way == way) {
                Click(row, chosen++ == 0 ? Qt::NoModifier : Qt::ControlModifier);
            }
        }
        ASSERT_GT(chosen, 0);
        Command("mnuActionsUnblock")->trigger();
        Settle();
        window->close();
    }

    int CountLeft(const QString& way) const {
        int left = 0;
        for (auto message = folder_.messages.begin(); message != folder_.messages.end(); ++message) {
            left += message->way == way && QFile::exists(folder_.archive + message.key()) ? 1 : 0;
        }
        return left;
    }

    BlockedFolder folder_;
};

} // namespace

TEST_P(ServerWindowTest, ListsEachBlockedMessageWithItsRatingAndSender) {
    ASSERT_FALSE(folder_.messages.isEmpty()) << "There is no folder of " << GetParam();
    Open();
    int right = 0;
    for (int row = 0; row < window->Messages().Count(); ++row) {
        right += IsRight(window->Messages().Row(row)) ? 1 : 0;
    }
    EXPECT_EQ(Keys().size(), folder_.messages.size());
    EXPECT_EQ(Keys().removeDuplicates(), 0);
    // What the table of the whole test is made from.
    std::printf("listed: %s %d\n", GetParam(), right);
}

TEST_P(ServerWindowTest, ReleasesEachMessageOnItsWay) {
    Unblock(u"smtp"_s);
    EXPECT_EQ(CountLeft(u"smtp"_s), 0);
    EXPECT_GT(CountLeft(u"command"_s), 0) << "what was not selected stays";
    Unblock(u"command"_s);
    EXPECT_EQ(CountLeft(u"command"_s), 0);
    EXPECT_TRUE(QDir(folder_.archive).entryList(QDir::Files).isEmpty());
}

// What has become of each message is looked for where they are; here it only must not hold up the window.
TEST_P(ServerWindowTest, EndsUnblockingWhileTheServerIsKilled) {
    Unblock(u"smtp"_s);
}

INSTANTIATE_TEST_SUITE_P(Chains, ServerWindowTest, testing::Values("amavis", "amavis_packed", "spamassassin", "rspamd"),
                         [](const auto& tested) { return std::string(tested.param); });

} // namespace quellbox::servers

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
        if (folder_.isPacked) {
            return true; // The program does not read packed messages yet: it lists their names.
        }
        EXPECT_EQ(row.Cell(ColumnScl), expected->rating) << row.Key().toStdString();
        EXPECT_EQ(row.Tag(), expected->sender) << row.Key().toStdString();
        return row.Cell(ColumnScl) == expected->rating && row.Tag() == expected->sender;
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

INSTANTIATE_TEST_SUITE_P(Chains, ServerWindowTest, testing::Values("amavis", "amavis_packed", "spamassassin", "rspamd"),
                         [](const auto& tested) { return std::string(tested.param); });

} // namespace quellbox::servers

#include "tests/archive/RefreshFixture.h"

#include <QSet>

#include <map>

namespace quellbox {

using namespace Qt::StringLiterals;

namespace {

constexpr int messageCount = 12;

/// An archive in which every third message is to be tolerated, on a file system of which one call fails.
class World : public RefreshPassTest {
public:
    World() {
        state.TolerationLevel = 2;
        Tolerate(u"@friend.example"_s);
        for (int number = 0; number < messageCount; ++number) {
            const QString name = u"%1.eml"_s.arg(number, 3, 10, QLatin1Char('0'));
            AddMessage(name, IsTolerable(number) ? "bob@friend.example" : "eve@spam.example");
            written[name] = files.Bytes(InArchive(name));
        }
    }

    using RefreshPassTest::files;
    using RefreshPassTest::model;
    using RefreshPassTest::Run;
    using RefreshPassTest::state;

    static bool IsTolerable(int number) { return number % 3 == 1; }

    /// Which folders hold the whole message.
    int WholeCopies(const QString& name) const {
        int copies = 0;
        for (const QString& path : {InArchive(name), state.PickupDir + name}) {
            if (files.Paths().contains(path)) {
                EXPECT_EQ(files.Bytes(path), written.at(name)) << path.toStdString();
                ++copies;
            }
        }
        return copies;
    }

    /// What must hold after every pass, whatever has failed in it.
    void ExpectNothingLost() const {
        for (const auto& [name, bytes] : written) {
            EXPECT_EQ(WholeCopies(name), 1) << name.toStdString();
        }
        EXPECT_EQ(files.Paths().size(), messageCount) << "something was left behind";
        const QStringList keys = Keys();
        EXPECT_EQ(QSet<QString>(keys.begin(), keys.end()).size(), keys.size()) << "a message is listed twice";
        for (const QString& key : keys) {
            EXPECT_TRUE(files.Paths().contains(InArchive(key))) << key.toStdString();
        }
    }

    /// What a full pass without a fault makes of it in the end.
    void ExpectMendedByAFullPass() {
        state.LastAddedFile.clear();
        EXPECT_EQ(Run(), RefreshOutcome::Completed);
        ExpectNothingLost();
        for (int number = 0; number < messageCount; ++number) {
            const QString name = u"%1.eml"_s.arg(number, 3, 10, QLatin1Char('0'));
            EXPECT_EQ(Keys().contains(name), !IsTolerable(number)) << name.toStdString();
        }
    }

    /// The number of calls of a pass, with what its readers still do when it has ended.
    int CallsOfAPass() {
        const int before = files.CallCount();
        Run();
        pool.waitForDone();
        return files.CallCount() - before;
    }

private:
    void TestBody() override {}

    std::map<QString, QByteArray> written;
};

} // namespace

TEST(RefreshFault, NoneMovesEveryTolerableMessageAndNoOther) {
    World world;
    EXPECT_EQ(world.Run(), RefreshOutcome::Completed);
    world.ExpectNothingLost();
    EXPECT_EQ(world.model.Count(), messageCount - messageCount / 3);
}

TEST(RefreshFault, OfEachCallInTurnLosesNoMessage) {
    const int calls = World().CallsOfAPass();
    ASSERT_GT(calls, 3 * messageCount) << "each message is looked at, opened and read";
    for (int call = 1; call <= calls; ++call) {
        SCOPED_TRACE(call);
        World world;
        world.files.FailCall(call);
        world.Run();
        world.ExpectNothingLost();
        world.ExpectMendedByAFullPass();
    }
}

TEST(RefreshFault, OfEachCallOfAnIncrementalPassLosesNoMessage) {
    const auto listOne = [](World& world) {
        world.Run(false, true); // in bulk mode no sender is known, so that nothing moves
        world.model.Remove({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11});
        world.state.LastAddedFile = u"000.eml"_s;
    };
    World counted;
    listOne(counted);
    const int calls = counted.CallsOfAPass();
    ASSERT_GT(calls, 2 * messageCount);
    for (int call = 1; call <= calls; ++call) {
        SCOPED_TRACE(call);
        World world;
        listOne(world);
        world.files.FailCall(call);
        world.Run(true);
        world.ExpectNothingLost();
        world.ExpectMendedByAFullPass();
    }
}

} // namespace quellbox

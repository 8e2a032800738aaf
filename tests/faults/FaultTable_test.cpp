#ifdef __linux__

#include "platform/LocalFileSystem.h"
#include "tests/faults/FaultActions.h"
#include "tests/faults/FaultPlan.h"

#include <QDir>

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <tuple>

namespace quellbox {

namespace {

struct MountKind {
    const char* name;
    FaultMount::Traits traits;
};

const std::vector<MountKind>& MountKinds() {
    static const std::vector<MountKind> kinds{{"rich", {}},
                                              {"links_only", FaultMount::LinksOnly()},
                                              {"poor", FaultMount::Poor()},
                                              {"kernel_client", FaultMount::LikeKernelClient()},
                                              {"two_shares", FaultMount::TwoShares()}};
    return kinds;
}

/// What came of all trials of a kind of fault.
struct Sum {
    int tried = 0;
    int both = 0;
    int failedDone = 0;
    int leftBehind = 0;
};

/// Tries each fault at every call in turn of an action with twenty messages.
class FaultTableTest : public testing::TestWithParam<std::tuple<size_t, size_t>> {
protected:
    FaultTableTest() {
        FaultMount::Traits traits = MountKinds()[std::get<0>(GetParam())].traits;
        traits.ending = FaultScene::Ending();
        mount_ = std::make_unique<FaultMount>(traits);
    }

    const FaultAction& Action() const { return FaultActions()[std::get<1>(GetParam())]; }

    /// How many calls of each kind an action takes. A computer that is very busy may tell the share so late that a file
    /// was closed that it still refuses it; then the action is done with other messages.
    std::map<QByteArray, int> CallsWithoutFault() {
        constexpr int rounds = 3;
        std::map<QByteArray, int> calls;
        bool went = false;
        for (int round = 0; round < rounds && !went; ++round) {
            went = CountCalls(calls);
        }
        EXPECT_TRUE(went) << "without a fault everything goes well";
        return calls;
    }

    /// False when a message could not be dealt with.
    bool CountCalls(std::map<QByteArray, int>& calls) {
        FaultScene scene(*mount_);
        const std::unique_ptr<FileSystem> files = MakeLocalFileSystem();
        std::map<QByteArray, int> before;
        const Told told = Action().run(scene, *files, [&] { before = mount_->Counts(); });
        calls = mount_->Counts();
        Expect(scene, told);
        for (auto& [kind, number] : calls) {
            number -= before[kind];
        }
        for (const char* other : {"hanging", "came-true", "incomplete", "told"}) {
            calls.erase(other);
        }
        std::erase_if(calls, [](const auto& entry) { return entry.second <= 0; });
        return told.failed.empty();
    }

    Found Expect(const FaultScene& scene, const Told& told) const {
        const Found found = scene.LookFor(Action().wanted, told);
        EXPECT_EQ(found.lost, 0);
        EXPECT_EQ(found.damaged, 0);
        EXPECT_EQ(found.silent, 0);
        EXPECT_EQ(found.strayNames, 0);
        return found;
    }

    void Try(const QByteArray& rules, Sum& sum) {
        SCOPED_TRACE(rules.toStdString());
        FaultScene scene(*mount_);
        const std::unique_ptr<FileSystem> files = MakeLocalFileSystem();
        const Told told = Action().run(scene, *files, [&] { mount_->SetRules(rules); });
        if (!EndFault()) {
            return;
        }
        const Found found = Expect(scene, told);
        ++sum.tried;
        sum.both += found.both;
        sum.failedDone += found.failedDone;
        if (found.leftBehind > 0) {
            sum.leftBehind += LeftBehindByNext(scene, *files);
        }
    }

    /// The share is well again. Returns whether a fault occurred.
    bool EndFault() {
        std::map<QByteArray, int> counts = mount_->Counts();
        mount_->SetRules({}); // the kernel may still have files to release
        EXPECT_EQ(counts["incomplete"], 0) << "a mail server could have picked up a part of a message";
        // By a listing, as the kernel remembers names also of a server that is dead.
        const bool isThere = QDir(mount_->Folder()).entryList(QDir::Files).contains(QStringLiteral("mark"));
        const bool hasOccurred = counts["came-true"] > 0 || !isThere || timesMounted_ != mount_->TimesMounted();
        if (!isThere) {
            mount_->MountAgain();
        }
        timesMounted_ = mount_->TimesMounted();
        return hasOccurred;
    }

    /// What the next move has not cleared away.
    int LeftBehindByNext(const FaultScene& scene, FileSystem& files) const {
        const QString more = scene.AddMessage(Action().wanted);
        EXPECT_NO_THROW(files.Move(more, scene.FolderToClear(Action().wanted) + QStringLiteral("more.EML")));
        return scene.LeftBehind(Action().wanted);
    }

    std::unique_ptr<FaultMount> mount_;
    int timesMounted_ = 0;
};

TEST_P(FaultTableTest, LosesNothing) {
    if (!mount_->IsMounted()) {
        GTEST_SKIP() << mount_->WhyNot().toStdString();
    }
    QFile(mount_->RealFolder() + QStringLiteral("mark")).open(QIODevice::WriteOnly);
    timesMounted_ = mount_->TimesMounted();
    const std::map<QByteArray, int> calls = CallsWithoutFault();
    Sum all;
    QByteArray tried;
    for (const FaultKind& kind : PlanFaults(calls)) {
        Sum sum;
        for (const QByteArray& rules : kind.trials) {
            Try(rules, sum);
        }
        EXPECT_EQ(sum.tried > 0, !kind.trials.empty()) << kind.name;
        tried += QByteArray(", ") + kind.name + ' ' + QByteArray::number(sum.tried);
        all.tried += sum.tried;
        all.both += sum.both;
        all.failedDone += sum.failedDone;
        all.leftBehind += sum.leftBehind;
    }
    std::printf("faults: %s, %s: %d tried (%s), %s; in both %d, done but told as failed %d, files left %d\n",
                MountKinds()[std::get<0>(GetParam())].name, Action().name, all.tried, tried.mid(2).constData(),
                HasFailure() ? "FAILED" : "nothing lost", all.both, all.failedDone, all.leftBehind);
}

std::string NameOfTable(const testing::TestParamInfo<FaultTableTest::ParamType>& table) {
    return std::string(MountKinds()[std::get<0>(table.param)].name) + '_' +
           FaultActions()[std::get<1>(table.param)].name;
}

INSTANTIATE_TEST_SUITE_P(Faults, FaultTableTest,
                         testing::Combine(testing::Range<size_t>(0, 5),
                                          testing::Range<size_t>(0, FaultActions().size())),
                         NameOfTable);

} // namespace

} // namespace quellbox

#endif

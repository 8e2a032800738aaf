#include "archive/RefreshTask.h"
#include "dialogs/CleansingTask.h"
#include "messages/DisposalTask.h"
#include "messages/PutBackTask.h"
#include "platform/LocalFileSystem.h"
#include "tests/support/FaultMount.h"
#include "tests/support/FixedClock.h"
#include "tests/support/MemorySettingsStore.h"
#include "tests/support/RunUntil.h"

#include <QDir>

#include <gtest/gtest.h>

#include <numeric>
#include <utility>

namespace quellbox {

namespace {

using Counts = std::map<QByteArray, int>;

/// How many calls of the kernel reach a mounted folder for each message; the parameter says whether the folder is poor.
class MountCalls : public testing::TestWithParam<bool> {
protected:
    static constexpr int count = 50;

    void SetUp() override {
        mount_ = std::make_unique<FaultMount>(GetParam() ? FaultMount::Poor() : FaultMount::Traits{});
        if (!mount_->IsMounted()) {
            GTEST_SKIP() << mount_->WhyNot().toStdString();
        }
        for (const char* folder : {"archive", "pickup"}) {
            ASSERT_TRUE(QDir(mount_->RealFolder()).mkdir(QLatin1String(folder)));
        }
        state_.ArchiveDir = mount_->Folder() + QStringLiteral("archive/");
        state_.PickupDir = mount_->Folder() + QStringLiteral("pickup/");
        for (int message = 0; message < count; ++message) {
            files_->WriteWhole(mount_->RealFolder() + QStringLiteral("archive/%1.EML").arg(message),
                               "Subject: a message\r\n\r\nBody.\r\n");
        }
    }

    // The readers of a test must not outlive its file system.
    ~MountCalls() override { pool_.WaitForDone(); }

    void Refresh() {
        RefreshTask task(RefreshPorts{*files_, store_, clock_, pool_}, state_, model_);
        task.Start(false, false);
        ASSERT_TRUE(RunUntil([&task] { return !task.IsRunning(); }));
        ASSERT_EQ(model_.Count(), count);
    }

    std::shared_ptr<KeptFolder> NewKept() {
        return std::make_shared<KeptFolder>(*files_, state_.ArchiveDir, 30, clock_.Now());
    }

    void DisposeOfAll(qint16 action, const std::shared_ptr<KeptFolder>& kept = nullptr) {
        std::vector<int> rows(count);
        std::iota(rows.begin(), rows.end(), 0);
        DisposalTask task(*files_, pool_, model_);
        task.Start(action, {state_.ArchiveDir, state_.PickupDir}, rows, kept);
        ASSERT_TRUE(RunUntil([&task] { return !task.IsRunning(); }));
        ASSERT_TRUE(MessagesIn(QStringLiteral("archive")).isEmpty());
    }

    void CleanseAll(const std::shared_ptr<KeptFolder>& kept = nullptr) {
        CleansingTask task(*files_, pool_);
        task.Start(state_.ArchiveDir, 0, clock_.Now().date(), kept);
        ASSERT_TRUE(RunUntil([&task] { return !task.IsRunning(); }));
        ASSERT_TRUE(MessagesIn(QStringLiteral("archive")).isEmpty());
    }

    void PutAllBack(const KeptFolder& kept) {
        std::vector<PutBack> items;
        for (int message = 0; message < count; ++message) {
            const QString name = QStringLiteral("%1.EML").arg(message);
            items.push_back({kept.PathOf(name), state_.ArchiveDir.PathOf(name)});
        }
        PutBackTask task(*files_, pool_);
        task.Start(items, {kept.Path()});
        ASSERT_TRUE(RunUntil([&task] { return !task.IsRunning(); }));
        ASSERT_EQ(MessagesIn(QStringLiteral("archive")).size(), count);
    }

    QStringList MessagesIn(const QString& folder) const {
        return QDir(mount_->RealFolder() + folder).entryList(QDir::Files);
    }

    /// The calls of `work` for each message, by kind, without those by which the kernel learns what a name stands for,
    /// whose number depends on how busy the computer is.
    template <class Work>
    Counts CallsOf(Work work) {
        Counts before = mount_->Counts();
        work();
        Counts perMessage;
        int names = 0;
        for (const auto& [kind, number] : mount_->Counts()) {
            const int calls = number - before[kind];
            if (kind == "lookup" || kind == "getattr") {
                names += calls;
            } else if (calls >= count / 2) {
                perMessage[kind] = (calls + count / 2) / count;
            }
        }
        EXPECT_LE(names, GetParam() ? 4 * count : 2 * count);
        return perMessage;
    }

    std::unique_ptr<FaultMount> mount_;
    std::unique_ptr<FileSystem> files_ = MakeLocalFileSystem();
    ThreadWorkPool pool_;
    MemorySettingsStore store_;
    FixedClock clock_{QDateTime(QDate(2026, 6, 15), QTime(12, 0))};
    AppState state_;
    MessageListModel model_;
};

} // namespace

TEST_P(MountCalls, ARefreshOpensAndReadsEachMessageOnce) {
    EXPECT_EQ(CallsOf([this] { Refresh(); }), (Counts{{"open", 1}, {"read", 1}, {"flush", 1}, {"release", 1}}));
}

TEST_P(MountCalls, ADeleteIsOneCall) {
    Refresh();
    EXPECT_EQ(CallsOf([this] { DisposeOfAll(Action::remove); }), (Counts{{"unlink", 1}}));
}

TEST_P(MountCalls, AnUnblockIsOneCall) {
    Refresh();
    EXPECT_EQ(CallsOf([this] { DisposeOfAll(Action::unblock); }), (Counts{{"rename", 1}}));
}

TEST_P(MountCalls, ACleansingIsOneCall) {
    EXPECT_EQ(CallsOf([this] { CleanseAll(); }), (Counts{{"unlink", 1}}));
}

TEST_P(MountCalls, WhatIsKeptOfADeleteIsOneCall) {
    Refresh();
    EXPECT_EQ(CallsOf([this] { DisposeOfAll(Action::remove, NewKept()); }), (Counts{{"rename", 1}}));
}

TEST_P(MountCalls, WhatIsKeptOfACleansingIsOneCall) {
    EXPECT_EQ(CallsOf([this] { CleanseAll(NewKept()); }), (Counts{{"rename", 1}}));
}

TEST_P(MountCalls, PuttingBackIsOneCall) {
    Refresh();
    const std::shared_ptr<KeptFolder> kept = NewKept();
    DisposeOfAll(Action::remove, kept);
    const int listings = mount_->Counts()["opendir"];
    EXPECT_EQ(CallsOf([this, kept] { PutAllBack(*kept); }), (Counts{{"rename", 1}}));
    EXPECT_EQ(mount_->Counts()["opendir"], listings) << "what lies in a folder that was made here is known";
}

TEST_P(MountCalls, PuttingBackInAnotherSessionIsOneCall) {
    Refresh();
    const std::shared_ptr<KeptFolder> kept = NewKept();
    DisposeOfAll(Action::remove, kept);
    const std::unique_ptr<FileSystem> earlier = std::exchange(files_, MakeLocalFileSystem());
    pool_.WaitForDone();
    EXPECT_EQ(CallsOf([this, kept] { PutAllBack(*kept); }), (Counts{{"rename", 1}}));
}

INSTANTIATE_TEST_SUITE_P(Rich, MountCalls, testing::Values(false));
INSTANTIATE_TEST_SUITE_P(Poor, MountCalls, testing::Values(true));

} // namespace quellbox

#include "messages/PutBackTask.h"

#include "tests/support/CallGate.h"
#include "tests/support/MemoryFileSystem.h"
#include "tests/support/RunUntil.h"

#include <gtest/gtest.h>

namespace quellbox {

namespace {

const QString keptFolder = QStringLiteral("/archive/.quellbox-deleted/one/");
const QString archive = QStringLiteral("/archive/");

QString Name(int number) {
    return QStringLiteral("%1.EML").arg(number, 4, 10, QLatin1Char('0'));
}

class PutBackTest : public testing::Test {
protected:
    PutBackTest() {
        files.AddFolder(archive);
        files.AddFolder(archive + QStringLiteral(".quellbox-deleted"));
        files.AddFolder(keptFolder);
        QObject::connect(&task, &PutBackTask::Ended, [this](const PutBackResult& ended) { result = ended; });
        QObject::connect(&task, &PutBackTask::Progress, [this](int done) { progress = done; });
    }
    ~PutBackTest() override { pool.WaitForDone(); }

    std::vector<PutBack> Fill(int count) {
        std::vector<PutBack> items;
        for (int number = 0; number < count; ++number) {
            files.Add(keptFolder + Name(number), Name(number).toLatin1());
            items.push_back({keptFolder + Name(number), archive + Name(number)});
        }
        return items;
    }

    PutBackResult Run(std::vector<PutBack> items, const QStringList& emptied = {}) {
        task.Start(std::move(items), emptied);
        EXPECT_TRUE(RunUntil([this] { return !task.IsRunning(); }));
        return result;
    }

    MemoryFileSystem files;
    ThreadWorkPool pool;
    PutBackTask task{files, pool};
    PutBackResult result;
    int progress = 0;
};

} // namespace

TEST_F(PutBackTest, EveryFileGoesBackAndTheFolderGoesWhenItIsEmpty) {
    const PutBackResult ended = Run(Fill(30), {keptFolder, archive + QStringLiteral(".quellbox-deleted/")});
    ASSERT_EQ(ended.fates.size(), 30U);
    for (int number = 0; number < 30; ++number) {
        EXPECT_TRUE(ended.fates[static_cast<size_t>(number)].isDone);
        EXPECT_EQ(files.Bytes(archive + Name(number)), Name(number).toLatin1());
    }
    EXPECT_EQ(progress, 30);
    EXPECT_FALSE(files.FolderExists(keptFolder));
    EXPECT_FALSE(files.FolderExists(archive + QStringLiteral(".quellbox-deleted")));
    EXPECT_TRUE(files.FolderExists(archive));
}

TEST_F(PutBackTest, TellsOfEachWhatBecameOfItInOrder) {
    std::vector<PutBack> items = Fill(4);
    files.Remove(items[1].from);
    files.Add(items[2].to, "other");
    const PutBackResult ended = Run(items, {keptFolder});
    ASSERT_EQ(ended.fates.size(), 4U);
    EXPECT_TRUE(ended.fates[0].isDone);
    EXPECT_FALSE(ended.fates[1].isDone);
    ASSERT_TRUE(ended.fates[1].failure.has_value());
    EXPECT_EQ(ended.fates[1].failure->problem, FileProblem::Missing);
    EXPECT_FALSE(ended.fates[2].isDone);
    ASSERT_TRUE(ended.fates[2].failure.has_value());
    EXPECT_EQ(ended.fates[2].failure->problem, FileProblem::Exists);
    EXPECT_TRUE(ended.fates[3].isDone);
    EXPECT_EQ(files.Bytes(items[2].to), QByteArray("other")) << "nothing is overwritten";
    EXPECT_TRUE(files.FileExists(items[2].from));
    EXPECT_TRUE(files.FolderExists(keptFolder)) << "something is left in it";
}

TEST_F(PutBackTest, AFewFilesCostOneCallEachAndManyOneListingBesides) {
    for (const auto& [count, calls] : {std::pair(1, 1), {4, 4}, {5, 6}, {100, 101}}) {
        const std::vector<PutBack> items = Fill(count);
        const int before = files.CallCount();
        Run(items);
        EXPECT_EQ(files.CallCount() - before, calls) << count;
        for (const PutBack& item : items) {
            files.Remove(item.to);
        }
    }
}

TEST_F(PutBackTest, NothingToDoEndsAtOnceAndRemovesTheFolder) {
    EXPECT_TRUE(Run({}, {keptFolder}).fates.empty());
    EXPECT_FALSE(files.FolderExists(keptFolder));
}

TEST_F(PutBackTest, AFolderThatCannotBeRemovedIsNoFailure) {
    const std::vector<PutBack> items = Fill(1);
    files.FailPath(keptFolder, QStringLiteral("no right"));
    EXPECT_TRUE(Run(items, {keptFolder}).fates.front().isDone);
}

TEST_F(PutBackTest, CancelledItSaysNothingOfWhatHasNotBegun) {
    const std::vector<PutBack> items = Fill(4);
    CallGate gate;
    files.SetChangeHook(
        [&gate](const QString& path) { gate.Pass(static_cast<size_t>(path.section(u'/', -1).left(4).toInt())); });
    pool.SetMost(2);
    task.Start(items, {keptFolder});
    ASSERT_TRUE(gate.WaitForInside(2));
    task.Cancel();
    EXPECT_TRUE(task.IsCancelled());
    gate.LetAll();
    ASSERT_TRUE(RunUntil([this] { return !task.IsRunning(); }));
    ASSERT_EQ(result.fates.size(), 4U);
    EXPECT_TRUE(result.fates[0].isDone);
    EXPECT_TRUE(result.fates[1].isDone);
    for (const size_t item : {2U, 3U}) {
        EXPECT_FALSE(result.fates[item].isDone);
        EXPECT_FALSE(result.fates[item].failure.has_value());
        EXPECT_TRUE(files.FileExists(items[item].from));
    }
    EXPECT_TRUE(files.FolderExists(keptFolder));
}

TEST_F(PutBackTest, GivenUpItEndsAtOnceAndTellsWhatIsDone) {
    const std::vector<PutBack> items = Fill(3);
    CallGate gate;
    files.SetChangeHook(
        [&gate](const QString& path) { gate.Pass(static_cast<size_t>(path.section(u'/', -1).left(4).toInt())); });
    pool.SetMost(2);
    task.Start(items);
    ASSERT_TRUE(gate.WaitForInside(2));
    gate.Let(0);
    ASSERT_TRUE(RunUntil([this] { return progress == 1; }));
    task.GiveUp();
    EXPECT_FALSE(task.IsRunning());
    ASSERT_EQ(result.fates.size(), 3U);
    EXPECT_TRUE(result.fates[0].isDone);
    EXPECT_FALSE(result.fates[1].isDone);
    gate.LetAll();
    pool.WaitForDone();
    EXPECT_TRUE(files.FileExists(items[1].to)) << "what is under way is not torn apart";
}

// Whatever fails, each file is in exactly one place, and what was not put back is told.
TEST_F(PutBackTest, AFailingCallLosesNothing) {
    constexpr int count = 6;
    for (int failing = 1; failing <= count + 3; ++failing) {
        const std::vector<PutBack> items = Fill(count);
        files.MakeFolder(keptFolder);
        files.FailCall(failing);
        const PutBackResult ended = Run(items, {keptFolder});
        files.FailCall(0);
        for (size_t item = 0; item < count; ++item) {
            EXPECT_NE(files.FileExists(items[item].from), files.FileExists(items[item].to));
            EXPECT_EQ(files.FileExists(items[item].to), ended.fates[item].isDone);
            EXPECT_NE(ended.fates[item].isDone, ended.fates[item].failure.has_value());
            files.Remove(items[item].to);
        }
    }
}

} // namespace quellbox

#include "tests/archive/RefreshFixture.h"

#include "platform/RuntimeError.h"

#include <QSemaphore>

#include <atomic>

namespace quellbox {

using namespace Qt::StringLiterals;

namespace {

class RefreshFailureTest : public RefreshPassTest {
protected:
    void AddEmptyFiles(int first, int count) {
        for (int file = first; file < first + count; ++file) {
            files.Add(InArchive(QString::number(file)), {}, file);
        }
    }

    /// Lets the readers of one file wait for `release`.
    void Stall(const QString& name) {
        files.SetReadHook([this, name](const QString& path) {
            if (path == InArchive(name)) {
                stalled = true;
                release.acquire();
            }
        });
    }

    // Members, since what a read hook uses must live as long as the readers.
    QSemaphore release;
    std::atomic<bool> stalled{false};
};

} // namespace

TEST_F(RefreshFailureTest, NamesAMissingArchiveInUpperCaseAndClearsTheView) {
    model.Append(NumberedRows(3));
    state.ArchiveDir = u"/Missing/Spam/"_s;
    state.LastAddedFile = u"kept"_s;
    panels.SetCount(u"3 messages"_s);
    EXPECT_EQ(Run(), RefreshOutcome::ArchiveMissing);
    EXPECT_EQ(panels.Info().text, u"Archive /MISSING/SPAM/ not found"_s);
    EXPECT_EQ(panels.Count().text, QString());
    EXPECT_EQ(viewsCleared, 1);
    EXPECT_EQ(model.Count(), 0);
    EXPECT_EQ(maximum, 0);
    EXPECT_EQ(state.LastAddedFile, u"kept"_s);
}

TEST_F(RefreshFailureTest, SaysWhyAnArchiveCannotBeRead) {
    class Unreadable : public MemoryFileSystem {
    public:
        std::vector<FolderEntry> FileEntries(const QString& folder) const override {
            throw FileError(folder, u"Permission denied"_s);
        }
    } unreadable;
    unreadable.AddFolder(state.ArchiveDir);
    model.Append(NumberedRows(3));
    RefreshPass pass({unreadable, store, clock, pool}, state, model, panels, callbacks);
    EXPECT_EQ(pass.Run(false, false), RefreshOutcome::Unreadable);
    EXPECT_TRUE(panels.Info().text.startsWith(u"Archive cannot be read:"_s));
    EXPECT_TRUE(panels.Info().text.contains(u"Permission denied"_s));
    EXPECT_EQ(model.Count(), 3);
    EXPECT_EQ(maximum, 0);
    pool.waitForDone();
}

TEST_F(RefreshFailureTest, ListsAsManyFilesAsA16BitCountHoldsAndNotOneMore) {
    AddEmptyFiles(0, 32'766);
    EXPECT_EQ(Run(false, true), RefreshOutcome::Completed);
    EXPECT_EQ(model.Count(), 32'766);
    EXPECT_EQ(maximum, 32'767);
    maximum = 0;
    AddEmptyFiles(32'766, 1);
    EXPECT_THROW(Run(false, true), OverflowError);
    EXPECT_EQ(maximum, 0) << "the busy state was entered";
    EXPECT_EQ(model.Count(), 32'766);
    state.LastAddedFile.clear();
    EXPECT_THROW(Run(false, true), OverflowError);
    EXPECT_EQ(model.Count(), 32'766) << "rows listed before must stay";
}

TEST_F(RefreshFailureTest, GivesAFileThatIsNoMessageARowWithTheError) {
    AddMessage(u"a.eml"_s);
    files.Add(InArchive(u"b.eml"_s), "", start.addDays(1).toMSecsSinceEpoch() * 1'000'000);
    RefreshPass pass = Pass();
    EXPECT_EQ(pass.Run(true, false), RefreshOutcome::Completed);
    ASSERT_EQ(Keys(), (QStringList{u"a.eml"_s, u"b.eml"_s}));
    EXPECT_NE(model.Row(1).cells[ColumnSubject], QString());
    EXPECT_EQ(model.Row(1).cells[ColumnTo], QString());
    EXPECT_EQ(model.Row(1).tag, QString());
    EXPECT_EQ(model.Row(1).cells[ColumnSize], u"0"_s);
    EXPECT_TRUE(model.Row(1).unread);
    EXPECT_EQ(state.LastAddedFile, u"b.eml"_s);
    EXPECT_FALSE(pass.LastMessageWasRead());
}

TEST_F(RefreshFailureTest, GivesAFileThatVanishesAfterTheListingARowWithTheError) {
    AddMessages(3);
    callbacks.enterBusy = [this](int) { files.Remove(InArchive(u"001.eml"_s)); };
    RefreshPass pass = Pass();
    EXPECT_EQ(pass.Run(false, false), RefreshOutcome::Completed);
    ASSERT_EQ(model.Count(), 3);
    EXPECT_TRUE(model.Row(1).cells[ColumnSubject].contains(u"No such file"_s));
    EXPECT_EQ(model.Row(2).cells[ColumnSubject], u"s"_s);
    EXPECT_TRUE(pass.LastMessageWasRead());
}

TEST_F(RefreshFailureTest, RunsEventsWhileAReaderStallsAndShowsTheRowsSoFar) {
    AddMessages(3);
    Stall(u"002.eml"_s);
    int runsWhileStalled = 0;
    int rowsWhileStalled = -1;
    callbacks.runEvents = [&] {
        // Long enough for the first batch of rows to be due.
        if (stalled && ++runsWhileStalled == 20) {
            rowsWhileStalled = model.Count();
            release.release(10);
        }
    };
    EXPECT_EQ(Run(), RefreshOutcome::Completed);
    EXPECT_GE(runsWhileStalled, 20);
    EXPECT_EQ(rowsWhileStalled, 2);
    EXPECT_EQ(model.Count(), 3);
}

TEST_F(RefreshFailureTest, EndsWhenItIsCancelledAndKeepsTheRowsSoFar) {
    AddMessages(5);
    Stall(u"003.eml"_s);
    RefreshPass* running = nullptr;
    int runsWhileStalled = 0;
    callbacks.runEvents = [&] {
        if (stalled && ++runsWhileStalled == 5) {
            running->Cancel();
        }
    };
    RefreshPass pass = Pass();
    running = &pass;
    EXPECT_EQ(pass.Run(false, false), RefreshOutcome::Cancelled);
    EXPECT_EQ(Keys(), (QStringList{u"000.eml"_s, u"001.eml"_s, u"002.eml"_s}));
    EXPECT_EQ(state.LastAddedFile, u"002.eml"_s);
    release.release(10);
}

TEST_F(RefreshFailureTest, IsCancelledWhileTheListingStalls) {
    class Stalling : public MemoryFileSystem {
    public:
        bool FolderExists(const QString& folder) const override {
            release.acquire();
            return MemoryFileSystem::FolderExists(folder);
        }

        mutable QSemaphore release;
    } stalling;
    model.Append(NumberedRows(3));
    RefreshPass* running = nullptr;
    callbacks.runEvents = [&] { running->Cancel(); };
    RefreshPass pass({stalling, store, clock, pool}, state, model, panels, callbacks);
    running = &pass;
    EXPECT_EQ(pass.Run(false, false), RefreshOutcome::Cancelled);
    EXPECT_EQ(model.Count(), 3);
    EXPECT_EQ(viewsCleared, 0) << "an archive that did not answer is not a missing one";
    stalling.release.release(10);
    pool.waitForDone();
}

} // namespace quellbox

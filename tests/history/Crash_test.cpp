// A program that is killed at each of the calls that change files in turn: afterwards each message is in one place, and
// the history agrees with the folders after the next start.
#ifndef _WIN32

#include "dialogs/CleansingTask.h"
#include "history/JournalRecovery.h"
#include "messages/DisposalTask.h"
#include "messages/PutBackTask.h"
#include "platform/LocalFileSystem.h"
#include "tests/history/JournalFile.h"
#include "tests/support/FileNames.h"

#include <QCoreApplication>
#include <QProcess>

#include <atomic>

#include <unistd.h>

using namespace quellbox;

namespace {

constexpr int messages = 8;
constexpr int killed = 9;
constexpr auto doomed = "QUELLBOX_DOOMED"; ///< says to this program that it is the one that is killed, where and when

enum class Moment { Before, After };

/// The real file system in a process that ends at one of its changes.
class FatalFiles : public FileSystem {
public:
    FatalFiles(int lastChange, Moment moment) : left_(lastChange), moment_(moment) {}

    bool FolderExists(const QString& folder) const override { return files_->FolderExists(folder); }
    bool IsRealFolder(const QString& folder) const override { return files_->IsRealFolder(folder); }
    bool FileExists(const QString& path) const override { return files_->FileExists(path); }
    std::vector<FolderEntry> Entries(const QString& folder) const override { return files_->Entries(folder); }
    std::optional<FileStatus> Status(const QString& path) const override { return files_->Status(path); }
    std::unique_ptr<InputFile> Open(const QString& path) const override { return files_->Open(path); }
    void Move(const QString& from, const QString& to) override {
        Change([&] { files_->Move(from, to); });
    }
    bool MoveUnless(const QString& from, const QString& to,
                    const std::function<bool(const FileStatus&)>& keep) override {
        bool isGone = false;
        Change([&] { isGone = files_->MoveUnless(from, to, keep); });
        return isGone;
    }
    bool Remove(const QString& path) override {
        bool wasThere = false;
        Change([&] { wasThere = files_->Remove(path); });
        return wasThere;
    }
    bool RemoveEvenReadOnly(const QString& path) override { return files_->RemoveEvenReadOnly(path); }
    bool RemoveUnless(const QString& path, const std::function<bool(const FileStatus&)>& keep) override {
        bool isGone = false;
        Change([&] { isGone = files_->RemoveUnless(path, keep); });
        return isGone;
    }
    void MakeFolder(const QString& folder) override {
        Change([&] { files_->MakeFolder(folder); });
    }
    bool RemoveFolder(const QString& folder) override {
        bool isGone = false;
        Change([&] { isGone = files_->RemoveFolder(folder); });
        return isGone;
    }
    void WriteWhole(const QString& path, const QByteArray& bytes) override { files_->WriteWhole(path, bytes); }

private:
    template <class Work>
    void Change(Work work) {
        const bool isLast = --left_ == 0;
        if (isLast && moment_ == Moment::Before) {
            ::_exit(killed);
        }
        work();
        if (isLast) {
            ::_exit(killed);
        }
    }

    std::unique_ptr<FileSystem> files_ = MakeLocalFileSystem();
    std::atomic<int> left_;
    Moment moment_;
};

struct Trial {
    const char* name;
    HistoryAction action;
    bool keeps;
    bool undoes; ///< what is killed is taking the action back
};

class CrashTest : public JournalTest, public testing::WithParamInterface<Trial> {
protected:
    QString Archive() const { return place_.filePath(QStringLiteral("archive/")); }
    QString Pickup() const { return place_.filePath(QStringLiteral("pickup/")); }
    static QString Name(int number) { return QStringLiteral("m%1.EML").arg(number); }
    static QByteArray Contents(int number) { return "Subject: " + QByteArray::number(number) + "\n\nwhole\n"; }

    void Fill() {
        for (const QString& folder : {Archive(), Pickup()}) {
            QDir(folder).removeRecursively();
            QDir().mkpath(folder);
        }
        QDir(QFileInfo(File()).absolutePath()).removeRecursively();
        QFile other(Archive() + QStringLiteral("note.txt")); // an empty folder may be one where nothing is mounted
        ASSERT_TRUE(other.open(QIODevice::WriteOnly));
        for (int number = 0; number < messages; ++number) {
            QFile file(Archive() + Name(number));
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(Contents(number));
        }
    }

    std::shared_ptr<KeptFolder> Kept(FileSystem& files) const {
        return GetParam().keeps ? std::make_shared<KeptFolder>(files, Archive(), 30, clock_.Now()) : nullptr;
    }

    void Cleanse(FileSystem& files) {
        CleansingTask task(files, *pool_);
        const std::shared_ptr<KeptFolder> kept = Kept(files);
        task.Start(Archive(), 1, clock_.Now().date().addDays(100), kept,
                   journal_->Begin({HistoryAction::Cleanse, Archive(), {}, kept ? QString(kept->Path()) : QString()}));
        ASSERT_TRUE(RunUntil([&task] { return !task.IsRunning(); }));
    }

    void Act(FileSystem& files) {
        if (GetParam().action == HistoryAction::Cleanse) {
            Cleanse(files);
            return;
        }
        MessageListModel model;
        std::vector<MessageRow> rows;
        std::vector<int> numbers;
        for (int number = 0; number < messages; ++number) {
            rows.emplace_back(Name(number), 10, 0, MessageTexts());
            numbers.push_back(number);
        }
        model.Append(std::move(rows));
        const std::shared_ptr<KeptFolder> kept = Kept(files);
        DisposalTask task(files, *pool_, model);
        task.Start(GetParam().action == HistoryAction::Delete ? Action::remove : Action::unblock, {Archive(), Pickup()},
                   numbers, kept,
                   journal_->Begin({GetParam().action, Archive(), Pickup(), kept ? QString(kept->Path()) : QString()}));
        ASSERT_TRUE(RunUntil([&task] { return !task.IsRunning(); }));
    }

    void Undo(FileSystem& files) {
        const QString archive = Archive();
        const auto latest = Answer([archive](JournalDatabase& database) { return database.LatestToUndo(archive); });
        ASSERT_TRUE(latest);
        const auto items = Answer([latest](JournalDatabase& database) { return database.ItemsToUndo(*latest); });
        const HistoryActionFacts& facts = items.front().facts;
        const QString place = facts.kept.isEmpty() ? facts.pickup : facts.kept;
        std::vector<PutBack> back;
        for (const UndoItem& item : items) {
            back.push_back({place + item.entry.file, archive + item.entry.file,
                            MessageRow(item.entry.file, 10, 0, MessageTexts()), item.id});
        }
        PutBackTask task(files, *pool_);
        task.Start(std::move(back), facts.kept.isEmpty() ? QStringList() : QStringList{facts.kept},
                   journal_->Begin({HistoryAction::Undo, archive, Pickup(), facts.kept, *latest}));
        ASSERT_TRUE(RunUntil([&task] { return !task.IsRunning(); }));
    }

    /// What the program does that is killed. Returns when it was not.
    void Run(int lastChange, Moment moment) {
        FatalFiles files(lastChange, moment);
        Open();
        if (GetParam().undoes) {
            const std::unique_ptr<FileSystem> local = MakeLocalFileSystem();
            Act(*local);
            Undo(files);
        } else {
            Act(files);
        }
        Close();
    }

    /// Starts this very test as another program: a fork() of one with threads could not go on. Returns whether it was
    /// killed.
    bool IsKilled(int lastChange, Moment moment) const {
        const QString test = QString::fromUtf8(testing::UnitTest::GetInstance()->current_test_info()->name());
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QString::fromUtf8(doomed),
                           QStringLiteral("%1 %2 %3").arg(lastChange).arg(static_cast<int>(moment)).arg(place_.path()));
        for (const char* name :
             {"GTEST_TOTAL_SHARDS", "GTEST_SHARD_INDEX", "GTEST_SHARD_STATUS_FILE", "GTEST_OUTPUT"}) {
            environment.remove(QString::fromUtf8(name));
        }
        QProcess program;
        program.setProcessEnvironment(environment);
        program.setStandardOutputFile(QProcess::nullDevice());
        program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        program.start(QCoreApplication::applicationFilePath(),
                      {QStringLiteral("--gtest_filter=Each/CrashTest.") + test});
        EXPECT_TRUE(program.waitForFinished(60000));
        EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
        EXPECT_TRUE(program.exitCode() == killed || program.exitCode() == 0) << program.exitCode();
        return program.exitCode() == killed;
    }

    QStringList FilesIn(const QString& folder) const {
        return QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }

    /// Every file below the archive's hidden folder.
    QStringList KeptFiles() const {
        QStringList files;
        const QDir all(Archive() + QStringLiteral(".quellbox-deleted"));
        for (const QString& folder : all.entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden)) {
            files += FilesIn(all.filePath(folder));
        }
        return files;
    }

    /// After the next start the history says of each message where it is.
    void Compare() {
        Open();
        const std::unique_ptr<FileSystem> files = MakeLocalFileSystem();
        JournalRecovery recovery(*files, *pool_, *journal_);
        bool hasEnded = false;
        QObject::connect(&recovery, &JournalRecovery::Ended, [&hasEnded](int) { hasEnded = true; });
        recovery.Start();
        ASSERT_TRUE(RunUntil([&hasEnded] { return hasEnded; }));
        const QStringList archive = FilesIn(Archive());
        const QStringList elsewhere = GetParam().keeps ? KeptFiles() : FilesIn(Pickup());
        const bool isForGood = GetParam().action != HistoryAction::Unblock && !GetParam().keeps;
        const QStringList done = Files({{}, GetParam().action, HistoryResult::Done});
        for (int number = 0; number < messages; ++number) {
            const QString name = Name(number);
            const bool isHere = archive.contains(name);
            EXPECT_EQ(archive.count(name) + elsewhere.count(name), isForGood && !isHere ? 0 : 1) << name.toStdString();
            EXPECT_EQ(done.contains(name), !isHere) << name.toStdString();
        }
        Close();
    }
};

TEST_P(CrashTest, LeavesEachMessageInOnePlaceAndAHistoryThatSaysWhere) {
    if (const QString told = qEnvironmentVariable(doomed); !told.isEmpty()) {
        place_ = QDir(told.section(u' ', 2));
        Run(told.section(u' ', 0, 0).toInt(), static_cast<Moment>(told.section(u' ', 1, 1).toInt()));
        return;
    }
    int trials = 0;
    for (const Moment moment : {Moment::Before, Moment::After}) {
        bool isKilled = true;
        for (int change = 1; isKilled && !HasFailure(); ++change) {
            Fill();
            isKilled = IsKilled(change, moment);
            Compare();
            trials += isKilled ? 1 : 0;
        }
    }
    EXPECT_GE(trials, 2 * messages);
}

INSTANTIATE_TEST_SUITE_P(Each, CrashTest,
                         testing::Values(Trial{"Unblock", HistoryAction::Unblock, false, false},
                                         Trial{"DeleteForGood", HistoryAction::Delete, false, false},
                                         Trial{"CleanseForGood", HistoryAction::Cleanse, false, false},
                                         Trial{"CleanseAndKeep", HistoryAction::Cleanse, true, false},
                                         Trial{"UndoOfCleanse", HistoryAction::Cleanse, true, true},
                                         Trial{"DeleteAndKeep", HistoryAction::Delete, true, false},
                                         Trial{"UndoOfUnblock", HistoryAction::Unblock, false, true},
                                         Trial{"UndoOfDelete", HistoryAction::Delete, true, true}),
                         [](const auto& trial) { return trial.param.name; });

} // namespace

#endif

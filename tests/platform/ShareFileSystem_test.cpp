#include "platform/ShareFileSystem.h"

#include "platform/EntryNames.h"
#include "platform/RuntimeError.h"
#include "platform/UncPath.h"
#include "tests/support/FakeVolumes.h"
#include "tests/support/FileNames.h"
#include "tests/support/MemoryFileSystem.h"

#include <QDir>

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>
#include <utility>

namespace quellbox {

namespace {

QString Text(const char* text) {
    return QString::fromUtf8(text);
}

class CountingVolumes : public FakeVolumes {
public:
    QString Resolve(const QString& path) const override {
        ++count;
        const QString place = FakeVolumes::Resolve(path);
        if (const auto interlude = std::exchange(whileResolving, nullptr)) {
            interlude();
        }
        return place;
    }

    mutable std::atomic<int> count = 0;
    mutable std::function<void()> whileResolving; ///< called once, before the place is returned
};

/// Files that note which folder they were to prepare.
class PreparedFiles : public MemoryFileSystem {
public:
    void PrepareMoves(const QString& folder) const override { prepared.append(folder); }

    mutable QStringList prepared;
};

class ShareFileSystemTest : public testing::Test {
protected:
    ShareFileSystemTest() {
        volumes_.shares[Text(R"(\\nas\mail)")] = Text("/mnt/mail");
        local_->Add(Text("/mnt/mail/spam/a.eml"), "first");
        local_->AddFolder(Text("/mnt/mail"));
        local_->AddFolder(Text("/pickup"));
    }

    CountingVolumes volumes_;
    PreparedFiles* local_ = new PreparedFiles; // owned by files_
    ShareFileSystem files_{std::unique_ptr<FileSystem>(local_), volumes_};
};

TEST_F(ShareFileSystemTest, ReadsWhatIsInFoldersOfAnArchiveOnAShare) {
    local_->Add(Text("/mnt/mail/box/new/1.a"), "first", 7);
    local_->AddFolder(Text("/mnt/mail/box"));
    const Folder box = Text(R"(\\nas\mail\box)");
    const MessagePlaces places{.folders = {Text("new"), Text("cur")}, .names = {{}}};
    const std::vector<FolderEntry> entries = EntriesOf(files_, box, places);
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].name, Text(R"(new\1.a)"));
    const std::unique_ptr<FolderReader> reader = files_.ReadFolder(box);
    EXPECT_EQ(reader->Status(entries[0].name), (FileStatus{5, 7}));
    EXPECT_EQ(ReadWhole(*reader->Open(entries[0].name)), "first");
    files_.Move(box.PathOf(entries[0].name), Text("/pickup/1.a"));
    EXPECT_EQ(local_->Bytes(Text("/pickup/1.a")), "first");
}

TEST_F(ShareFileSystemTest, EveryCallReachesTheMountedFolder) {
    EXPECT_TRUE(files_.FolderExists(Text(R"(\\NAS\mail\spam\)")));
    EXPECT_TRUE(files_.FolderExists(Text(R"(\\nas\mail\spam)")));
    EXPECT_TRUE(files_.FileExists(Text(R"(\\nas\mail\spam\a.eml)")));
    EXPECT_EQ(FileNames(files_, Text(R"(\\nas\mail\spam\)")), QStringList{Text("a.eml")});
    EXPECT_EQ(FolderNames(files_, Text(R"(\\nas\mail)")), QStringList{Text("spam")});
    EXPECT_EQ(files_.Status(Text(R"(\\nas\mail\spam\a.eml)"))->size, 5);
    EXPECT_EQ(ReadWhole(files_, Text(R"(\\nas\mail\spam\a.eml)")), "first");
    EXPECT_EQ(files_.ReadFolder(Text(R"(\\nas\mail\spam\)"))->Status(Text("a.eml"))->size, 5);
    files_.WriteWhole(Text(R"(\\nas\mail\b.eml)"), "second");
    files_.Move(Text(R"(\\nas\mail\b.eml)"), Text("/pickup/b.eml"));
    files_.Move(Text("/pickup/b.eml"), Text(R"(\\nas\mail\c.eml)"));
    files_.Remove(Text(R"(\\nas\mail\spam\a.eml)"));
    EXPECT_EQ(local_->Paths(), QStringList{Text("/mnt/mail/c.eml")});
}

TEST_F(ShareFileSystemTest, MovesArePreparedWhereTheFolderIsMounted) {
    files_.PrepareMoves(Text(R"(\\nas\mail\spam\)"));
    files_.PrepareMoves(Text(R"(\\nas\gone\)"));
    files_.PrepareMoves(Text("/pickup/"));
    EXPECT_EQ(local_->prepared, QStringList({Text("/mnt/mail/spam/"), Text("/pickup/")}));
}

TEST_F(ShareFileSystemTest, OtherPathsGoThroughUnasked) {
    const QString name = Text(QDir::separator() == QLatin1Char('/') ? "a\\b" : "a b");
    local_->Add(Text("/pickup/") + name, "x");
    EXPECT_TRUE(files_.FolderExists(Text("/pickup/")));
    EXPECT_TRUE(files_.FileExists(Text("/pickup/") + name));
    EXPECT_EQ(FileNames(files_, Text("/pickup/")), QStringList{name});
    EXPECT_FALSE(files_.FileExists(Text("//nas/mail/spam/a.eml")));
    EXPECT_FALSE(files_.FileExists(Text("\\nas")));
    EXPECT_EQ(volumes_.count, 0);
}

TEST_F(ShareFileSystemTest, AnUnmountedShareIsNoFolderAndItsFilesFailByTheirUncPath) {
    const QString path = Text(R"(\\nas\gone\a.eml)");
    EXPECT_FALSE(files_.FolderExists(Text(R"(\\nas\gone\)")));
    EXPECT_FALSE(files_.FileExists(path));
    EXPECT_EQ(files_.Status(path), std::nullopt);
    EXPECT_THROW(FileNames(files_, Text(R"(\\nas\gone)")), FileError);
    EXPECT_THROW(files_.ReadFolder(Text(R"(\\nas\gone\)")), FileError);
    EXPECT_THROW(FolderNames(files_, Text(R"(\\nas\gone)")), FileError);
    EXPECT_THROW(files_.Remove(path), FileError);
    EXPECT_THROW(files_.WriteWhole(path, "x"), FileError);
    EXPECT_THROW(files_.Move(Text(R"(\\nas\mail\spam\a.eml)"), path), FileError);
    EXPECT_TRUE(local_->FileExists(Text("/mnt/mail/spam/a.eml")));
    try {
        files_.Open(path);
        FAIL() << "a file of an unmounted share was opened";
    } catch (const FileError& error) {
        EXPECT_EQ(error.Path(), path);
        EXPECT_EQ(error.Reason().toStdString(), "The share is not mounted on this computer.");
    }
}

TEST_F(ShareFileSystemTest, IncompleteUncPathsNameNothing) {
    for (const char* path : {R"(\\)", R"(\\nas)", R"(\\nas\)", R"(\\\)"}) {
        EXPECT_FALSE(files_.FolderExists(Text(path))) << path;
        EXPECT_FALSE(files_.FileExists(Text(path))) << path;
        EXPECT_THROW(files_.Open(Text(path)), FileError) << path;
    }
}

TEST_F(ShareFileSystemTest, AFolderIsResolvedOnceUntilItIsLookedForAgain) {
    const QString folder = Text(R"(\\nas\mail\spam\)");
    EXPECT_TRUE(files_.FolderExists(folder));
    EXPECT_TRUE(files_.FileExists(folder + Text("a.eml")));
    EXPECT_FALSE(FileNames(files_, folder).isEmpty());
    EXPECT_EQ(volumes_.count, 1);
    volumes_.shares[Text(R"(\\nas\mail)")] = Text("/other");
    local_->Add(Text("/other/spam/new.eml"), "x");
    EXPECT_FALSE(files_.FileExists(folder + Text("new.eml")));
    EXPECT_TRUE(files_.FolderExists(folder));
    EXPECT_TRUE(files_.FileExists(folder + Text("new.eml")));
    EXPECT_EQ(volumes_.count, 2);
    volumes_.shares.clear();
    EXPECT_FALSE(files_.FolderExists(folder));
    EXPECT_FALSE(files_.FileExists(folder + Text("new.eml")));
}

TEST_F(ShareFileSystemTest, NothingIsChangedWhereAShareWasMountedBefore) {
    const QString share = Text(R"(\\nas\mail\)");
    local_->Add(Text("/pickup/b.eml"), "second");
    files_.Move(share + Text("spam\\a.eml"), share + Text("a.eml"));
    files_.WriteWhole(share + Text("c.eml"), "third");
    EXPECT_TRUE(files_.FileExists(share + Text("a.eml")));
    const QStringList before = local_->Paths();
    volumes_.shares.clear(); // and what lies at /mnt/mail now is a folder of this computer
    EXPECT_THROW(files_.Move(Text("/pickup/b.eml"), share + Text("b.eml")), FileError);
    EXPECT_THROW(files_.Move(share + Text("a.eml"), Text("/pickup/a.eml")), FileError);
    EXPECT_THROW(files_.WriteWhole(share + Text("c.eml"), "other"), FileError);
    EXPECT_THROW(files_.Remove(share + Text("a.eml")), FileError);
    EXPECT_THROW(files_.RemoveUnless(share + Text("a.eml"), [](const FileStatus&) { return false; }), FileError);
    EXPECT_EQ(local_->Paths(), before);
    EXPECT_EQ(local_->Bytes(Text("/mnt/mail/c.eml")), "third");
}

TEST_F(ShareFileSystemTest, APlaceFoundBeforeAllWereForgottenIsNotRemembered) {
    const QString file = Text(R"(\\nas\mail\spam\a.eml)");
    // While this asks for the place, the share goes and another thread looks for its folder.
    volumes_.whileResolving = [this] {
        volumes_.shares.clear();
        EXPECT_FALSE(files_.FolderExists(Text(R"(\\nas\mail\spam)")));
    };
    EXPECT_TRUE(files_.FileExists(file));
    EXPECT_FALSE(files_.FileExists(file));
}

TEST_F(ShareFileSystemTest, ANameThatLeadsElsewhereStaysWithinTheShare) {
    class TableVolumes : public FakeVolumes {
    public:
        QString Resolve(const QString& path) const override {
            return FindInMountTable(path, Text("40 22 0:50 / /mnt/mail rw - cifs //nas/mail rw\n"));
        }
    };
    const TableVolumes table;
    auto* local = new MemoryFileSystem;
    const ShareFileSystem files{std::unique_ptr<FileSystem>(local), table};
    local->Add(Text("/mnt/secret"), "above");
    local->Add(Text("/mnt/mail/open"), "within");
    EXPECT_EQ(ReadWhole(files, Text(R"(\\nas\mail\../open)")), "within");
    EXPECT_EQ(ReadWhole(files, Text(R"(\\nas\mail\a/../../open)")), "within");
    EXPECT_FALSE(files.FileExists(Text(R"(\\nas\mail\../secret)")));
    EXPECT_FALSE(files.FileExists(Text(R"(\\nas\mail\..\secret)")));
    EXPECT_EQ(FileNames(files, Text(R"(\\nas\mail\..)")), QStringList{Text("open")});
}

TEST_F(ShareFileSystemTest, AShareMountedLaterIsFoundWithoutLookingForItsFolder) {
    EXPECT_FALSE(files_.FileExists(Text(R"(\\nas\late\a.eml)")));
    volumes_.shares[Text(R"(\\nas\late)")] = Text("/mnt/late");
    local_->Add(Text("/mnt/late/a.eml"), "x");
    EXPECT_TRUE(files_.FileExists(Text(R"(\\nas\late\a.eml)")));
}

TEST_F(ShareFileSystemTest, ANameWithABackslashIsNoNameOfAShare) {
    local_->Add(Text(R"(/mnt/mail/spam/..\..\x.eml)"), "x");
    local_->AddFolder(Text(R"(/mnt/mail/spam/sub\sub)"));
    EXPECT_EQ(FileNames(files_, Text(R"(\\nas\mail\spam\)")), QStringList{Text("a.eml")});
    EXPECT_EQ(FolderNames(files_, Text(R"(\\nas\mail\spam\)")), QStringList());
}

TEST_F(ShareFileSystemTest, AVisitMakesNoListOfAllEntries) {
    class VisitedOnly : public MemoryFileSystem {
    public:
        std::vector<FolderEntry> Entries(const QString& folder) const override {
            ADD_FAILURE() << folder.toStdString() << " is listed";
            return {};
        }
        void VisitEntries(const QString& folder, const std::function<void(FolderEntry)>& visit) const override {
            visit({folder, EntryKind::File, false, std::nullopt});
            visit({Text(R"(no\name)"), EntryKind::File, false, std::nullopt});
        }
    };
    const ShareFileSystem files(std::make_unique<VisitedOnly>(), volumes_);
    const auto visited = [&files](const QString& folder) {
        QStringList names;
        files.VisitEntries(folder, [&names](const FolderEntry& entry) { names.append(entry.name); });
        return names;
    };
    EXPECT_EQ(visited(Text(R"(\\nas\mail\spam\)")), QStringList{Text("/mnt/mail/spam/")});
    EXPECT_EQ(visited(Text("/pickup/")), QStringList({Text("/pickup/"), Text(R"(no\name)")}));
    EXPECT_THROW(visited(Text(R"(\\nas\gone)")), FileError);
}

TEST_F(ShareFileSystemTest, ServesSeveralThreads) {
    std::atomic<int> found = 0;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&] {
            for (int call = 0; call < 200; ++call) {
                found += files_.FolderExists(Text(R"(\\nas\mail\spam)")) ? 1 : 0;
                found += files_.FileExists(Text(R"(\\nas\mail\spam\a.eml)")) ? 1 : 0;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(found, 1600);
}

} // namespace

} // namespace quellbox

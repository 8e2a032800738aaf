#include "platform/LocalFileSystem.h"

#include "platform/RuntimeError.h"
#include "tests/support/RealFiles.h"

#include <QDir>

#ifndef _WIN32
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace quellbox {

namespace {

class LocalFileSystemTest : public RealFilesTest {
protected:
    QStringList Names() const { return NamesIn(folder_.path()); }
};

TEST_F(LocalFileSystemTest, WrittenBytesComeBackAndNothingElseIsLeft) {
    for (const qsizetype size : {0, 1, 65535, 65536, 65537, 300000}) {
        const QByteArray bytes(size, 'x');
        files_->WriteWhole(Path("a.EML"), bytes);
        EXPECT_EQ(ReadWhole(*files_, Path("a.EML")), bytes);
        EXPECT_EQ(files_->Status(Path("a.EML"))->size, size);
    }
    EXPECT_EQ(Names(), QStringList{Text("a.EML")});
}

TEST_F(LocalFileSystemTest, MissingThings) {
    EXPECT_FALSE(files_->FolderExists(Path("none")));
    EXPECT_FALSE(files_->FileExists(Path("none")));
    EXPECT_EQ(files_->Status(Path("none")), std::nullopt);
    EXPECT_THROW(files_->FileNames(Path("none")), FileError);
    EXPECT_THROW(files_->Open(Path("none")), FileError);
    EXPECT_THROW(files_->Remove(Path("none")), FileError);
    EXPECT_THROW(files_->Move(Path("none"), Path("other")), FileError);
    EXPECT_THROW(files_->WriteWhole(Path("none/a"), "x"), FileError);
}

TEST_F(LocalFileSystemTest, FolderIsNoFile) {
    ASSERT_TRUE(QDir().mkdir(Path("folder")));
    files_->WriteWhole(Path("file"), "x");
    EXPECT_TRUE(files_->FolderExists(Path("folder")));
    EXPECT_FALSE(files_->FolderExists(Path("file")));
    EXPECT_TRUE(files_->FileExists(Path("file")));
    EXPECT_FALSE(files_->FileExists(Path("folder")));
    EXPECT_EQ(files_->Status(Path("folder")), std::nullopt);
    EXPECT_EQ(Names(), QStringList{Text("file")});
    EXPECT_THROW(files_->Open(Path("folder")), FileError);
    EXPECT_THROW(files_->Remove(Path("folder")), FileError);
    EXPECT_THROW(files_->Move(Path("folder"), Path("moved")), FileError);
    EXPECT_TRUE(files_->FolderExists(Path("folder")));
}

TEST_F(LocalFileSystemTest, FolderNamesAreThoseOfTheSubFolders) {
    ASSERT_TRUE(QDir().mkpath(Path("one/below")));
    ASSERT_TRUE(QDir().mkdir(Path("two words")));
    files_->WriteWhole(Path("file"), "x");
    QStringList names = files_->FolderNames(folder_.path());
    names.sort();
    EXPECT_EQ(names, QStringList({Text("one"), Text("two words")}));
    EXPECT_EQ(files_->FolderNames(Path("one/below")), QStringList());
    EXPECT_THROW(files_->FolderNames(Path("none")), FileError);
    EXPECT_THROW(files_->FolderNames(Path("file")), FileError);
}

TEST_F(LocalFileSystemTest, RemoveUnlessAsksWithTheStatus) {
    files_->WriteWhole(Path("a"), "four");
    const qint64 modified = files_->Status(Path("a"))->modifiedNs;
    int asked = 0;
    const auto answer = [&](bool keep) {
        return [&asked, modified, keep](const FileStatus& status) {
            ++asked;
            EXPECT_EQ(status.size, 4);
            EXPECT_EQ(status.modifiedNs, modified);
            return keep;
        };
    };
    EXPECT_FALSE(files_->RemoveUnless(Path("a"), answer(true)));
    EXPECT_TRUE(files_->FileExists(Path("a")));
    EXPECT_TRUE(files_->RemoveUnless(Path("a"), answer(false)));
    EXPECT_FALSE(files_->FileExists(Path("a")));
    EXPECT_THROW(files_->RemoveUnless(Path("a"), answer(false)), FileError);
    EXPECT_EQ(asked, 2);
}

TEST_F(LocalFileSystemTest, RemoveUnlessLeavesFoldersAndReadOnlyFiles) {
    const auto go = [](const FileStatus&) { return false; };
    ASSERT_TRUE(QDir().mkdir(Path("folder")));
    files_->WriteWhole(Path("file"), "x");
    ASSERT_TRUE(QFile::setPermissions(Path("file"), QFileDevice::ReadOwner));
    EXPECT_THROW(files_->RemoveUnless(Path("folder"), go), FileError);
    EXPECT_THROW(files_->RemoveUnless(Path("file"), go), FileError);
    EXPECT_TRUE(files_->FolderExists(Path("folder")));
    EXPECT_TRUE(files_->FileExists(Path("file")));
    QFile::setPermissions(Path("file"), QFileDevice::ReadOwner | QFileDevice::WriteOwner);
}

TEST_F(LocalFileSystemTest, PathWithNulNamesNothing) {
    files_->WriteWhole(Path("a"), "x");
    const QString path = Path("a") + QChar(QChar::Null) + Text("b");
    EXPECT_FALSE(files_->FileExists(path));
    EXPECT_THROW(files_->Open(path), FileError);
    EXPECT_THROW(files_->Remove(path), FileError);
    EXPECT_TRUE(files_->FileExists(Path("a")));
}

TEST_F(LocalFileSystemTest, ErrorNamesPathAndReason) {
    try {
        files_->Open(Path("none"));
        FAIL() << "a missing file was opened";
    } catch (const FileError& error) {
        EXPECT_EQ(error.Path(), Path("none"));
        EXPECT_FALSE(error.Reason().isEmpty());
    }
}

TEST_F(LocalFileSystemTest, RemoveDeletes) {
    files_->WriteWhole(Path("a"), "x");
    files_->Remove(Path("a"));
    EXPECT_FALSE(files_->FileExists(Path("a")));
}

TEST_F(LocalFileSystemTest, ReadOnlyFileIsNotDeleted) {
    files_->WriteWhole(Path("a"), "x");
    ASSERT_TRUE(QFile::setPermissions(Path("a"), QFile::ReadOwner));
    EXPECT_THROW(files_->Remove(Path("a")), FileError);
    EXPECT_TRUE(files_->FileExists(Path("a")));
    ASSERT_TRUE(QFile::setPermissions(Path("a"), QFile::ReadOwner | QFile::WriteOwner));
    files_->Remove(Path("a"));
}

#ifndef _WIN32

TEST_F(LocalFileSystemTest, NameThatIsNoUtf8IsReadMovedAndDeleted) {
    const QByteArray native = Native("gr\xFC\xDF"
                                     "e.EML");
    const int number = ::open(native.constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    if (number < 0) {
        GTEST_SKIP() << "the file system takes UTF-8 only";
    }
    ASSERT_EQ(::write(number, "body", 4), 4);
    ::close(number);
    ASSERT_EQ(Names(), QStringList{QString::fromUtf16(u"gr\uFFFDFC\uFFFDDFe.EML")});
    const QString path = folder_.path() + QLatin1Char('/') + Names().front();
    EXPECT_EQ(files_->Status(path)->size, 4);
    EXPECT_EQ(ReadWhole(*files_, path), "body");
    ASSERT_TRUE(QDir().mkdir(Path("sub")));
    const QString moved = Path("sub/") + Names().front();
    files_->Move(path, moved);
    EXPECT_EQ(::access((Native("sub/") + native.mid(native.lastIndexOf('/') + 1)).constData(), F_OK), 0);
    files_->Remove(moved);
    EXPECT_FALSE(files_->FileExists(moved));
}

TEST_F(LocalFileSystemTest, SymbolicLinkToAFileCountsToAFolderDoesNot) {
    ASSERT_TRUE(QDir().mkdir(Path("sub")));
    files_->WriteWhole(Path("sub/real"), "12345");
    ASSERT_EQ(::symlink("sub/real", Native("link").constData()), 0);
    ASSERT_EQ(::symlink("sub", Native("folderlink").constData()), 0);
    ASSERT_EQ(::symlink("nowhere", Native("dangling").constData()), 0);
    EXPECT_EQ(files_->Status(Path("link"))->size, 5);
    EXPECT_TRUE(files_->FileExists(Path("link")));
    EXPECT_EQ(ReadWhole(*files_, Path("link")), "12345");
    EXPECT_EQ(files_->Status(Path("folderlink")), std::nullopt);
    EXPECT_EQ(files_->Status(Path("dangling")), std::nullopt);
    EXPECT_THROW(files_->Open(Path("folderlink")), FileError);
}

TEST_F(LocalFileSystemTest, FolderNamesLeaveOutHiddenOnesAndKeepLinksToFolders) {
    for (const char* name : {".hidden", "real"}) {
        ASSERT_TRUE(QDir().mkdir(Path(name)));
    }
    files_->WriteWhole(Path("file"), "x");
    ASSERT_EQ(::symlink("real", Native("link").constData()), 0);
    ASSERT_EQ(::symlink("file", Native("filelink").constData()), 0);
    ASSERT_EQ(::symlink("nowhere", Native("dangling").constData()), 0);
    QStringList names = files_->FolderNames(folder_.path());
    names.sort();
    EXPECT_EQ(names, QStringList({Text("link"), Text("real")}));
}

TEST_F(LocalFileSystemTest, FolderNameThatIsNoUtf8LeadsToItsFolder) {
    const QByteArray native = Native("gr\xFC");
    if (::mkdir(native.constData(), 0700) != 0) {
        GTEST_SKIP() << "the file system takes UTF-8 only";
    }
    ASSERT_EQ(::mkdir((native + "/below").constData(), 0700), 0);
    ASSERT_EQ(files_->FolderNames(folder_.path()), QStringList{QString::fromUtf16(u"gr\uFFFDFC")});
    const QString path = folder_.path() + QLatin1Char('/') + files_->FolderNames(folder_.path()).front();
    EXPECT_TRUE(files_->FolderExists(path));
    EXPECT_EQ(files_->FolderNames(path), QStringList{Text("below")});
    EXPECT_EQ(::rmdir((native + "/below").constData()), 0);
    EXPECT_EQ(::rmdir(native.constData()), 0);
}

TEST_F(LocalFileSystemTest, FifoNeitherBlocksNorCounts) {
    ASSERT_EQ(::mkfifo(Native("fifo").constData(), 0600), 0);
    EXPECT_EQ(files_->Status(Path("fifo")), std::nullopt);
    EXPECT_FALSE(files_->FileExists(Path("fifo")));
    EXPECT_EQ(Names(), QStringList());
    EXPECT_THROW(files_->Open(Path("fifo")), FileError);
}

TEST_F(LocalFileSystemTest, TimeHasFullResolution) {
    files_->WriteWhole(Path("a"), "x");
    const timespec times[2] = {{1'000'000'000, 1}, {1'700'000'000, 123'456'789}};
    ASSERT_EQ(::utimensat(AT_FDCWD, Native("a").constData(), times, 0), 0);
    EXPECT_EQ(files_->Status(Path("a"))->modifiedNs, 1'700'000'000'123'456'789);
}

TEST_F(LocalFileSystemTest, RewritingKeepsPermissions) {
    files_->WriteWhole(Path("a"), "x");
    ASSERT_EQ(::chmod(Native("a").constData(), 0640), 0);
    files_->WriteWhole(Path("a"), "y");
    struct stat status {};
    ASSERT_EQ(::stat(Native("a").constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

#endif

} // namespace

} // namespace quellbox

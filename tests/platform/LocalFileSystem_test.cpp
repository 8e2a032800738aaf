#include "platform/LocalFileSystem.h"

#include "platform/EntryNames.h"
#include "platform/RuntimeError.h"
#include "tests/support/RealFiles.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <array>

#ifdef _WIN32
#include <windows.h>
#else
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
    EXPECT_THROW(FileNames(*files_, Path("none")), FileError);
    EXPECT_THROW(files_->Open(Path("none")), FileError);
    EXPECT_FALSE(files_->Remove(Path("none")));
    EXPECT_THROW(files_->Remove(Path("none/a")), FileError);
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
    EXPECT_FALSE(files_->Remove(Path("folder")));
#ifdef _WIN32 // which does not tell a file in the place of the folder from no folder at all
    EXPECT_THROW(files_->Remove(Path("file/below")), FileError);
#else
    EXPECT_FALSE(files_->Remove(Path("file/below")));
#endif
    EXPECT_THROW(files_->Move(Path("folder"), Path("moved")), FileError);
    EXPECT_TRUE(files_->FolderExists(Path("folder")));
}

TEST_F(LocalFileSystemTest, FolderNamesAreThoseOfTheSubFolders) {
    ASSERT_TRUE(QDir().mkpath(Path("one/below")));
    ASSERT_TRUE(QDir().mkdir(Path("two words")));
    files_->WriteWhole(Path("file"), "x");
    QStringList names = FolderNames(*files_, folder_.path());
    names.sort();
    EXPECT_EQ(names, QStringList({Text("one"), Text("two words")}));
    EXPECT_EQ(FolderNames(*files_, Path("one/below")), QStringList());
    EXPECT_THROW(FolderNames(*files_, Path("none")), FileError);
    EXPECT_THROW(FolderNames(*files_, Path("file")), FileError);
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
    EXPECT_TRUE(files_->Remove(Path("a")));
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

TEST_F(LocalFileSystemTest, NamesInAnyScript) {
    const QString folder = Path("Stra\u00DFe \u65E5\u672C\u8A9E");
    ASSERT_TRUE(QDir().mkdir(folder));
    const QString name = Text("\u041F\u0438\u0441\u044C\u043C\u043E \u2709 \U0001F4E7 e\u0301.EML");
    const QString path = folder + QLatin1Char('/') + name;
    files_->WriteWhole(path, "body");
    EXPECT_TRUE(files_->FolderExists(folder));
    EXPECT_EQ(FileNames(*files_, folder), QStringList{name});
    EXPECT_EQ(files_->Status(path)->size, 4);
    EXPECT_EQ(ReadWhole(*files_, path), "body");
    files_->Move(path, Path("moved"));
    EXPECT_EQ(ReadWhole(*files_, Path("moved")), "body");
    EXPECT_EQ(FileNames(*files_, folder), QStringList());
}

/// Either kind of mark at the start of a text tells some decoders how to read it.
TEST_F(LocalFileSystemTest, NamesThatBeginWithAByteOrderMark) {
    for (const char16_t mark : {u'\uFEFF', u'\uFFFE'}) {
        ASSERT_TRUE(QDir().mkdir(Path("folder")));
        const QString name = QChar(mark) + Text("a.EML");
        const QString path = Path("folder/") + name;
        files_->WriteWhole(path, "body");
        EXPECT_EQ(FileNames(*files_, Path("folder")), QStringList{name});
        EXPECT_EQ(VisibleFileNames(*files_, Path("folder")), QStringList{name});
        EXPECT_EQ(ReadWhole(*files_, path), "body");
        files_->Remove(path);
        ASSERT_TRUE(QDir().rmdir(Path("folder")));
    }
}

/// Windows by itself ends paths at 259 characters.
TEST_F(LocalFileSystemTest, PathOfManyHundredCharacters) {
    QString folder = folder_.path();
    for (int depth = 0; depth < 6; ++depth) {
        folder += QLatin1Char('/') + QString(100, QLatin1Char('f'));
    }
    ASSERT_TRUE(QDir().mkpath(folder));
    const QString path = folder + Text("/a.EML");
    const QString moved = folder + QLatin1Char('/') + QString(200, QLatin1Char('b'));
    files_->WriteWhole(path, "body");
    EXPECT_TRUE(files_->FolderExists(folder));
    EXPECT_EQ(FileNames(*files_, folder), QStringList{Text("a.EML")});
    EXPECT_EQ(ReadWhole(*files_, path), "body");
    files_->Move(path, moved);
    EXPECT_EQ(files_->Status(moved)->size, 4);
    files_->Remove(moved);
    EXPECT_EQ(FileNames(*files_, folder), QStringList());
}

TEST_F(LocalFileSystemTest, RelativePathStartsAtTheCurrentFolder) {
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(folder_.path()));
    files_->WriteWhole(Text("a.EML"), "x");
    EXPECT_TRUE(files_->FileExists(Text("./a.EML")));
    EXPECT_EQ(FileNames(*files_, Text(".")), QStringList{Text("a.EML")});
    ASSERT_TRUE(QDir::setCurrent(before));
    EXPECT_TRUE(files_->FileExists(Path("a.EML")));
}

#ifdef _WIN32

TEST_F(LocalFileSystemTest, BothSeparatorsNameTheSameFile) {
    files_->WriteWhole(Path("a.EML"), "x");
    EXPECT_TRUE(files_->FileExists(QDir::toNativeSeparators(Path("a.EML"))));
    EXPECT_TRUE(files_->FolderExists(QDir::toNativeSeparators(folder_.path()) + QLatin1Char('\\')));
    EXPECT_EQ(FileNames(*files_, QDir::toNativeSeparators(folder_.path()) + QLatin1Char('\\')),
              QStringList{Text("a.EML")});
}

TEST_F(LocalFileSystemTest, NamesOfDevicesAreFiles) {
    for (const char* name : {"NUL.EML", "con", "COM1.EML"}) {
        files_->WriteWhole(Path(name), "body");
        EXPECT_EQ(ReadWhole(*files_, Path(name)), "body") << name;
        EXPECT_EQ(Names(), QStringList{Text(name)});
        files_->Remove(Path(name));
    }
    EXPECT_EQ(Names(), QStringList());
}

TEST_F(LocalFileSystemTest, FolderTellsTheStatusOfItsSettledFiles) {
    const QDateTime anHourAgo = QDateTime::currentDateTime().addSecs(-3600);
    files_->WriteWhole(Path("a.EML"), "body");
    EXPECT_FALSE(files_->Entries(folder_.path()).at(0).status) << "just written";
    ASSERT_TRUE(QDir().mkdir(Path("folder")));
    files_->WriteWhole(Path("empty.EML"), "");
    for (const char* name : {"a.EML", "empty.EML"}) {
        QFile file(Path(name));
        ASSERT_TRUE(file.open(QIODevice::ReadWrite) && file.setFileTime(anHourAgo, QFileDevice::FileModificationTime));
    }
    const std::vector<FolderEntry> entries = files_->Entries(folder_.path());
    ASSERT_EQ(entries.size(), 3U);
    for (const FolderEntry& entry : entries) {
        EXPECT_EQ(entry.kind, entry.name == Text("folder") ? EntryKind::Folder : EntryKind::File);
        ASSERT_EQ(entry.status.has_value(), entry.name == Text("a.EML"));
        if (entry.status) {
            EXPECT_EQ(entry.status->size, 4);
            EXPECT_EQ(entry.status->modifiedNs, files_->Status(Path("a.EML"))->modifiedNs);
        }
    }
}

TEST_F(LocalFileSystemTest, DeviceIsNotOpened) {
    EXPECT_THROW(files_->Open(Text(R"(\\.\NUL)")), FileError);
}

/// Keeps a file open as a program does that allows others only `sharing`.
class OpenElsewhere {
public:
    OpenElsewhere(const QString& path, DWORD access, DWORD sharing)
        : handle_(CreateFileW(QDir::toNativeSeparators(path).toStdWString().c_str(), access, sharing, nullptr,
                              OPEN_EXISTING, 0, nullptr)) {}
    ~OpenElsewhere() { CloseHandle(handle_); }
    OpenElsewhere(const OpenElsewhere&) = delete;
    OpenElsewhere& operator=(const OpenElsewhere&) = delete;

    bool IsOpen() const { return handle_ != INVALID_HANDLE_VALUE; }

private:
    HANDLE handle_;
};

TEST_F(LocalFileSystemTest, FileInUseIsReadButNeitherMovedNorDeleted) {
    files_->WriteWhole(Path("a.EML"), "body");
    {
        const OpenElsewhere other(Path("a.EML"), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE);
        ASSERT_TRUE(other.IsOpen());
        EXPECT_EQ(ReadWhole(*files_, Path("a.EML")), "body");
        EXPECT_EQ(files_->Status(Path("a.EML"))->size, 4);
        try {
            files_->Move(Path("a.EML"), Path("b.EML"));
            FAIL() << "a file in use was moved";
        } catch (const FileError& error) {
            EXPECT_EQ(error.Path(), Path("a.EML"));
            EXPECT_EQ(error.Reason(), qt_error_string(ERROR_SHARING_VIOLATION));
        }
        EXPECT_THROW(files_->Remove(Path("a.EML")), FileError);
        EXPECT_THROW(files_->WriteWhole(Path("a.EML"), "other"), FileError);
        EXPECT_EQ(Names(), QStringList{Text("a.EML")});
    }
    EXPECT_EQ(ReadWhole(*files_, Path("a.EML")), "body");
    files_->Move(Path("a.EML"), Path("b.EML"));
    EXPECT_EQ(Names(), QStringList{Text("b.EML")});
}

TEST_F(LocalFileSystemTest, FileThatNobodyElseMayReadIsAnError) {
    files_->WriteWhole(Path("a.EML"), "body");
    const OpenElsewhere other(Path("a.EML"), GENERIC_READ, 0);
    ASSERT_TRUE(other.IsOpen());
    EXPECT_THROW(files_->Open(Path("a.EML")), FileError);
    EXPECT_TRUE(files_->FileExists(Path("a.EML")));
}

TEST_F(LocalFileSystemTest, OpenFileMayBeDeletedMeanwhile) {
    files_->WriteWhole(Path("a.EML"), "body");
    const std::unique_ptr<InputFile> open = files_->Open(Path("a.EML"));
    files_->Move(Path("a.EML"), Path("b.EML"));
    char buffer[8];
    EXPECT_EQ(open->Read(buffer, 8), 4);
    files_->Remove(Path("b.EML"));
}

TEST_F(LocalFileSystemTest, TimeHasTheResolutionOfTheSystem) {
    files_->WriteWhole(Path("a"), "x");
    const HANDLE file = CreateFileW(QDir::toNativeSeparators(Path("a")).toStdWString().c_str(), FILE_WRITE_ATTRIBUTES,
                                    0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    constexpr quint64 ticks = 116'444'736'000'000'000 + 17'000'000'001'234'567;
    const FILETIME time{static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
    EXPECT_NE(SetFileTime(file, nullptr, nullptr, &time), 0);
    CloseHandle(file);
    EXPECT_EQ(files_->Status(Path("a"))->modifiedNs, 1'700'000'000'123'456'700);
}

#else

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
    for (const char* name : {"folderlink", "dangling"}) {
        EXPECT_FALSE(files_->Remove(Path(name)));
        EXPECT_TRUE(QFileInfo(Path(name)).isSymLink()) << name;
    }
    EXPECT_TRUE(files_->Remove(Path("link")));
    EXPECT_FALSE(QFileInfo(Path("link")).isSymLink());
    EXPECT_EQ(ReadWhole(*files_, Path("sub/real")), "12345");
}

TEST_F(LocalFileSystemTest, FolderNamesLeaveOutHiddenOnesAndKeepLinksToFolders) {
    for (const char* name : {".hidden", "real"}) {
        ASSERT_TRUE(QDir().mkdir(Path(name)));
    }
    files_->WriteWhole(Path("file"), "x");
    ASSERT_EQ(::symlink("real", Native("link").constData()), 0);
    ASSERT_EQ(::symlink("file", Native("filelink").constData()), 0);
    ASSERT_EQ(::symlink("nowhere", Native("dangling").constData()), 0);
    QStringList names = FolderNames(*files_, folder_.path());
    names.sort();
    EXPECT_EQ(names, QStringList({Text("link"), Text("real")}));
}

TEST_F(LocalFileSystemTest, FolderNameThatIsNoUtf8LeadsToItsFolder) {
    const QByteArray native = Native("gr\xFC");
    if (::mkdir(native.constData(), 0700) != 0) {
        GTEST_SKIP() << "the file system takes UTF-8 only";
    }
    ASSERT_EQ(::mkdir((native + "/below").constData(), 0700), 0);
    ASSERT_EQ(FolderNames(*files_, folder_.path()), QStringList{QString::fromUtf16(u"gr\uFFFDFC")});
    const QString path = folder_.path() + QLatin1Char('/') + FolderNames(*files_, folder_.path()).front();
    EXPECT_TRUE(files_->FolderExists(path));
    EXPECT_EQ(FolderNames(*files_, path), QStringList{Text("below")});
    EXPECT_EQ(::rmdir((native + "/below").constData()), 0);
    EXPECT_EQ(::rmdir(native.constData()), 0);
}

TEST_F(LocalFileSystemTest, FolderTellsNamesAlone) {
    files_->WriteWhole(Path("a.EML"), "body");
    const std::vector<FolderEntry> entries = files_->Entries(folder_.path());
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].name, Text("a.EML"));
    EXPECT_EQ(entries[0].status, std::nullopt);
}

TEST_F(LocalFileSystemTest, FolderTellsKindsAndWhatIsHidden) {
    files_->WriteWhole(Path("file"), "x");
    files_->WriteWhole(Path(".hidden"), "x");
    ASSERT_TRUE(QDir().mkdir(Path("folder")));
    ASSERT_EQ(::symlink("file", Native("link").constData()), 0);
    ASSERT_EQ(::mkfifo(Native("fifo").constData(), 0600), 0);
    std::vector<FolderEntry> entries = files_->Entries(folder_.path());
    std::sort(entries.begin(), entries.end(),
              [](const FolderEntry& left, const FolderEntry& right) { return left.name < right.name; });
    ASSERT_EQ(entries.size(), 5U);
    const std::array kinds{EntryKind::File, EntryKind::Other, EntryKind::File, EntryKind::Folder, EntryKind::Unknown};
    for (size_t index = 0; index < kinds.size(); ++index) {
        EXPECT_EQ(entries[index].kind, kinds[index]) << entries[index].name.toStdString();
        EXPECT_EQ(entries[index].hidden, index == 0);
    }
}

TEST_F(LocalFileSystemTest, FifoNeitherBlocksNorCounts) {
    ASSERT_EQ(::mkfifo(Native("fifo").constData(), 0600), 0);
    EXPECT_EQ(files_->Status(Path("fifo")), std::nullopt);
    EXPECT_FALSE(files_->FileExists(Path("fifo")));
    EXPECT_EQ(Names(), QStringList());
    EXPECT_THROW(files_->Open(Path("fifo")), FileError);
    EXPECT_FALSE(files_->Remove(Path("fifo")));
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

#include "platform/FileSystem.h"

#include "platform/RuntimeError.h"
#include "tests/support/MemoryFileSystem.h"
#include "tests/support/RealFiles.h"

#include <QDir>

#include <array>

#ifndef _WIN32
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace quellbox {

namespace {

class FolderReaderTest : public RealFilesTest {
protected:
    std::unique_ptr<FolderReader> Reader() const { return files_->ReadFolder(Path("")); }
};

QByteArray Bytes(InputFile& file) {
    std::array<char, 100> buffer{};
    const qint64 count = file.Read(buffer.data(), buffer.size());
    return QByteArray(buffer.data(), count);
}

TEST_F(FolderReaderTest, TellsAndReadsTheFilesOfItsFolder) {
    files_->WriteWhole(Path("a.EML"), "hello");
    const std::unique_ptr<FolderReader> reader = Reader();
    const std::optional<FileStatus> expected = files_->Status(Path("a.EML"));
    const std::optional<FileStatus> status = reader->Status(Text("a.EML"));
    ASSERT_TRUE(status.has_value());
    EXPECT_EQ(status->size, 5);
    EXPECT_EQ(status->modifiedNs, expected->modifiedNs);
    EXPECT_EQ(Bytes(*reader->Open(Text("a.EML"))), "hello");
}

TEST_F(FolderReaderTest, SaysWhichFileCannotBeOpenedAndWhy) {
    EXPECT_EQ(Reader()->Status(Text("none.EML")), std::nullopt);
    QString expected;
    try {
        files_->Open(Path("none.EML"));
    } catch (const FileError& error) {
        expected = error.Text();
    }
    try {
        Reader()->Open(Text("none.EML"));
        FAIL() << "there is no such file";
    } catch (const FileError& error) {
        EXPECT_EQ(error.Path(), Path("none.EML"));
        EXPECT_EQ(error.Text(), expected);
    }
}

TEST_F(FolderReaderTest, RefusesAFolderThatIsMissingOrNone) {
    files_->WriteWhole(Path("file"), "x");
#ifndef _WIN32 // elsewhere its files are found one by one
    EXPECT_THROW(files_->ReadFolder(Path("none/")), FileError);
    EXPECT_THROW(files_->ReadFolder(Path("file")), FileError);
#endif
}

TEST_F(FolderReaderTest, TellsNothingOfAFolder) {
    ASSERT_TRUE(QDir().mkdir(Path("folder")));
    EXPECT_EQ(Reader()->Status(Text("folder")), std::nullopt);
}

TEST(FolderReader, OfAnyFileSystemFindsFilesByTheirPaths) {
    MemoryFileSystem files;
    files.Add(Text("/mail/a.EML"), "hello", 7);
    const std::unique_ptr<FolderReader> reader = files.ReadFolder(Text("/mail/"));
    EXPECT_EQ(reader->Status(Text("a.EML"))->modifiedNs, 7);
    EXPECT_EQ(Bytes(*reader->Open(Text("a.EML"))), "hello");
    EXPECT_EQ(reader->Status(Text("b.EML")), std::nullopt);
    EXPECT_THROW(reader->Open(Text("b.EML")), FileError);
}

#ifndef _WIN32

TEST_F(FolderReaderTest, StaysWithItsFolderWhenThePathLeadsElsewhere) {
    ASSERT_TRUE(QDir().mkdir(Path("archive")));
    files_->WriteWhole(Path("archive/a.EML"), "first");
    const std::unique_ptr<FolderReader> reader = files_->ReadFolder(Path("archive/"));
    ASSERT_TRUE(QDir().rename(Path("archive"), Path("moved")));
    ASSERT_TRUE(QDir().mkdir(Path("archive")));
    files_->WriteWhole(Path("archive/a.EML"), "other one");
    EXPECT_EQ(reader->Status(Text("a.EML"))->size, 5);
    EXPECT_EQ(Bytes(*reader->Open(Text("a.EML"))), "first");
}

TEST_F(FolderReaderTest, FollowsALinkToAFile) {
    files_->WriteWhole(Path("a.EML"), "hello");
    ASSERT_EQ(::symlink("a.EML", Native("link.EML").constData()), 0);
    EXPECT_EQ(Reader()->Status(Text("link.EML"))->size, 5);
    EXPECT_EQ(Bytes(*Reader()->Open(Text("link.EML"))), "hello");
}

TEST_F(FolderReaderTest, KnowsNamesThatAreNoText) {
    files_->WriteWhole(Path("\xEF\xBF\xBD"
                            "FF.EML"),
                       "hello");
    EXPECT_EQ(NamesIn(folder_.path()), QStringList{Text("\xEF\xBF\xBD"
                                                        "FF.EML")});
    EXPECT_EQ(Bytes(*Reader()->Open(Text("\xEF\xBF\xBD"
                                         "FF.EML"))),
              "hello");
    EXPECT_EQ(Reader()->Status(QString(QChar(0))), std::nullopt);
    EXPECT_THROW(Reader()->Open(QString(QChar(0))), FileError);
}

TEST_F(FolderReaderTest, IsNotHeldUpByWhatTookThePlaceOfAFile) {
    ASSERT_EQ(::mkfifo(Native("fifo").constData(), 0600), 0);
    EXPECT_EQ(Reader()->Status(Text("fifo")), std::nullopt);
    EXPECT_EQ(Bytes(*Reader()->Open(Text("fifo"))), QByteArray());
    ASSERT_TRUE(QDir().mkdir(Path("folder")));
    EXPECT_THROW(Bytes(*Reader()->Open(Text("folder"))), FileError);
}

#endif

} // namespace

} // namespace quellbox

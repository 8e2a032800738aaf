#include "platform/EntryNames.h"

#include "platform/LocalFileSystem.h"
#include "platform/RuntimeError.h"
#include "tests/platform/SystemCalls.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#ifndef _WIN32
#include <sys/stat.h>
#endif

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

class VisibleFileNamesTest : public testing::Test {
protected:
    QString Path(const QString& name) const { return folder_.path() + u'/' + name; }

    void Write(const QString& name) { files_->WriteWhole(Path(name), "x"); }

    QStringList Names() const {
        QStringList names = VisibleFileNames(*files_, folder_.path() + u'/');
        names.sort();
        return names;
    }

    QTemporaryDir folder_;
    std::unique_ptr<FileSystem> files_ = MakeLocalFileSystem();
};

TEST_F(VisibleFileNamesTest, AreThoseOfRegularFiles) {
    Write(u"a.EML"_s);
    Write(u"b"_s);
    ASSERT_TRUE(QDir().mkdir(Path(u"folder.EML"_s)));
    EXPECT_EQ(Names(), QStringList({u"a.EML"_s, u"b"_s}));
}

TEST_F(VisibleFileNamesTest, OfAnEmptyFolderAreNone) {
    EXPECT_EQ(Names(), QStringList());
}

TEST_F(VisibleFileNamesTest, OfAMissingFolderAreAnError) {
    EXPECT_THROW(VisibleFileNames(*files_, Path(u"none"_s)), FileError);
}

#ifndef _WIN32

TEST_F(VisibleFileNamesTest, LeaveOutHiddenFiles) {
    Write(u".a.EML"_s);
    Write(u".EML"_s);
    EXPECT_EQ(Names(), QStringList());
}

TEST_F(VisibleFileNamesTest, FollowLinksToFilesOnly) {
    Write(u"a.EML"_s);
    ASSERT_TRUE(QDir().mkdir(Path(u"folder"_s)));
    ASSERT_TRUE(QFile::link(Path(u"a.EML"_s), Path(u"file.EML"_s)));
    ASSERT_TRUE(QFile::link(Path(u"folder"_s), Path(u"away.EML"_s)));
    ASSERT_TRUE(QFile::link(Path(u"none"_s), Path(u"dangling.EML"_s)));
    ASSERT_EQ(::mkfifo(QFile::encodeName(Path(u"pipe.EML"_s)).constData(), 0600), 0);
    EXPECT_EQ(Names(), QStringList({u"a.EML"_s, u"file.EML"_s}));
}

TEST_F(VisibleFileNamesTest, AskSinglyForLinksOnly) {
    for (const QString& name : {u"a.EML"_s, u"b.EML"_s, u"c.EML"_s}) {
        Write(name);
    }
    ASSERT_TRUE(QDir().mkdir(Path(u"folder"_s)));
    ASSERT_TRUE(QFile::link(Path(u"a.EML"_s), Path(u"link.EML"_s)));
    ASSERT_TRUE(QFile::link(Path(u"a.EML"_s), Path(u".hidden.EML"_s)));
    SystemCalls calls(QFile::encodeName(folder_.path()) + '/');
    EXPECT_EQ(VisibleFileNames(*files_, folder_.path()).size(), 4);
    EXPECT_EQ(calls.TakeCount(), 1);
}

#endif

TEST_F(VisibleFileNamesTest, ACleansingMayDeleteThoseOfMessages) {
    for (const QString& name : {u"a.EML"_s, u"b.eml"_s, u"c.txt"_s, u".d.EML"_s}) {
        Write(name);
    }
    QStringList names = CleansingNames(*files_, Folder(folder_.path()), MessagePlaces());
    names.sort();
    EXPECT_EQ(names, QStringList({u"a.EML"_s, u"b.eml"_s}));
}

TEST(FileName, IsNoPath) {
    for (const QString& name : {u"a.EML"_s, u" "_s, u"..."_s, u".hidden"_s, u"-x"_s, u"Gr\u00fc\u00dfe"_s}) {
        EXPECT_TRUE(IsFileName(name)) << name.toStdString();
    }
    for (const QString& name : {u""_s, u"."_s, u".."_s, u"/"_s, u"a/b"_s, u"../a"_s, u"a/"_s, QString(QChar(0))}) {
        EXPECT_FALSE(IsFileName(name)) << name.toStdString();
    }
#ifdef _WIN32
    for (const QString& name : {u"a\\b"_s, u"C:a"_s, u"a:stream"_s}) {
        EXPECT_FALSE(IsFileName(name)) << name.toStdString();
    }
#else
    EXPECT_TRUE(IsFileName(u"a\\b:c"_s));
#endif
}

} // namespace

} // namespace quellbox

#include "platform/LocalFileSystem.h"
#include "platform/RuntimeError.h"

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

class VisibleFileNames : public testing::Test {
protected:
    QString Path(const QString& name) const { return folder_.path() + u'/' + name; }

    void Write(const QString& name) { files_->WriteWhole(Path(name), "x"); }

    QStringList Names() const {
        QStringList names = files_->VisibleFileNames(folder_.path() + u'/');
        names.sort();
        return names;
    }

    QTemporaryDir folder_;
    std::unique_ptr<FileSystem> files_ = MakeLocalFileSystem();
};

TEST_F(VisibleFileNames, AreThoseOfRegularFiles) {
    Write(u"a.EML"_s);
    Write(u"b"_s);
    ASSERT_TRUE(QDir().mkdir(Path(u"folder.EML"_s)));
    EXPECT_EQ(Names(), QStringList({u"a.EML"_s, u"b"_s}));
}

TEST_F(VisibleFileNames, OfAnEmptyFolderAreNone) {
    EXPECT_EQ(Names(), QStringList());
}

TEST_F(VisibleFileNames, OfAMissingFolderAreAnError) {
    EXPECT_THROW(files_->VisibleFileNames(Path(u"none"_s)), FileError);
}

#ifndef _WIN32

TEST_F(VisibleFileNames, LeaveOutHiddenFiles) {
    Write(u".a.EML"_s);
    Write(u".EML"_s);
    EXPECT_EQ(Names(), QStringList());
}

TEST_F(VisibleFileNames, FollowLinksToFilesOnly) {
    Write(u"a.EML"_s);
    ASSERT_TRUE(QDir().mkdir(Path(u"folder"_s)));
    ASSERT_TRUE(QFile::link(Path(u"a.EML"_s), Path(u"file.EML"_s)));
    ASSERT_TRUE(QFile::link(Path(u"folder"_s), Path(u"away.EML"_s)));
    ASSERT_TRUE(QFile::link(Path(u"none"_s), Path(u"dangling.EML"_s)));
    ASSERT_EQ(::mkfifo(QFile::encodeName(Path(u"pipe.EML"_s)).constData(), 0600), 0);
    EXPECT_EQ(Names(), QStringList({u"a.EML"_s, u"file.EML"_s}));
}

#endif

} // namespace

} // namespace quellbox

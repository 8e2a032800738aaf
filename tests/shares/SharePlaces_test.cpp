#include "tests/shares/ShareFixture.h"

#include "dialogs/FolderList.h"
#include "dialogs/PickupTest.h"

namespace quellbox {

/// How the user comes to a folder on a share.
class SharePlaces : public ShareTest {
protected:
    /// Opens folder after folder in the directory list, from `start` to `folder` below it.
    static QString GoDown(const FileSystem& files, const QString& start, const QString& folder) {
        FolderList list = ListFolder(files, start);
        for (int opened = 0; opened < 20 && list.Path(list.Opened()) + u'/' != folder; ++opened) {
            int next = -1;
            for (int entry = list.Opened() + 1; entry < list.Count(); ++entry) {
                next = folder.startsWith(list.Path(entry) + u'/') ? entry : next;
            }
            if (next < 0) {
                break;
            }
            list = ListFolder(files, list.Path(next));
        }
        return list.Path(list.Opened()) + u'/';
    }
};

TEST_P(SharePlaces, AFolderIsFoundByTheLists) {
    const std::vector<Volume> volumes = volumes_->Mounted();
    const int volume = VolumeOf(volumes, Mounted("archive"));
    ASSERT_GE(volume, 0);
    EXPECT_EQ(volumes[static_cast<size_t>(volume)].kind, VolumeKind::Network);
    const FolderList first = ListFirstFolder(*files_, volumes, Mounted("archive"), QStringLiteral("/"));
    EXPECT_EQ(first.Path(first.Opened()) + u'/', Mounted("archive"));
    // smbnetfs shows no server before somebody has asked for it by name.
    const QString share = world_.Mount().Folder(QStringLiteral("archive"));
    EXPECT_EQ(GoDown(*files_, share, Mounted("archive")), Mounted("archive"));
}

TEST_P(SharePlaces, TheSharesOfTheDesktopAreADrive) {
    if (world_.Mount().RuntimeFolder().isEmpty()) {
        GTEST_SKIP() << "only the desktop's client shows its shares in the folder of a session";
    }
    const std::vector<Volume> volumes = volumes_->Mounted();
    const int index = VolumeOf(volumes, Mounted("archive"));
    ASSERT_GE(index, 0);
    const Volume& volume = volumes[static_cast<size_t>(index)];
    EXPECT_EQ(volume.root, world_.Mount().RuntimeFolder() + QStringLiteral("/gvfs"));
    EXPECT_EQ(volume.name, QStringLiteral("Shares opened in the file manager"));
    EXPECT_EQ(GoDown(*files_, volume.root, Mounted("archive")), Mounted("archive"));
}

TEST_P(SharePlaces, AFolderIsFoundByItsNameOnTheNetwork) {
    EXPECT_EQ(volumes_->Resolve(Unc("archive")).toStdString(), Mounted("archive").toStdString());
    EXPECT_TRUE(files_->FolderExists(Unc("archive")));
    EXPECT_FALSE(files_->FolderExists(Unc("archive") + QStringLiteral("missing\\")));
}

TEST_P(SharePlaces, TheProgramWorksWithNamesOnTheNetwork) {
    Use(Unc("archive"), Unc("pickup"));
    ASSERT_NO_FATAL_FAILURE(DeliverMany(Behind("archive"), 4));
    EXPECT_EQ(Refresh().outcome, RefreshOutcome::Completed);
    ASSERT_EQ(model_.Count(), 4);
    EXPECT_EQ(Reasons(Dispose(Action::unblock, {0, 1}).failures), "");
    EXPECT_EQ(Reasons(Dispose(Action::remove, {0}).failures), "");
    ExpectExactly(Behind("archive"), {QStringLiteral("00003.EML")});
    ExpectExactly(Behind("pickup"), {QStringLiteral("00000.EML"), QStringLiteral("00001.EML")});
    WritePickupTest(*files_, QStringLiteral("joe"), state_.PickupDir, QStringLiteral("now"));
    EXPECT_TRUE(QFile::exists(Behind("pickup") + QStringLiteral("quellbox.eml")));
    EXPECT_EQ(Cleanse(0).count, 1);
    ExpectExactly(Behind("archive"), {});
}

TEST_P(SharePlaces, AFolderOfAnyNameIsFoundByItsNameOnTheNetwork) {
    QStringList names{QStringLiteral("100 % @home"), QStringLiteral("%41%40%zz")};
    for (const QChar character : NameCharacters()) {
        names += QStringLiteral("x%1%2y").arg(names.size()).arg(character);
    }
    for (const QString& name : names) {
        ASSERT_TRUE(QDir(Behind("archive")).mkdir(name));
        ASSERT_NO_FATAL_FAILURE(Deliver(Behind("archive") + name + u'/', QStringLiteral("a.EML")));
        const QString folder = Unc("archive") + name + u'\\';
        EXPECT_TRUE(files_->FolderExists(folder)) << name.toStdString();
        EXPECT_TRUE(files_->FileExists(folder + QStringLiteral("a.EML"))) << name.toStdString();
    }
}

TEST_P(SharePlaces, TheProgramWorksInFoldersOfAnyName) {
    const QString archive = QStringLiteral("100 % of a@b");
    const QString pickup = QStringLiteral("%40@%");
    ASSERT_TRUE(QDir(Behind("archive")).mkdir(archive) && QDir(Behind("pickup")).mkdir(pickup));
    const QStringList names{QStringLiteral("x%40@y.EML"), QStringLiteral("50%.EML"), QStringLiteral("z.EML")};
    for (const QString& name : names) {
        ASSERT_NO_FATAL_FAILURE(Deliver(Behind("archive") + archive + u'/', name));
    }
    Use(Unc("archive") + archive + u'\\', Unc("pickup") + pickup + u'\\');
    EXPECT_EQ(Refresh().outcome, RefreshOutcome::Completed);
    ASSERT_EQ(model_.Count(), 3);
    const QString shown = volumes_->Resolve(state_.ArchiveDir.PathOf(Keys().front()));
    EXPECT_TRUE(QFile::exists(shown)) << shown.toStdString();
    EXPECT_EQ(Reasons(Dispose(Action::unblock, {0, 1}).failures), "");
    EXPECT_EQ(Reasons(Dispose(Action::remove, {0}).failures), "");
    ExpectExactly(Behind("archive") + archive + u'/', {});
    ExpectExactly(Behind("pickup") + pickup + u'/', names.first(2));
}

QUELLBOX_ON_EACH_CLIENT(SharePlaces);

} // namespace quellbox

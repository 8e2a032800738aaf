#ifndef _WIN32

#include "tests/support/SettingsStoreFixture.h"
#include "whitelist/WhitelistStore.h"

#include <QDateTime>

namespace quellbox {

namespace {

TEST_F(SettingsStoreTest, FileLiesInTheFolderOfConfigurations) {
    const auto store = Open();
    store->SetValue(Text("Settings"), Text("Key"), Text("value"));
    store->Flush();
    EXPECT_TRUE(QFileInfo::exists(FilePath()));
}

TEST_F(SettingsStoreTest, KeysThatDifferInCaseAreTwo) {
    const auto store = Open();
    store->SetValue(Text("Settings"), Text("key"), Text("1"));
    store->SetValue(Text("Settings"), Text("KEY"), Text("2"));
    store->Flush();
    EXPECT_EQ(Open()->Value(Text("Settings"), Text("key")), Text("1"));
    EXPECT_EQ(Open()->Value(Text("Settings"), Text("KEY")), Text("2"));
}

TEST_F(SettingsStoreTest, NulIsACharacterAsAnyOther) {
    const QString text = Text("a") + QChar(QChar::Null) + Text("b");
    const auto store = Open();
    store->SetValue(Text("Settings"), text, text);
    store->Flush();
    EXPECT_EQ(Open()->Keys(Text("Settings")), QStringList{text});
    EXPECT_EQ(Open()->Value(Text("Settings"), text), text);
}

TEST_F(SettingsStoreTest, SectionMayHoldABackslash) {
    const auto store = Open();
    store->SetValue(Text("a\\b"), Text("Key"), Text("value"));
    store->RemoveSection(Text("a"));
    store->Flush();
    EXPECT_EQ(Open()->Keys(Text("a\\b")), QStringList{Text("Key")});
}

TEST_F(SettingsStoreTest, UnquotedCommasOfAHandEditedFileAreText) {
    WriteByHand("[Settings]\nArchiveDir=/mail/a,b,c/\n");
    EXPECT_EQ(Open()->Value(Text("Settings"), Text("ArchiveDir")), Text("/mail/a,b,c/"));
}

TEST_F(SettingsStoreTest, LineOfTheFileWithoutKeyIsNoKey) {
    WriteByHand("[Tolerate]\n=0\n@example.com=0\n=1\n");
    EXPECT_EQ(Open()->Keys(Text("Tolerate")), QStringList{Text("@example.com")});
    EXPECT_EQ(Open()->Value(Text("Tolerate"), Text("")), std::nullopt);
}

TEST_F(SettingsStoreTest, PendingValuesAreWrittenWithTheNextFlush) {
    MakeUnwritable();
    const auto store = Open();
    store->SetValue(Text("Settings"), Text("Key"), Text("value"));
    EXPECT_TRUE(Reason(*store));
    EXPECT_TRUE(Reason(*store)); // still pending
    MakeWritable();
    EXPECT_EQ(Reason(*store), std::nullopt);
    QFile file(FilePath());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(file.readAll().contains("Key=value"));
}

/// A file of settings of which lines cannot be understood.
class BrokenSettings : public SettingsStoreTest {
protected:
    QFileInfoList Kept() const { return QFileInfo(FilePath()).dir().entryInfoList({Text("settings.ini.*.broken")}); }

    QByteArray KeptContents() const {
        const QFileInfoList kept = Kept();
        QFile copy(kept.isEmpty() ? QString() : kept.front().filePath());
        return copy.open(QIODevice::ReadOnly) ? copy.readAll() : QByteArray();
    }

    /// Looks whether the file was kept, and whether that is told once.
    void ExpectKeptAndTold(SettingsStore& store) const {
        EXPECT_EQ(KeptContents(), broken_);
        ASSERT_EQ(Kept().size(), 1);
        const QStringList warnings = store.TakeWarnings();
        ASSERT_EQ(warnings.size(), 1);
        EXPECT_TRUE(warnings.front().contains(Kept().front().filePath())) << warnings.front().toStdString();
        EXPECT_EQ(store.TakeWarnings(), QStringList());
    }

    const QByteArray broken_ = "[Settings]\nKey=value\nnonsense\n[Tolerate]\n@example.com=0\n";
};

TEST_F(BrokenSettings, AreKeptAndToldOnceAndNoFailedSave) {
    WriteByHand(broken_);
    const auto store = Open();
    ExpectKeptAndTold(*store);
    EXPECT_EQ(store->Value(Text("Settings"), Text("Key")), Text("value"));
    EXPECT_EQ(store->Keys(Text("Tolerate")), QStringList{Text("@example.com")});
    store->SetValue(Text("Settings"), Text("Other"), Text("1"));
    EXPECT_EQ(Reason(*store), std::nullopt);
    EXPECT_EQ(Reason(*store), std::nullopt);
    EXPECT_EQ(store->TakeWarnings(), QStringList());
    const auto again = Open();
    EXPECT_EQ(again->TakeWarnings(), QStringList());
    EXPECT_EQ(again->Value(Text("Settings"), Text("Key")), Text("value"));
    EXPECT_EQ(again->Value(Text("Settings"), Text("Other")), Text("1"));
    EXPECT_EQ(Kept().size(), 1);
}

TEST_F(BrokenSettings, ThatNothingIsStoredInAreKeptOnlyOnce) {
    WriteByHand(broken_);
    const auto store = Open();
    EXPECT_EQ(Reason(*store), std::nullopt);
    EXPECT_EQ(Reason(*store), std::nullopt);
    ExpectKeptAndTold(*store);
}

TEST_F(BrokenSettings, AreToldAtEachStartButKeptOnceWhileNothingIsStored) {
    for (const int minute : {0, 1, 2}) {
        WriteByHand(broken_);
        QFile file(FilePath());
        // Of another time, so that it is read again as by a program that has just been started.
        ASSERT_TRUE(
            file.open(QIODevice::ReadWrite) &&
            file.setFileTime(QDateTime::currentDateTime().addSecs(-60 * minute), QFileDevice::FileModificationTime));
        file.close();
        ExpectKeptAndTold(*Open());
    }
}

TEST_F(BrokenSettings, WithoutALineThatCanBeUnderstoodAreKept) {
    WriteByHand("[Settings\nKey=value\n=\n");
    const auto store = Open();
    EXPECT_EQ(KeptContents(), QByteArray("[Settings\nKey=value\n=\n"));
    EXPECT_EQ(store->TakeWarnings().size(), 1);
    WriteByHand("[Settings]\nKey=corrected\n");
    store->SetValue(Text("Settings"), Text("Other"), Text("1"));
    EXPECT_EQ(Reason(*store), std::nullopt);
    EXPECT_EQ(Open()->Value(Text("Settings"), Text("Key")), Text("corrected"));
    EXPECT_EQ(Open()->Value(Text("Settings"), Text("Other")), Text("1"));
}

TEST_F(BrokenSettings, ThatBecameSoMeanwhileAreKeptAndToldAndNoFailedSave) {
    const auto store = Open();
    store->SetValue(Text("Settings"), Text("Key"), Text("old"));
    EXPECT_EQ(Reason(*store), std::nullopt);
    EXPECT_EQ(store->TakeWarnings(), QStringList());
    WriteByHand(broken_);
    store->SetValue(Text("Settings"), Text("Other"), Text("1"));
    EXPECT_EQ(Reason(*store), std::nullopt);
    ExpectKeptAndTold(*store);
    EXPECT_EQ(store->Value(Text("Settings"), Text("Key")), Text("value"));
    EXPECT_EQ(Open()->Value(Text("Settings"), Text("Key")), Text("value"));
    EXPECT_EQ(Open()->Value(Text("Settings"), Text("Other")), Text("1"));
}

TEST_F(BrokenSettings, AreKeptWhenTheEventLoopStores) {
    const auto store = Open();
    store->SetValue(Text("Settings"), Text("Other"), Text("1"));
    WriteByHand(broken_);
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    EXPECT_EQ(Open()->Value(Text("Settings"), Text("Other")), Text("1"));
    ExpectKeptAndTold(*store);
}

TEST_F(BrokenSettings, AreKeptWhenTheEndOfTheStoreStores) {
    auto store = Open();
    store->SetValue(Text("Settings"), Text("Other"), Text("1"));
    WriteByHand(broken_);
    store.reset();
    EXPECT_EQ(KeptContents(), broken_);
    EXPECT_EQ(Open()->Value(Text("Settings"), Text("Other")), Text("1"));
}

TEST_F(BrokenSettings, InAFolderThatTakesNoFileAreToldAndTheSaveFails) {
    WriteByHand(broken_);
    const QString folder = QFileInfo(FilePath()).path();
    ASSERT_TRUE(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner));
    const bool isRefused = !QFile(folder + Text("/probe")).open(QIODevice::WriteOnly);
    if (isRefused) {
        const auto store = Open();
        const QStringList warnings = store->TakeWarnings();
        ASSERT_EQ(warnings.size(), 1);
        EXPECT_TRUE(warnings.front().contains(FilePath() + Text(","))) << warnings.front().toStdString();
        store->SetValue(Text("Settings"), Text("Other"), Text("1"));
        EXPECT_TRUE(Reason(*store));
    }
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    if (!isRefused) {
        GTEST_SKIP() << "this user may write everywhere";
    }
}

TEST_F(BrokenSettings, TakeAWhitelistWithItsFirstSave) {
    WriteByHand(broken_);
    const auto store = Open();
    EXPECT_EQ(SaveWhitelist(*store, {Text("a@example.com")}), QStringList());
    EXPECT_EQ(LoadWhitelist(*Open()), QStringList{Text("a@example.com")});
}

} // namespace

} // namespace quellbox

#endif

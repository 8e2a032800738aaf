#ifndef _WIN32

#include "tests/support/SettingsStoreFixture.h"

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

TEST_F(SettingsStoreTest, FileThatIsNoSettingsFileIsKeptAndSaysSoOnce) {
    const QByteArray broken = "[Settings\nKey=value\n=\n";
    WriteByHand(broken);
    const auto store = Open();
    const QFileInfoList kept = QFileInfo(FilePath()).dir().entryInfoList({Text("settings.ini.*.broken")});
    ASSERT_EQ(kept.size(), 1);
    QFile copy(kept.front().filePath());
    ASSERT_TRUE(copy.open(QIODevice::ReadOnly));
    EXPECT_EQ(copy.readAll(), broken);
    EXPECT_THROW(store->Flush(), FileError);
    WriteByHand("[Settings]\nKey=corrected\n");
    store->SetValue(Text("Settings"), Text("Other"), Text("1"));
    EXPECT_EQ(Reason(*store), std::nullopt);
    EXPECT_EQ(Open()->Value(Text("Settings"), Text("Key")), Text("corrected"));
    EXPECT_EQ(Open()->Value(Text("Settings"), Text("Other")), Text("1"));
}

} // namespace

} // namespace quellbox

#endif

#include "platform/RuntimeError.h"
#include "platform/SettingsStore.h"
#include "tests/support/RealFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>

namespace quellbox {

namespace {

#ifndef _WIN32

/// Gives every test a configuration folder of its own.
class SettingsStoreTest : public testing::Test {
protected:
    QString FilePath(const char* application) const {
        return folder_.path() + QLatin1Char('/') + Text(application) + Text("/settings.ini");
    }

    void WriteByHand(const char* application, const QByteArray& bytes) {
        ASSERT_TRUE(QDir().mkpath(QFileInfo(FilePath(application)).path()));
        QFile file(FilePath(application));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    QTemporaryDir folder_;

private:
    ChangedVariable configuration_{"XDG_CONFIG_HOME", folder_.path().toUtf8()};
};

TEST_F(SettingsStoreTest, AbsentKeyDiffersFromEmptyText) {
    const auto store = OpenSettingsStore(Text("app"));
    store->SetValue(Text("Settings"), Text("Empty"), Text(""));
    EXPECT_EQ(store->Value(Text("Settings"), Text("Empty")), Text(""));
    EXPECT_EQ(store->Value(Text("Settings"), Text("Absent")), std::nullopt);
    EXPECT_EQ(store->Value(Text("Other"), Text("Empty")), std::nullopt);
}

TEST_F(SettingsStoreTest, ValuesComeBackAfterReopening) {
    const std::vector<QString> values{
        Text(""),     Text("plain"),    Text("a, b; c"),        Text("\"quoted\""), Text("@Invalid()"),
        Text("@"),    Text(" blanks "), Text("C:\\New\\table"), Text("two\nlines"), Text("Gr\u00FC\u00DFe"),
        Text("100%"), Text("key=value")};
    {
        const auto store = OpenSettingsStore(Text("app"));
        for (size_t index = 0; index < values.size(); ++index) {
            store->SetValue(Text("Settings"), QString::number(index), values[index]);
        }
        store->Flush();
    }
    const auto store = OpenSettingsStore(Text("app"));
    for (size_t index = 0; index < values.size(); ++index) {
        EXPECT_EQ(store->Value(Text("Settings"), QString::number(index)), values[index]);
    }
}

TEST_F(SettingsStoreTest, KeysComeBackAfterReopening) {
    const QStringList keys{Text("joe@example.com"), Text("a/b"),   Text("a\\b"), Text("/"),
                           Text("\\\\x"),           Text("%2F"),   Text("%"),    Text(""),
                           Text("a b=c"),           Text("[x]"),   Text(";x"),   Text("%252F"),
                           Text("Gr\u00FC\u00DFe"), Text("@Bulk"), Text("A/B")};
    for (const char* section : {"Whitelist", "General", "One/Two"}) {
        {
            const auto store = OpenSettingsStore(Text("app"));
            for (const QString& key : keys) {
                store->SetValue(Text(section), key, key);
            }
            store->Flush();
        }
        const auto store = OpenSettingsStore(Text("app"));
        for (const QString& key : keys) {
            EXPECT_EQ(store->Value(Text(section), key), key);
        }
        QStringList found = store->Keys(Text(section));
        QStringList expected = keys;
        found.sort();
        expected.sort();
        EXPECT_EQ(found, expected) << section;
    }
}

TEST_F(SettingsStoreTest, UnquotedCommasOfAHandEditedFileAreText) {
    WriteByHand("app", "[Settings]\nArchiveDir=/mail/a,b,c/\n");
    EXPECT_EQ(OpenSettingsStore(Text("app"))->Value(Text("Settings"), Text("ArchiveDir")), Text("/mail/a,b,c/"));
}

TEST_F(SettingsStoreTest, RemovedSectionIsGoneAndOthersStay) {
    const auto store = OpenSettingsStore(Text("app"));
    store->SetValue(Text("List"), Text("a"), Text("1"));
    store->SetValue(Text("Lists"), Text("b"), Text("2"));
    store->RemoveSection(Text("List"));
    store->RemoveSection(Text("Never"));
    store->Flush();
    EXPECT_EQ(store->Keys(Text("List")), QStringList());
    EXPECT_EQ(store->Keys(Text("Lists")), QStringList{Text("b")});
}

TEST_F(SettingsStoreTest, AnotherNameStartsAfresh) {
    const auto store = OpenSettingsStore(Text("app"));
    store->SetValue(Text("Settings"), Text("Key"), Text("value"));
    store->Flush();
    EXPECT_TRUE(QFileInfo::exists(FilePath("app")));
    EXPECT_EQ(OpenSettingsStore(Text("renamed"))->Value(Text("Settings"), Text("Key")), std::nullopt);
}

TEST_F(SettingsStoreTest, UnwritableStoreSaysSoOnlyWhenFlushed) {
    QFile obstacle(folder_.path() + Text("/app"));
    ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
    const auto store = OpenSettingsStore(Text("app"));
    EXPECT_EQ(store->Value(Text("Settings"), Text("Key")), std::nullopt);
    store->SetValue(Text("Settings"), Text("Key"), Text("value"));
    try {
        store->Flush();
        FAIL() << "the store was written";
    } catch (const FileError& error) {
        EXPECT_EQ(error.Path(), FilePath("app"));
        EXPECT_FALSE(error.Reason().isEmpty());
    }
}

TEST_F(SettingsStoreTest, FileThatIsNoSettingsFileSaysSo) {
    WriteByHand("app", "[Settings\nKey=value\n=\n");
    EXPECT_THROW(OpenSettingsStore(Text("app"))->Flush(), FileError);
}

#else

QString Text(const char* text) {
    return QString::fromUtf8(text);
}

/// Gives every test a key of its own in the registry.
class SettingsStoreTest : public testing::Test {
protected:
    void TearDown() override {
        QSettings software(Text(R"(HKEY_CURRENT_USER\Software)"), QSettings::NativeFormat);
        software.remove(Text("quellbox-test"));
        software.remove(Text("quellbox-test2"));
    }

    static std::unique_ptr<SettingsStore> Open() { return OpenSettingsStore(Text("quellbox-test")); }
};

TEST_F(SettingsStoreTest, ValueIsATextInTheRegistryUnderProgramSectionAndKey) {
    const auto store = Open();
    store->SetValue(Text("Settings"), Text("ArchiveDir"), Text("C:\\mail\\"));
    store->Flush();
    const QSettings registry(Text(R"(HKEY_CURRENT_USER\Software\quellbox-test\Settings)"), QSettings::NativeFormat);
    EXPECT_EQ(registry.value(Text("ArchiveDir")).typeId(), QMetaType::QString);
    EXPECT_EQ(registry.value(Text("ArchiveDir")).toString(), Text("C:\\mail\\"));
}

TEST_F(SettingsStoreTest, NumberThatSomebodyTypedAsOneIsReadAsText) {
    QSettings registry(Text(R"(HKEY_CURRENT_USER\Software\quellbox-test\Settings)"), QSettings::NativeFormat);
    registry.setValue(Text("FilterDays"), 7);
    registry.sync();
    EXPECT_EQ(Open()->Value(Text("Settings"), Text("FilterDays")), Text("7"));
}

TEST_F(SettingsStoreTest, AbsentKeyDiffersFromEmptyText) {
    const auto store = Open();
    store->SetValue(Text("Settings"), Text("Empty"), Text(""));
    EXPECT_EQ(store->Value(Text("Settings"), Text("Empty")), Text(""));
    EXPECT_EQ(store->Value(Text("Settings"), Text("Absent")), std::nullopt);
    EXPECT_EQ(store->Value(Text("Other"), Text("Empty")), std::nullopt);
}

TEST_F(SettingsStoreTest, ValuesComeBackAfterReopening) {
    const QStringList values{Text(""),
                             Text("plain"),
                             Text("a, b; c"),
                             Text("\"quoted\""),
                             Text("@Invalid()"),
                             Text("@"),
                             Text(" blanks "),
                             Text("C:\\New\\table"),
                             Text("two\nlines"),
                             Text("Gr\u00FC\u00DFe"),
                             Text("100%"),
                             Text("key=value"),
                             QString(5000, QLatin1Char('x'))};
    {
        const auto store = Open();
        for (qsizetype index = 0; index < values.size(); ++index) {
            store->SetValue(Text("Settings"), QString::number(index), values[index]);
        }
        store->Flush();
    }
    const auto store = Open();
    for (qsizetype index = 0; index < values.size(); ++index) {
        EXPECT_EQ(store->Value(Text("Settings"), QString::number(index)), values[index]);
    }
}

TEST_F(SettingsStoreTest, KeysComeBackAfterReopening) {
    // The registry takes keys that differ in upper and lower case for the same.
    QStringList keys{Text("joe@example.com"),
                     Text("a/b"),
                     Text("a\\b"),
                     Text("/"),
                     Text("\\\\x"),
                     Text("%2F"),
                     Text("%"),
                     Text(""),
                     Text("a b=c"),
                     Text("[x]"),
                     Text(";x"),
                     Text("%252F"),
                     Text("Gr\u00FC\u00DFe"),
                     Text("@Bulk"),
                     QString(200, QLatin1Char('k'))};
    keys.sort();
    for (const char* section : {"Whitelist", "General", "One/Two"}) {
        {
            const auto store = Open();
            for (const QString& key : keys) {
                store->SetValue(Text(section), key, key);
            }
            store->Flush();
        }
        const auto store = Open();
        for (const QString& key : keys) {
            EXPECT_EQ(store->Value(Text(section), key), key);
        }
        QStringList found = store->Keys(Text(section));
        found.sort();
        EXPECT_EQ(found, keys) << section;
    }
}

TEST_F(SettingsStoreTest, RemovedSectionIsGoneAndOthersStay) {
    const auto store = Open();
    store->SetValue(Text("List"), Text("a"), Text("1"));
    store->SetValue(Text("Lists"), Text("b"), Text("2"));
    store->RemoveSection(Text("List"));
    store->RemoveSection(Text("Never"));
    store->Flush();
    EXPECT_EQ(Open()->Keys(Text("List")), QStringList());
    EXPECT_EQ(Open()->Keys(Text("Lists")), QStringList{Text("b")});
}

TEST_F(SettingsStoreTest, AnotherNameStartsAfresh) {
    const auto store = Open();
    store->SetValue(Text("Settings"), Text("Key"), Text("value"));
    store->Flush();
    EXPECT_EQ(OpenSettingsStore(Text("quellbox-test2"))->Value(Text("Settings"), Text("Key")), std::nullopt);
}

#endif

} // namespace

} // namespace quellbox

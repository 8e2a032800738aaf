#include "tests/support/SettingsStoreFixture.h"

namespace quellbox {

namespace {

TEST_F(SettingsStoreTest, AbsentKeyDiffersFromEmptyText) {
    const auto store = Open();
    store->SetValue(Text("Settings"), Text("Empty"), Text(""));
    EXPECT_EQ(store->Value(Text("Settings"), Text("Empty")), Text(""));
    EXPECT_EQ(store->Value(Text("Settings"), Text("Absent")), std::nullopt);
    EXPECT_EQ(store->Value(Text("Other"), Text("Empty")), std::nullopt);
    EXPECT_EQ(store->Keys(Text("Other")), QStringList());
}

TEST_F(SettingsStoreTest, ValuesComeBackAfterReopening) {
    const QStringList values{Text(""),
                             Text("plain"),
                             Text("a, b; c"),
                             Text("\"quoted\""),
                             Text("@Invalid()"),
                             Text("@"),
                             Text("@example.com"),
                             Text("@@x"),
                             Text(" blanks "),
                             Text("C:\\New\\table"),
                             Text("C:\\mail\\"),
                             Text("%PATH%"),
                             Text("two\nlines"),
                             Text("Gr\u00FC\u00DFe"),
                             Text("100%"),
                             Text("key=value"),
                             Text("\uFEFFmark"),
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
    QStringList keys{Text("joe@example.com"),
                     Text("a/b"),
                     Text("a\\b"),
                     Text("/"),
                     Text("\\"),
                     Text("\\\\x"),
                     Text("%2F"),
                     Text("%"),
                     Text("."),
                     Text("a b=c"),
                     Text("[x]"),
                     Text(";x"),
                     Text("%252F"),
                     Text("Gr\u00FC\u00DFe"),
                     Text("\uFEFFmark"),
                     Text("@Bulk"),
                     Text("@"),
                     Text("Default"),
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

TEST_F(SettingsStoreTest, EmptyKeyIsRefused) {
    const auto store = Open();
    store->SetValue(Text("Tolerate"), Text(""), Text("0"));
    store->SetValue(Text("Tolerate"), Text("@example.com"), Text("0"));
    EXPECT_EQ(store->Keys(Text("Tolerate")), QStringList{Text("@example.com")});
    EXPECT_EQ(store->Value(Text("Tolerate"), Text("")), std::nullopt);
    EXPECT_TRUE(Reason(*store));
    EXPECT_EQ(Reason(*store), std::nullopt);
    EXPECT_EQ(Open()->Keys(Text("Tolerate")), QStringList{Text("@example.com")});
}

TEST_F(SettingsStoreTest, EmptySectionIsRefused) {
    const auto store = Open();
    store->SetValue(Text("Settings"), Text("Key"), Text("value"));
    store->SetValue(Text(""), Text("Key"), Text("other"));
    EXPECT_TRUE(Reason(*store));
    EXPECT_EQ(store->Value(Text(""), Text("Key")), std::nullopt);
    EXPECT_EQ(store->Keys(Text("")), QStringList());

    store->RemoveSection(Text(""));
    EXPECT_TRUE(Reason(*store));
    EXPECT_EQ(Reason(*store), std::nullopt);
    EXPECT_EQ(Open()->Value(Text("Settings"), Text("Key")), Text("value"));
}

TEST_F(SettingsStoreTest, RemovedSectionIsGoneAndOthersStay) {
    const auto store = Open();
    store->SetValue(Text("List"), Text("a"), Text("1"));
    store->SetValue(Text("Lists"), Text("b"), Text("2"));
    store->RemoveSection(Text("List"));
    store->Flush();
    EXPECT_EQ(Open()->Keys(Text("List")), QStringList());
    EXPECT_EQ(Open()->Value(Text("List"), Text("a")), std::nullopt);
    EXPECT_EQ(Open()->Keys(Text("Lists")), QStringList{Text("b")});

    store->SetValue(Text("List"), Text("c"), Text("3"));
    store->Flush();
    EXPECT_EQ(Open()->Keys(Text("List")), QStringList{Text("c")});
}

TEST_F(SettingsStoreTest, SectionThatIsAbsentCanBeRemoved) {
    const auto store = Open();
    store->RemoveSection(Text("Never")); // with nothing stored at all
    EXPECT_EQ(Reason(*store), std::nullopt);
    store->SetValue(Text("List"), Text("a"), Text("1"));
    store->RemoveSection(Text("Never"));
    EXPECT_EQ(Reason(*store), std::nullopt);
    EXPECT_EQ(Open()->Keys(Text("List")), QStringList{Text("a")});
}

TEST_F(SettingsStoreTest, AnotherNameStartsAfresh) {
    const auto store = Open();
    store->SetValue(Text("Settings"), Text("Key"), Text("value"));
    store->Flush();
    EXPECT_EQ(OpenSettingsStore(name_ + Text("2"))->Value(Text("Settings"), Text("Key")), std::nullopt);
}

TEST_F(SettingsStoreTest, UnwritableStoreSaysSoOnlyWhenFlushed) {
    MakeUnwritable();
    const auto store = Open();
    EXPECT_EQ(store->Value(Text("Settings"), Text("Key")), std::nullopt);
    store->SetValue(Text("Settings"), Text("Key"), Text("value"));
    try {
        store->Flush();
        FAIL() << "the store was written";
    } catch (const FileError& error) {
        EXPECT_EQ(error.Path(), ErrorPath());
        EXPECT_TRUE(error.Reason().startsWith(Text("The settings cannot be written. ")))
            << error.Reason().toStdString();
    }
}

TEST_F(SettingsStoreTest, StoreThatCanBeWrittenAgainIsWritten) {
    MakeUnwritable();
    const auto store = Open();
    store->SetValue(Text("Settings"), Text("Key"), Text("value"));
    EXPECT_TRUE(Reason(*store));
    MakeWritable();
    store->SetValue(Text("Settings"), Text("Key"), Text("new value"));
    EXPECT_EQ(Reason(*store), std::nullopt);
    EXPECT_EQ(Open()->Value(Text("Settings"), Text("Key")), Text("new value"));
}

} // namespace

} // namespace quellbox

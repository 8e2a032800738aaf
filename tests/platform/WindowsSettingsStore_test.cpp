#ifdef _WIN32

#include "tests/support/SettingsStoreFixture.h"
#include "whitelist/WhitelistStore.h"

#include <string>
#include <string_view>

namespace quellbox {

namespace {

using namespace std::string_view_literals;

QString Units(std::wstring_view text) {
    return QString::fromWCharArray(text.data(), static_cast<qsizetype>(text.size()));
}

QByteArray Bytes(std::wstring_view text) {
    return {reinterpret_cast<const char*>(text.data()), static_cast<qsizetype>(text.size() * sizeof(wchar_t))};
}

/// Looks at the registry, and changes it, as other programs do.
class WindowsSettingsStoreTest : public SettingsStoreTest {
protected:
    ~WindowsSettingsStoreTest() override {
        if (key_ != nullptr) {
            RegCloseKey(key_);
        }
    }

    /// The key of section "Settings".
    HKEY Key() {
        if (key_ == nullptr) {
            EXPECT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, Wide(Place() + Text("\\Settings")), 0, nullptr, 0,
                                      KEY_ALL_ACCESS, nullptr, &key_, nullptr),
                      ERROR_SUCCESS);
        }
        return key_;
    }

    void SetByHand(const wchar_t* name, DWORD type, const QByteArray& data) {
        EXPECT_EQ(RegSetValueExW(Key(), name, 0, type, reinterpret_cast<const BYTE*>(data.constData()),
                                 static_cast<DWORD>(data.size())),
                  ERROR_SUCCESS);
    }

    std::optional<QString> ReadAfter(DWORD type, const QByteArray& data) {
        SetByHand(L"Key", type, data);
        return Open()->Value(Text("Settings"), Text("Key"));
    }

private:
    HKEY key_ = nullptr;
};

TEST_F(WindowsSettingsStoreTest, ValueIsATextInTheRegistryUnderProgramSectionAndKey) {
    const auto store = Open();
    for (const wchar_t* name : {L"ArchiveDir", L"a/b\\c", L"%2F", L"."}) {
        store->SetValue(Text("Settings"), Units(name), Text("@C:\\mail\\"));
        DWORD type = REG_NONE;
        QByteArray data(100, 'x');
        auto size = static_cast<DWORD>(data.size());
        ASSERT_EQ(RegQueryValueExW(Key(), name, nullptr, &type, reinterpret_cast<BYTE*>(data.data()), &size),
                  ERROR_SUCCESS);
        EXPECT_EQ(type, DWORD(REG_SZ));
        EXPECT_EQ(data.left(static_cast<qsizetype>(size)), Bytes(L"@C:\\mail\\\0"sv));
    }
    EXPECT_EQ(Reason(*store), std::nullopt);
}

TEST_F(WindowsSettingsStoreTest, NameSetByHandIsTakenAsItIs) {
    for (const wchar_t* name : {L"a/b", L"a\\b", L"%2F", L"%", L".", L"@x"}) {
        SetByHand(name, REG_SZ, Bytes(L"text\0"sv));
        EXPECT_EQ(Open()->Value(Text("Settings"), Units(name)), Text("text"));
        EXPECT_TRUE(Open()->Keys(Text("Settings")).contains(Units(name)));
    }
    EXPECT_EQ(Open()->Keys(Text("Settings")).size(), 6);
}

TEST_F(WindowsSettingsStoreTest, KeysHaveTheOrderOfTheRegistry) {
    const auto store = Open();
    for (const char* name : {"b", "C", "a", "D", "10", "9"}) {
        store->SetValue(Text("Settings"), Text(name), Text("0"));
    }
    QStringList names;
    std::wstring name(100, L'\0');
    DWORD length = 100;
    while (RegEnumValueW(Key(), static_cast<DWORD>(names.size()), name.data(), &length, nullptr, nullptr, nullptr,
                         nullptr) == ERROR_SUCCESS) {
        names += Units(name.substr(0, length));
        length = 100;
    }
    EXPECT_EQ(names.size(), 6);
    EXPECT_EQ(store->Keys(Text("Settings")), names);
}

TEST_F(WindowsSettingsStoreTest, UnnamedValueIsNoKey) {
    SetByHand(L"", REG_SZ, Bytes(L"0\0"sv));
    SetByHand(L"@example.com", REG_SZ, Bytes(L"0\0"sv));
    EXPECT_EQ(Open()->Keys(Text("Settings")), QStringList{Text("@example.com")});
    EXPECT_EQ(Open()->Value(Text("Settings"), Text("")), std::nullopt);
}

TEST_F(WindowsSettingsStoreTest, KeysThatDifferInCaseAreOne) {
    const auto store = Open();
    store->SetValue(Text("Settings"), Text("Key"), Text("1"));
    store->SetValue(Text("Settings"), Text("KEY"), Text("2"));
    EXPECT_EQ(store->Value(Text("settings"), Text("key")), Text("2"));
    EXPECT_EQ(store->Keys(Text("Settings")), QStringList{Text("Key")});
}

TEST_F(WindowsSettingsStoreTest, OfWhitelistEntriesThatDifferInCaseTheOneInLowerCaseIsKept) {
    const auto store = Open();
    EXPECT_EQ(SaveWhitelist(*store, {Text("Joe@x.org"), Text("ann@x.org"), Text("joe@x.org")}),
              QStringList{Text("Joe@x.org")});
    QStringList stored = LoadWhitelist(*Open());
    stored.sort();
    EXPECT_EQ(stored, QStringList({Text("ann@x.org"), Text("joe@x.org")}));
}

TEST_F(WindowsSettingsStoreTest, NumberSetByHandIsReadAsItsDigits) {
    EXPECT_EQ(ReadAfter(REG_DWORD, QByteArray("\7\0\0\0", 4)), Text("7"));
    EXPECT_EQ(ReadAfter(REG_DWORD, QByteArray(4, '\xFF')), Text("4294967295"));
    EXPECT_EQ(ReadAfter(REG_DWORD_BIG_ENDIAN, QByteArray("\0\0\1\7", 4)), Text("263"));
    EXPECT_EQ(ReadAfter(REG_QWORD, QByteArray("\0\0\0\0\1\0\0\0", 8)), Text("4294967296"));
    EXPECT_EQ(ReadAfter(REG_DWORD, QByteArray("\7\0", 2)), std::nullopt);
    EXPECT_EQ(ReadAfter(REG_QWORD, QByteArray()), std::nullopt);
}

TEST_F(WindowsSettingsStoreTest, TextOfAnotherTypeSetByHandIsReadAsItIsMeant) {
    const ChangedVariable drive("QUELLBOX_TEST", "D:\\mail");
    EXPECT_EQ(ReadAfter(REG_EXPAND_SZ, Bytes(L"%QUELLBOX_TEST%\\new\0"sv)), Text("D:\\mail\\new"));
    EXPECT_EQ(ReadAfter(REG_EXPAND_SZ, Bytes(L"\0"sv)), Text(""));
    EXPECT_EQ(ReadAfter(REG_SZ, Bytes(L"%QUELLBOX_TEST%\\new\0"sv)), Text("%QUELLBOX_TEST%\\new"));
    EXPECT_EQ(ReadAfter(REG_MULTI_SZ, Bytes(L"a\0b\0c\0\0"sv)), Text("a,b,c"));
    EXPECT_EQ(ReadAfter(REG_MULTI_SZ, Bytes(L"a\0b"sv)), Text("a,b"));
    EXPECT_EQ(ReadAfter(REG_MULTI_SZ, Bytes(L"\0"sv)), Text(""));
    EXPECT_EQ(ReadAfter(REG_MULTI_SZ, QByteArray()), Text(""));
}

TEST_F(WindowsSettingsStoreTest, ValueThatIsNeitherTextNorNumberIsNotRead) {
    EXPECT_EQ(ReadAfter(REG_BINARY, Bytes(L"7\0"sv)), std::nullopt);
    EXPECT_EQ(ReadAfter(REG_NONE, QByteArray()), std::nullopt);
    EXPECT_EQ(Open()->Keys(Text("Settings")), QStringList{Text("Key")});
}

TEST_F(WindowsSettingsStoreTest, TextEndsWithItsNulOrItsData) {
    EXPECT_EQ(ReadAfter(REG_SZ, Bytes(L"text"sv)), Text("text"));
    EXPECT_EQ(ReadAfter(REG_SZ, Bytes(L"text\0more\0"sv)), Text("text"));
    EXPECT_EQ(ReadAfter(REG_SZ, QByteArray()), Text(""));
    EXPECT_EQ(ReadAfter(REG_SZ, Bytes(L"text"sv) + 'x'), Text("text"));
    EXPECT_EQ(ReadAfter(REG_SZ, QByteArray("x")), Text(""));
    const std::wstring longText(100'000, L'y');
    EXPECT_EQ(ReadAfter(REG_SZ, Bytes(longText)), Units(longText));
    // Of the size with which the store begins to read.
    const std::wstring exact(128, L'z');
    EXPECT_EQ(ReadAfter(REG_SZ, Bytes(exact)), Units(exact));
}

TEST_F(WindowsSettingsStoreTest, LongestNameIsTakenAndALongerOneRefused) {
    const QString longest(16383, QLatin1Char('k'));
    const auto store = Open();
    store->SetValue(Text("Settings"), longest, Text("value"));
    EXPECT_EQ(Reason(*store), std::nullopt);
    EXPECT_EQ(store->Keys(Text("Settings")), QStringList{longest});
    EXPECT_EQ(store->Value(Text("Settings"), longest), Text("value"));

    store->SetValue(Text("Settings"), longest + Text("k"), Text("other"));
    EXPECT_TRUE(Reason(*store));
    EXPECT_EQ(Reason(*store), std::nullopt);
    EXPECT_EQ(store->Keys(Text("Settings")), QStringList{longest});
    EXPECT_EQ(store->Value(Text("Settings"), longest + Text("k")), std::nullopt);
}

TEST_F(WindowsSettingsStoreTest, NulIsRefusedWhereverItStands) {
    const QString text = Text("a") + QChar(QChar::Null) + Text("b");
    const auto store = Open();
    store->SetValue(Text("Settings"), Text("a"), Text("1"));
    store->SetValue(Text("a"), Text("x"), Text("1"));
    EXPECT_EQ(Reason(*store), std::nullopt);

    store->SetValue(Text("Settings"), text, Text("2"));
    EXPECT_TRUE(Reason(*store));
    store->SetValue(Text("Settings"), Text("a"), text);
    EXPECT_TRUE(Reason(*store));
    store->RemoveSection(text);
    EXPECT_TRUE(Reason(*store));
    EXPECT_EQ(Reason(*store), std::nullopt);

    EXPECT_EQ(store->Value(Text("Settings"), text), std::nullopt);
    EXPECT_EQ(store->Value(Text("Settings"), Text("a")), Text("1"));
    EXPECT_EQ(store->Keys(text), QStringList());
    EXPECT_EQ(store->Keys(Text("a")), QStringList{Text("x")});
}

TEST_F(WindowsSettingsStoreTest, SectionWithABackslashIsRefused) {
    const auto store = Open();
    store->SetValue(Text("Settings"), Text("Key"), Text("value"));
    store->SetValue(Text("Settings\\Below"), Text("Key"), Text("value"));
    EXPECT_TRUE(Reason(*store));
    EXPECT_EQ(store->Value(Text("\\Settings"), Text("Key")), std::nullopt);
    EXPECT_EQ(store->Keys(Text("Settings\\")), QStringList());
    store->RemoveSection(Text("Settings\\"));
    EXPECT_TRUE(Reason(*store));
    EXPECT_EQ(store->Keys(Text("Settings")), QStringList{Text("Key")});
}

TEST_F(WindowsSettingsStoreTest, SectionIsRemovedWithWhatLiesBelow) {
    HKEY below = nullptr;
    ASSERT_EQ(RegCreateKeyExW(Key(), L"Below", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &below, nullptr), ERROR_SUCCESS);
    RegCloseKey(below);
    const auto store = Open();
    store->SetValue(Text("Settings"), Text("Key"), Text("value"));
    store->RemoveSection(Text("Settings"));
    EXPECT_EQ(Reason(*store), std::nullopt);
    EXPECT_EQ(store->Keys(Text("Settings")), QStringList());

    // Also while another program has the key open, as here.
    store->SetValue(Text("Settings"), Text("Key"), Text("new"));
    EXPECT_EQ(Reason(*store), std::nullopt);
    EXPECT_EQ(store->Value(Text("Settings"), Text("Key")), Text("new"));
}

TEST_F(WindowsSettingsStoreTest, ApplicationNameThatIsNoNameOfAKeyIsRefused) {
    for (const QString& name : {Text(""), name_ + Text("\\x")}) {
        const auto store = OpenSettingsStore(name);
        store->SetValue(Text("Settings"), Text("Key"), Text("value"));
        EXPECT_TRUE(Reason(*store));
        EXPECT_EQ(store->Value(Text("Settings"), Text("Key")), std::nullopt);
    }
}

TEST_F(WindowsSettingsStoreTest, FirstRefusalIsTheOneReported) {
    const auto store = Open();
    store->SetValue(Text("Settings"), Text(""), Text("value"));
    store->SetValue(Text("Find"), Text("0"), Text("text"));
    store->SetValue(Text("Tolerate"), Text(""), Text("0"));
    try {
        store->Flush();
        FAIL() << "nothing was refused";
    } catch (const FileError& error) {
        EXPECT_EQ(error.Path(), ErrorPath());
    }
    EXPECT_EQ(store->Value(Text("Find"), Text("0")), Text("text"));
}

} // namespace

} // namespace quellbox

#endif

#include "whitelist/WhitelistStore.h"

#include "tests/support/MemorySettingsStore.h"

#include <gtest/gtest.h>

#include <tuple>

using namespace quellbox;

namespace {

const QString section = QStringLiteral("Tolerate");

/// Remembers the calls that change it.
class RecordingStore : public MemorySettingsStore {
public:
    void SetValue(const QString& inSection, const QString& key, const QString& value) override {
        calls.append(QStringLiteral("set %1/%2=%3").arg(inSection, key, value));
        MemorySettingsStore::SetValue(inSection, key, value);
    }

    void RemoveSection(const QString& inSection) override {
        calls.append(QStringLiteral("remove %1").arg(inSection));
        MemorySettingsStore::RemoveSection(inSection);
    }

    void Flush() override {
        calls.append(QStringLiteral("flush"));
        MemorySettingsStore::Flush();
    }

    QStringList calls;
};

} // namespace

TEST(LoadWhitelist, IsEmptyWithoutASection) {
    EXPECT_TRUE(LoadWhitelist(MemorySettingsStore()).isEmpty());
}

TEST(LoadWhitelist, TakesTheNamesInTheOrderOfTheStoreAndNeverTheData) {
    MemorySettingsStore store;
    store.SetValue(section, QStringLiteral("b@x.org"), QStringLiteral("anything"));
    store.SetValue(section, QStringLiteral("@a.org"), QString());
    store.SetValue(QStringLiteral("Settings"), QStringLiteral("Whole"), QStringLiteral("1"));
    EXPECT_EQ(LoadWhitelist(store), store.Keys(section));
    EXPECT_EQ(LoadWhitelist(store).size(), 2);
}

TEST(SaveWhitelist, WritesTheDummyDeletesTheSectionAndRewritesTheEntries) {
    RecordingStore store;
    EXPECT_TRUE(SaveWhitelist(store, {QStringLiteral("b@x.org"), QStringLiteral("@a.org")}).isEmpty());
    const QStringList expected{QStringLiteral("set Tolerate/0="), QStringLiteral("remove Tolerate"),
                               QStringLiteral("set Tolerate/b@x.org=0"), QStringLiteral("set Tolerate/@a.org=0"),
                               QStringLiteral("flush")};
    EXPECT_EQ(store.calls, expected);
}

TEST(SaveWhitelist, ReplacesWhatWasStored) {
    MemorySettingsStore store;
    store.SetValue(section, QStringLiteral("old@x.org"), QStringLiteral("0"));
    EXPECT_TRUE(SaveWhitelist(store, {QStringLiteral("new@x.org")}).isEmpty());
    EXPECT_EQ(LoadWhitelist(store), QStringList{QStringLiteral("new@x.org")});
}

TEST(SaveWhitelist, LeavesTheEarlierListInForceWhenItCannotBeStored) {
    MemorySettingsStore store;
    EXPECT_TRUE(SaveWhitelist(store, {QStringLiteral("@example.com"), QStringLiteral("a@example.org")}).isEmpty());
    store.SetUnwritable();
    EXPECT_THROW(std::ignore = SaveWhitelist(store, {QStringLiteral("@example.net")}), RuntimeError);
    EXPECT_EQ(LoadWhitelist(store), QStringList({QStringLiteral("@example.com"), QStringLiteral("a@example.org")}));
    EXPECT_EQ(store.FlushCount(), 3) << "what putting it back fails with is not left to somebody else's flush";
}

TEST(SaveWhitelist, KeepsEntriesThatDifferInCaseWhereTheStoreTellsThemApart) {
    MemorySettingsStore store;
    const QStringList entries{QStringLiteral("Joe@x.org"), QStringLiteral("joe@x.org")};
    EXPECT_EQ(SaveWhitelist(store, entries), QStringList());
    EXPECT_EQ(LoadWhitelist(store), entries);
}

TEST(SaveWhitelist, KeepsTheEntryInLowerCaseWhereTheStoreTakesOnlyOne) {
    MemorySettingsStore store;
    store.SetIgnoresCase();
    const QStringList left =
        SaveWhitelist(store, {QStringLiteral("JOE@x.org"), QStringLiteral("@A.org"), QStringLiteral("joe@x.org"),
                              QStringLiteral("Joe@x.org"), QStringLiteral("@a.Org"), QStringLiteral("other@x.org")});
    EXPECT_EQ(left, QStringList({QStringLiteral("JOE@x.org"), QStringLiteral("Joe@x.org"), QStringLiteral("@a.Org")}));
    QStringList stored = LoadWhitelist(store);
    stored.sort();
    EXPECT_EQ(stored,
              QStringList({QStringLiteral("@A.org"), QStringLiteral("joe@x.org"), QStringLiteral("other@x.org")}));
}

TEST(SaveWhitelist, LeavesNothingOutWhereCaseIsIgnoredButNoEntriesAreTheSame) {
    MemorySettingsStore store;
    store.SetIgnoresCase();
    const QStringList entries{QStringLiteral("Joe@x.org"), QStringLiteral("ann@x.org")};
    EXPECT_EQ(SaveWhitelist(store, entries), QStringList());
    EXPECT_EQ(LoadWhitelist(store), entries);
}

TEST(SaveWhitelist, LeavesNoDummyBehindForAnEmptyList) {
    MemorySettingsStore store;
    EXPECT_TRUE(SaveWhitelist(store, {}).isEmpty());
    EXPECT_TRUE(LoadWhitelist(store).isEmpty());
}

TEST(SaveWhitelist, LeavesOtherSectionsAlone) {
    MemorySettingsStore store;
    store.SetValue(QStringLiteral("Settings"), QStringLiteral("Whole"), QStringLiteral("1"));
    EXPECT_TRUE(SaveWhitelist(store, {QStringLiteral("a@x.org")}).isEmpty());
    EXPECT_EQ(store.Value(QStringLiteral("Settings"), QStringLiteral("Whole")), QStringLiteral("1"));
}

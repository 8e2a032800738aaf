#include "dialogs/FindHistory.h"

#include "tests/support/MemorySettingsStore.h"

#include <gtest/gtest.h>

namespace quellbox {
namespace {

const QString section = QStringLiteral("Find");

class FindHistoryTest : public testing::Test {
protected:
    void Put(const char* key, const QString& text) { store.SetValue(section, QLatin1String(key), text); }
    QString Stored(const char* key) { return store.Value(section, QLatin1String(key)).value_or(QString()); }

    MemorySettingsStore store;
};

const QString one = QStringLiteral("one");
const QString two = QStringLiteral("two");

TEST_F(FindHistoryTest, NothingStoredIsAnEmptyHistory) {
    EXPECT_TRUE(FindHistory(store).Texts().isEmpty());
}

TEST_F(FindHistoryTest, AGapEndsTheHistoryAndSavingClosesIt) {
    Put("0", one);
    Put("2", two);
    FindHistory history(store);
    EXPECT_EQ(history.Texts(), QStringList{one});
    EXPECT_TRUE(history.Add(QStringLiteral("three")));
    history.Save(store);
    EXPECT_EQ(store.Keys(section), QStringList({QStringLiteral("0"), QStringLiteral("1")}));
    EXPECT_EQ(Stored("1"), QStringLiteral("three"));
}

TEST_F(FindHistoryTest, AnEmptyTextEndsTheHistory) {
    Put("0", one);
    Put("1", QString());
    Put("2", two);
    EXPECT_EQ(FindHistory(store).Texts(), QStringList{one});
}

TEST_F(FindHistoryTest, AStoreWithoutTheFirstIndexIsAnEmptyHistory) {
    Put("1", two);
    EXPECT_TRUE(FindHistory(store).Texts().isEmpty());
}

TEST_F(FindHistoryTest, JunkKeysAreIgnoredAndGoWithTheNextSaving) {
    for (const char* key : {"-1", "00", "junk", " 0", "1e0", "99999999999999999999"}) {
        Put(key, two);
    }
    Put("0", one);
    const FindHistory history(store);
    EXPECT_EQ(history.Texts(), QStringList{one});
    history.Save(store);
    EXPECT_EQ(store.Keys(section), QStringList{QStringLiteral("0")});
}

TEST_F(FindHistoryTest, JunkTextsAreKeptAsTheyAre) {
    const QStringList junk{QStringLiteral(" "), QStringLiteral("<b>&amp;%1\n\t"), QString(QChar(0)),
                           QString(10'000, QLatin1Char('x'))};
    for (int index = 0; index < junk.size(); ++index) {
        store.SetValue(section, QString::number(index), junk[index]);
    }
    const FindHistory history(store);
    EXPECT_EQ(history.Texts(), junk);
    history.Save(store);
    EXPECT_EQ(FindHistory(store).Texts(), junk);
}

TEST_F(FindHistoryTest, OnlyATextThatIsNewIgnoringCaseIsAppended) {
    FindHistory history;
    EXPECT_TRUE(history.Add(QStringLiteral("Invoice")));
    EXPECT_FALSE(history.Add(QStringLiteral("iNVOICE")));
    EXPECT_TRUE(history.Add(QStringLiteral("Invoices")));
    EXPECT_EQ(history.Texts(), QStringList({QStringLiteral("Invoice"), QStringLiteral("Invoices")}));
}

TEST_F(FindHistoryTest, RemovesOneOrAll) {
    FindHistory history;
    for (const char* text : {"a", "b", "c"}) {
        history.Add(QLatin1String(text));
    }
    history.Remove(1);
    history.Remove(2);
    history.Remove(-1);
    EXPECT_EQ(history.Texts(), QStringList({QStringLiteral("a"), QStringLiteral("c")}));
    history.Clear();
    EXPECT_TRUE(history.Texts().isEmpty());
    Put("0", one);
    history.Save(store);
    EXPECT_TRUE(store.Keys(section).isEmpty());
}

TEST_F(FindHistoryTest, HasNoLimit) {
    FindHistory history;
    for (int number = 0; number < 1000; ++number) {
        history.Add(QString::number(number));
    }
    history.Save(store);
    EXPECT_EQ(FindHistory(store).Texts(), history.Texts());
}

} // namespace
} // namespace quellbox

#include "whitelist/WhitelistMatcher.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using namespace quellbox;

namespace {

QStringList List(std::initializer_list<const char*> entries) {
    QStringList list;
    for (const char* entry : entries) {
        list.append(QString::fromUtf8(entry));
    }
    return list;
}

bool Tolerated(std::initializer_list<const char*> entries, const char* sender) {
    return WhitelistMatcher(List(entries)).TolerableSender(QString::fromUtf8(sender));
}

/// The rule in its plainest form.
bool NaiveTolerated(const QStringList& entries, const QString& sender) {
    return std::any_of(entries.begin(), entries.end(), [&](const QString& entry) { return sender.contains(entry); });
}

QString RandomText(std::mt19937& random, const QString& alphabet, int longest) {
    QString text;
    const int length = std::uniform_int_distribution<int>(0, longest)(random);
    std::uniform_int_distribution<qsizetype> letter(0, alphabet.size() - 1);
    for (int index = 0; index < length; ++index) {
        text.append(alphabet[letter(random)]);
    }
    return text;
}

} // namespace

TEST(TolerableSender, IsNobodyWithAnEmptySnapshot) {
    EXPECT_FALSE(Tolerated({}, "bob@example.com"));
    EXPECT_FALSE(Tolerated({}, ""));
}

TEST(TolerableSender, EqualsAnEntry) {
    EXPECT_TRUE(Tolerated({"bob@example.com"}, "bob@example.com"));
    EXPECT_FALSE(Tolerated({"bob@example.com"}, "rob@example.com"));
    EXPECT_FALSE(Tolerated({"bob@example.com"}, ""));
}

TEST(TolerableSender, BelongsToAToleratedDomain) {
    EXPECT_TRUE(Tolerated({"@example.com"}, "bob@example.com"));
    EXPECT_FALSE(Tolerated({"@example.com"}, "bob@mail.example.com"));
}

TEST(TolerableSender, IsNotAnchoredOnPurpose) {
    EXPECT_TRUE(Tolerated({"@example.com"}, "bob@example.com.au"));
    EXPECT_TRUE(Tolerated({"bob@example.com"}, "jimbob@example.com"));
}

TEST(TolerableSender, ComparesCase) {
    EXPECT_FALSE(Tolerated({"Bob@example.com"}, "bob@example.com"));
    EXPECT_TRUE(Tolerated({"Bob@example.com"}, "Bob@example.com"));
}

TEST(TolerableSender, TakesWildcardsLiterally) {
    EXPECT_FALSE(Tolerated({"*@example.com"}, "bob@example.com"));
    EXPECT_TRUE(Tolerated({"*@example.com"}, "*@example.com"));
}

TEST(TolerableSender, IsEverybodyWithAnEmptyEntry) {
    EXPECT_TRUE(Tolerated({"a@x.org", ""}, "bob@example.com"));
    EXPECT_TRUE(Tolerated({""}, ""));
}

TEST(TolerableSender, MayMatchALaterEntryAfterAnEarlierOneFailed) {
    EXPECT_TRUE(Tolerated({"nobody@nowhere.org", "bob@", "zoe@x.org"}, "bob@example.com"));
}

TEST(TolerableSender, MatchesInsideABeginningOfALongerEntry) {
    EXPECT_TRUE(Tolerated({"abcde", "bc"}, "xabcx"));
    EXPECT_TRUE(Tolerated({"aab"}, "aaab"));
    EXPECT_TRUE(Tolerated({"abcabd"}, "abcabcabd"));
    EXPECT_FALSE(Tolerated({"abcabd"}, "abcabcabc"));
}

TEST(TolerableSender, MatchesAnEntryThatALongerOneBeginsWith) {
    EXPECT_TRUE(Tolerated({"@example.com.au", "@example.com"}, "bob@example.com"));
    EXPECT_TRUE(Tolerated({"@example.com.au", "@example.com"}, "bob@example.com.au"));
}

TEST(TolerableSender, AcceptsAnEntryTwice) {
    EXPECT_TRUE(Tolerated({"@x.org", "@x.org"}, "a@x.org"));
}

TEST(TolerableSender, WorksWithEveryCharacter) {
    EXPECT_TRUE(Tolerated({"m\xC3\xBCller@"}, "j.m\xC3\xBCller@example.com"));
    EXPECT_FALSE(Tolerated({"m\xC3\xBCller@"}, "j.muller@example.com"));
    EXPECT_TRUE(Tolerated({"\xF0\x9F\x90\x99@sea.org"}, "the\xF0\x9F\x90\x99@sea.org"));
    QString withNull = QStringLiteral("a@x.org");
    withNull.insert(1, QChar(0));
    EXPECT_TRUE(WhitelistMatcher({withNull}).TolerableSender(withNull));
    EXPECT_FALSE(WhitelistMatcher({withNull}).TolerableSender(QStringLiteral("a@x.org")));
}

TEST(TolerableSender, AgreesWithThePlainRuleOnRandomLists) {
    std::mt19937 random(20240229);
    // Few letters make overlaps frequent; the non-ASCII ones take the other way through the tree.
    const QStringList alphabets = {QStringLiteral("ab"), QStringLiteral("ab@."),
                                   QString::fromUtf8("abcdefghijklmnop@.\xC3\xA9\xE2\x82\xAC")};
    int tolerated = 0;
    int asked = 0;
    for (int round = 0; round < 3000; ++round) {
        const QString& alphabet = alphabets[round % alphabets.size()];
        QStringList entries;
        const int count = round % 23;
        for (int index = 0; index < count; ++index) {
            const QString entry = RandomText(random, alphabet, 8);
            if (!entry.isEmpty() || round % 10 == 0) {
                entries.append(entry);
            }
        }
        const WhitelistMatcher matcher(entries);
        for (int index = 0; index < 20; ++index) {
            const QString sender = RandomText(random, alphabet, 16);
            const bool expected = NaiveTolerated(entries, sender);
            ASSERT_EQ(matcher.TolerableSender(sender), expected)
                << sender.toStdString() << " in " << entries.join(QLatin1Char('|')).toStdString();
            tolerated += expected ? 1 : 0;
            ++asked;
        }
    }
    EXPECT_GT(tolerated, asked / 10) << "the lists are to show both answers";
    EXPECT_LT(tolerated, asked * 9 / 10);
}

TEST(TolerableSender, AgreesWithThePlainRuleOnALargeList) {
    std::mt19937 random(7);
    const QString letters = QStringLiteral("abcdefghijklmnopqrstuvwxyz");
    QStringList entries;
    QStringList senders;
    for (int index = 0; index < 5000; ++index) {
        const QString user = RandomText(random, letters, 3) + QLatin1Char('@');
        entries.append(user + RandomText(random, letters, 2) + QStringLiteral(".com"));
    }
    for (int index = 0; index < 500; ++index) {
        senders.append(RandomText(random, letters, 4) + QLatin1Char('@') + RandomText(random, letters, 2) +
                       QStringLiteral(".com"));
    }
    const WhitelistMatcher matcher(entries);
    for (const QString& sender : senders) {
        ASSERT_EQ(matcher.TolerableSender(sender), NaiveTolerated(entries, sender)) << sender.toStdString();
    }
}

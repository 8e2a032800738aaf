#include "whitelist/WhitelistRules.h"

#include <gtest/gtest.h>

using namespace quellbox;
using Outcome = AddResult::Outcome;

namespace {

QString Text(const char* text) {
    return QString::fromUtf8(text);
}

Whitelist ListOf(std::initializer_list<const char*> entries) {
    QStringList list;
    for (const char* entry : entries) {
        list.append(Text(entry));
    }
    return Whitelist(list);
}

QString Joined(const Whitelist& list) {
    return list.Entries().join(QLatin1Char(' '));
}

/// Answers the question about a domain and remembers what it was asked.
struct Answer {
    bool yes = true;
    QStringList asked = {};

    bool operator()(const QString& domain) {
        asked.append(domain);
        return yes;
    }
};

AddResult Add(Whitelist& list, const char* text, Answer& answer) {
    return list.Add(Text(text), std::ref(answer));
}

} // namespace

TEST(ValidEntry, IsAnAddressOrADomain) {
    EXPECT_TRUE(IsValidEntry(Text("user@example.com")));
    EXPECT_TRUE(IsValidEntry(Text("@example.com")));
    EXPECT_TRUE(IsValidEntry(Text("User@Example.COM")));
}

TEST(ValidEntry, NeedsAnAtSignAndADot) {
    EXPECT_FALSE(IsValidEntry(QString()));
    EXPECT_FALSE(IsValidEntry(Text("example.com")));
    EXPECT_FALSE(IsValidEntry(Text("a@b")));
    EXPECT_FALSE(IsValidEntry(Text("a@example")));
}

TEST(ValidEntry, AcceptsTheDotAnywhere) {
    EXPECT_TRUE(IsValidEntry(Text("john.doe@xy")));
    EXPECT_TRUE(IsValidEntry(Text(".@xy")));
    EXPECT_TRUE(IsValidEntry(Text("@.x")));
    EXPECT_TRUE(IsValidEntry(Text("@x.")));
}

TEST(ValidEntry, NeedsTwoCharactersAfterTheFirstAtSign) {
    EXPECT_FALSE(IsValidEntry(Text("john.doe@")));
    EXPECT_FALSE(IsValidEntry(Text("john.doe@x")));
    EXPECT_TRUE(IsValidEntry(Text("john.doe@xy")));
    EXPECT_FALSE(IsValidEntry(Text("@.")));
    EXPECT_TRUE(IsValidEntry(Text(".@x@"))) << "the second @ is one of the two characters";
}

TEST(ValidEntry, RefusesWildcards) {
    EXPECT_FALSE(IsValidEntry(Text("*@example.com")));
    EXPECT_FALSE(IsValidEntry(Text("user@example.com*")));
}

TEST(DomainPart, IsEverythingFromTheFirstAtSignOn) {
    EXPECT_EQ(DomainPart(Text("user@example.com")), Text("@example.com"));
    EXPECT_EQ(DomainPart(Text("@example.com")), Text("@example.com"));
    EXPECT_EQ(DomainPart(Text("a@b@c")), Text("@b@c"));
    EXPECT_EQ(DomainPart(Text("example.com")), QString());
}

TEST(DomainQuestion, HasItsWording) {
    EXPECT_EQ(DomainQuestionTitle(), Text("Tolerate entire domain"));
    EXPECT_EQ(DomainQuestion(Text("@example.com")),
              Text("Individual addresses for users at \r\n\r\n@EXAMPLE.COM\r\n\r\n"
                   "will be removed from the list of tolerated users.\r\n\r\n"
                   "Every sender from this domain is going to be tolerated from now on."));
}

TEST(EntriesOfDomain, AreAddressesTheDomainItselfAndItsBareName) {
    const Whitelist list = ListOf({"a@example.com", "@example.com", "example.com", "b@mail.example.com",
                                   "c@example.com.au", "d@x@example.com", "@other.com"});
    EXPECT_EQ(list.EntriesOfDomain(Text("@example.com")).join(QLatin1Char(' ')),
              Text("a@example.com @example.com example.com"));
}

TEST(EntriesOfDomain, CompareCase) {
    EXPECT_TRUE(ListOf({"a@Example.com"}).EntriesOfDomain(Text("@example.com")).isEmpty());
}

TEST(AddEntry, AppendsInLowerCase) {
    Whitelist list = ListOf({"z@z.org"});
    Answer answer;
    const AddResult result = Add(list, "User@Example.COM", answer);
    EXPECT_EQ(result.outcome, Outcome::Added);
    EXPECT_EQ(result.index, 1);
    EXPECT_EQ(Joined(list), Text("z@z.org user@example.com"));
    EXPECT_TRUE(answer.asked.isEmpty());
}

TEST(AddEntry, SelectsAnAddressThatIsListed) {
    Whitelist list = ListOf({"a@example.com", "b@example.com", "@example.com"});
    Answer answer;
    const AddResult result = Add(list, "B@EXAMPLE.com", answer);
    EXPECT_EQ(result.outcome, Outcome::AlreadyPresent);
    EXPECT_EQ(result.index, 1);
    EXPECT_EQ(Joined(list), Text("a@example.com b@example.com @example.com")) << "not even the domain goes";
}

TEST(AddEntry, ReplacesTheDomainByTheAddressWithoutAQuestion) {
    Whitelist list = ListOf({"x@y.org", "@example.com", "b@example.com"});
    Answer answer;
    const AddResult result = Add(list, "a@example.com", answer);
    EXPECT_EQ(result.outcome, Outcome::Added);
    EXPECT_EQ(result.index, 2);
    EXPECT_EQ(Joined(list), Text("x@y.org b@example.com a@example.com"));
    EXPECT_TRUE(answer.asked.isEmpty());
}

TEST(AddEntry, RemovesOnlyTheFirstEntryOfTheWholeDomain) {
    Whitelist list = ListOf({"@example.com", "@example.com"});
    Answer answer;
    Add(list, "a@example.com", answer);
    EXPECT_EQ(Joined(list), Text("@example.com a@example.com"));
}

TEST(AddEntry, AsksOnceBeforeADomainReplacesItsAddresses) {
    Whitelist list = ListOf({"a@example.com", "c@other.com", "b@example.com"});
    Answer answer;
    const AddResult result = Add(list, "@Example.com", answer);
    EXPECT_EQ(answer.asked, QStringList{Text("@EXAMPLE.COM")});
    EXPECT_EQ(result.outcome, Outcome::Added);
    EXPECT_EQ(result.index, 1);
    EXPECT_EQ(Joined(list), Text("c@other.com @example.com"));
}

TEST(AddEntry, LeavesTheListAsItWasWhenTheQuestionIsAnsweredWithNo) {
    Whitelist list = ListOf({"a@example.com", "b@example.com"});
    Answer answer{false};
    const AddResult result = Add(list, "@example.com", answer);
    EXPECT_EQ(result.outcome, Outcome::Refused);
    EXPECT_EQ(result.index, -1);
    EXPECT_EQ(answer.asked.size(), 1);
    EXPECT_EQ(Joined(list), Text("a@example.com b@example.com"));
}

TEST(AddEntry, AsksForADomainThatIsListedToo) {
    Whitelist list = ListOf({"@example.com", "c@other.com"});
    Answer answer;
    EXPECT_EQ(Add(list, "@example.com", answer).outcome, Outcome::Added);
    EXPECT_EQ(answer.asked.size(), 1);
    EXPECT_EQ(Joined(list), Text("c@other.com @example.com"));
}

TEST(AddEntry, DoesNotAskForADomainWithoutEntries) {
    Whitelist list = ListOf({"c@other.com"});
    Answer answer{false};
    EXPECT_EQ(Add(list, "@example.com", answer).outcome, Outcome::Added);
    EXPECT_TRUE(answer.asked.isEmpty());
}

TEST(AddEntry, RefusesABlankText) {
    Whitelist list;
    Answer answer;
    EXPECT_EQ(Add(list, "", answer).outcome, Outcome::Refused);
    EXPECT_EQ(Add(list, "  ", answer).outcome, Outcome::Refused);
    EXPECT_TRUE(list.Entries().isEmpty());
}

TEST(AddEntry, TakesATextWithoutAtSignAsItIs) {
    Whitelist list = ListOf({""});
    Answer answer;
    EXPECT_EQ(Add(list, "Postmaster", answer).outcome, Outcome::Added);
    EXPECT_EQ(list.Entries(), (QStringList{QString(), Text("postmaster")}));
}

TEST(RemoveEntry, RemovesTheOneAtTheIndexAndIgnoresAnyOther) {
    Whitelist list = ListOf({"a@x.org", "b@x.org", "c@x.org"});
    list.Remove(-1);
    list.Remove(3);
    EXPECT_EQ(list.Entries().size(), 3);
    list.Remove(1);
    EXPECT_EQ(Joined(list), Text("a@x.org c@x.org"));
}

TEST(RemoveEntry, ClearRemovesAll) {
    Whitelist list = ListOf({"a@x.org", "b@x.org"});
    list.Clear();
    EXPECT_TRUE(list.Entries().isEmpty());
}

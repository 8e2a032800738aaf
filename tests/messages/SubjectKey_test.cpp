#include "messages/SubjectKey.h"

#include <gtest/gtest.h>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

const QString ann = u"\"Ann Smith\" <ann.smith@example.org>"_s;

std::string KeyOf(const QString& subject, const QString& recipients = {}) {
    return SubjectKey().Of(subject, recipients).toStdString();
}

std::string TitleFor(const QString& subject, const QString& recipients = {}) {
    return SubjectKey().Title(subject, recipients).toStdString();
}

} // namespace

TEST(SubjectKeyTest, NumbersAndCodesMakeNoDifference) {
    EXPECT_EQ(KeyOf(u"Invoice 2791 of 3 March"_s), "invoice … of … march");
    EXPECT_EQ(KeyOf(u"Invoice #A-99/b of 12 March"_s), KeyOf(u"Invoice 2791 of 3 March"_s));
    EXPECT_EQ(KeyOf(u"Save 70% today"_s), KeyOf(u"Save $5,99 today"_s));
    EXPECT_EQ(KeyOf(u"Room 4 2"_s), KeyOf(u"Room 42"_s)) << "several in a row are one";
    EXPECT_NE(KeyOf(u"Invoice of March"_s), KeyOf(u"Invoice 2791 of March"_s));
}

TEST(SubjectKeyTest, TheRecipientsNamesMakeNoDifference) {
    EXPECT_EQ(KeyOf(u"Ann, your parcel"_s, ann), "… your parcel");
    EXPECT_EQ(KeyOf(u"ANN SMITH: your parcel"_s, ann), "… your parcel");
    EXPECT_EQ(KeyOf(u"ann.smith@example.org your parcel"_s, ann), "… your parcel");
    EXPECT_EQ(KeyOf(u"ann.smith your parcel"_s, ann), "… your parcel");
    EXPECT_EQ(KeyOf(u"Ann's parcel"_s, ann), "… parcel");
    EXPECT_EQ(KeyOf(u"Ann\u2019s parcel"_s, ann), "… parcel");
    EXPECT_EQ(KeyOf(u"Bob, your parcel"_s, u"bob77@example.org"_s), "… your parcel");
    EXPECT_EQ(KeyOf(u"Jörg, your parcel"_s, u"JÖRG KÖNIG <jk@example.org>"_s), "… your parcel");
}

TEST(SubjectKeyTest, OtherNamesAndPartsOfWordsStay) {
    EXPECT_EQ(KeyOf(u"Bob, your parcel"_s, ann), "bob your parcel");
    EXPECT_EQ(KeyOf(u"Annual report"_s, ann), "annual report");
    EXPECT_EQ(KeyOf(u"example org"_s, ann), "example org") << "the domain is nobody's name";
}

TEST(SubjectKeyTest, AMailboxCalledAfterItsPurposeHasNoName) {
    EXPECT_EQ(KeyOf(u"Info about sales"_s, u"info@example.org"_s), "info about sales");
    EXPECT_EQ(KeyOf(u"Info about sales"_s, u"The Sales Team <sales@example.org>"_s), "info about sales");
}

TEST(SubjectKeyTest, PrefixesOfAnswersMakeNoDifference) {
    for (const QString& prefix :
         {u"Re: "_s, u"RE:"_s, u"Fwd: "_s, u"AW: WG: "_s, u"Re[2]: "_s, u"re (3) : "_s, u" Antw： "_s}) {
        EXPECT_EQ(KeyOf(prefix + u"Hello there"_s), "hello there") << prefix.toStdString();
    }
    EXPECT_EQ(KeyOf(u"News: hello"_s), "news hello");
    EXPECT_EQ(KeyOf(u"Re[x]: hello"_s), "rex hello") << "no count";
    EXPECT_EQ(KeyOf(u"Re"_s), "re");
    EXPECT_EQ(KeyOf(u"Re:"_s), "");
}

TEST(SubjectKeyTest, PunctuationAndCaseMakeNoDifference) {
    EXPECT_EQ(KeyOf(u"*** WIN   A car!!! ***"_s), KeyOf(u"win a car"_s));
    EXPECT_EQ(KeyOf(u"ÄPFEL"_s), KeyOf(u"äpfel."_s));
}

TEST(SubjectKeyTest, WhatHasNoWordsStandsForItself) {
    EXPECT_EQ(KeyOf(u""_s), "");
    EXPECT_EQ(KeyOf(u" !!! "_s), "!!!");
    EXPECT_EQ(KeyOf(u"4711"_s), "…");
}

TEST(SubjectKeyTest, ANumberAmongLettersWithoutSpacesIsAWordOfItsOwn) {
    EXPECT_EQ(KeyOf(u"您的订单12345已发货"_s), "您的订单 … 已发货");
    EXPECT_EQ(KeyOf(u"您的订单6已发货"_s), KeyOf(u"您的订单12345已发货"_s));
}

TEST(SubjectKeyTest, OnlyTheFirstThousandCharactersCount) {
    const QString start(1000, u'x');
    EXPECT_EQ(KeyOf(start + u"yz"_s), KeyOf(start));
    EXPECT_NE(KeyOf(start.first(999) + u"y"_s), KeyOf(start));
}

TEST(SubjectKeyTest, ASubjectHasItsOwnKeyAndNoOther) {
    const QStringList subjects{u"Ann, your parcel"_s,
                               u"Your parcel"_s,
                               u"Your parcel 5 6"_s,
                               u"Your parcels"_s,
                               u"Your"_s,
                               u"!!!"_s,
                               u""_s,
                               u"Re: 5"_s};
    SubjectKey keys;
    for (const QString& subject : subjects) {
        const QString key = keys.Of(subject, ann);
        for (const QString& other : subjects) {
            EXPECT_EQ(keys.Is(key, other, ann), other == subject) << qPrintable(key + u" / "_s + other);
        }
    }
    EXPECT_TRUE(keys.Is(u"\u2026 your parcel"_s, u"ANN SMITH: your parcel"_s, ann));
    EXPECT_FALSE(keys.Is(u"\u2026 your parcel"_s, u"Bob, your parcel"_s, ann));
}

TEST(SubjectKeyTest, TheTitleKeepsWhatStaysAsItIs) {
    EXPECT_EQ(TitleFor(u"Re: Ann, Invoice no. 2791!"_s, ann), "…, Invoice no. …!");
    EXPECT_EQ(TitleFor(u"Your 1 2 3 Parcel (4711)"_s, ann), "Your … Parcel (…)");
    EXPECT_EQ(TitleFor(u"您的订单12345已发货"_s), "您的订单…已发货");
    EXPECT_EQ(TitleFor(u"Nothing changes."_s), "Nothing changes.");
    EXPECT_EQ(TitleFor(u""_s), "");
}

TEST(SubjectKeyTest, OneRecipientDoesNotChangeTheNext) {
    SubjectKey key;
    EXPECT_EQ(key.Of(u"Ann and Bob"_s, ann).toStdString(), "… and bob");
    EXPECT_EQ(key.Of(u"Ann and Bob"_s, u"bob@example.org"_s).toStdString(), "ann and …");
    EXPECT_EQ(key.Of(u"Ann and Bob"_s, {}).toStdString(), "ann and bob");
}

} // namespace quellbox

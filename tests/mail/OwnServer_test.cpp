#include "mail/OwnServer.h"

#include "mail/FieldNames.h"
#include "mail/HeaderFields.h"

#include <QFile>

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>
#include <vector>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

OwnServer WithRating(const char* form, const QString& text = {}) {
    OwnServer server;
    server.rating = u"X-Junk"_s;
    server.ratingForm = QLatin1String(form);
    server.ratingText = text;
    return server;
}

std::string RatingIn(const OwnServer& server, const QByteArray& value) {
    return ParseHeaderFields("x-junk: " + value + "\r\n\r\n", OwnProfile(server)).rating.toStdString();
}

} // namespace

TEST(OwnServer, ReadsARatingOfEachForm) {
    EXPECT_EQ(RatingIn(WithRating(RatingKeys::number), "-13.4 (high)"), "-13.4");
    EXPECT_EQ(RatingIn(WithRating(RatingKeys::number), "high 13.4"), "");
    EXPECT_EQ(RatingIn(WithRating(RatingKeys::behind, u"points="_s), "spam, POINTS= 21.5, limit=10"), "21.5");
    EXPECT_EQ(RatingIn(WithRating(RatingKeys::behind, u"points="_s), "spam, limit=10"), "");
    EXPECT_EQ(RatingIn(WithRating(RatingKeys::percent), "7 83.15% sure"), "7 83.15");
    EXPECT_EQ(RatingIn(WithRating(RatingKeys::percent), "7"), "");
    EXPECT_EQ(RatingIn(WithRating(RatingKeys::count, u"+"_s), "++++ (4)"), "4");
    EXPECT_EQ(RatingIn(WithRating(RatingKeys::count, u"+"_s), ""), "0");
    EXPECT_EQ(RatingIn(WithRating(RatingKeys::count, u"+"_s), "four"), "");
}

TEST(OwnServer, RatesByNumberUnlessATextStandsBeforeThePerCentSign) {
    EXPECT_TRUE(OwnProfile(WithRating(RatingKeys::number)).RatesByNumber());
    EXPECT_TRUE(OwnProfile(WithRating(RatingKeys::behind, u"="_s)).RatesByNumber());
    EXPECT_TRUE(OwnProfile(WithRating(RatingKeys::count, u"*"_s)).RatesByNumber());
    EXPECT_FALSE(OwnProfile(WithRating(RatingKeys::percent)).RatesByNumber());
}

TEST(OwnServer, IsAProfileThatNothingProposes) {
    OwnServer server = WithRating(RatingKeys::number);
    server.senders = u"X-From, Return-Path"_s;
    server.recipients = u"X-To"_s;
    server.recipientsRepeat = true;
    server.reasons = u"X-Why"_s;
    const ServerProfile& profile = OwnProfile(server);
    EXPECT_EQ(profile.key, u"own"_s);
    EXPECT_TRUE(profile.marks.isEmpty());
    EXPECT_EQ(profile.wanted.Count(), 4U + 1 + 2);
    ASSERT_EQ(profile.recipients.size(), 1U);
    EXPECT_TRUE(profile.recipients[0].repeats);
    EXPECT_FALSE(profile.senders[0].repeats);
    EXPECT_EQ(profile.reasons, QByteArrayList{"X-Why"});
    EXPECT_EQ(profile.packing, Packing::Never);
    EXPECT_TRUE(profile.places.folders.isEmpty());
    EXPECT_TRUE(profile.places.listsOthers);
}

TEST(OwnServer, SaysWhichFilesAreMessages) {
    OwnServer server;
    server.maildir = true;
    server.ending = u".msg"_s;
    server.packed = true;
    const ServerProfile& profile = OwnProfile(server);
    EXPECT_EQ(profile.places.folders, (QStringList{u"new"_s, u"cur"_s}));
    EXPECT_FALSE(profile.places.listsOthers);
    EXPECT_TRUE(IsMessageName(profile.places, u"new/1.MSG"_s));
    EXPECT_FALSE(IsMessageName(profile.places, u"new/1.eml"_s));
    EXPECT_EQ(profile.packing, Packing::Possible);
}

TEST(OwnServer, WithoutFieldsReadsNoneOfThem) {
    const HeaderFields fields =
        ParseHeaderFields(": 5\r\nReturn-Path: <a@b.c>\r\nSubject: s\r\n\r\n", OwnProfile(OwnServer()));
    EXPECT_EQ(fields.rating, QString());
    EXPECT_EQ(fields.xSender, QString());
    EXPECT_EQ(fields.subject, u"s"_s);
}

TEST(OwnServer, LeavesOutWhatCannotBeTheNameOfAField) {
    OwnServer server = WithRating(RatingKeys::number);
    server.rating = u"X Junk"_s;
    server.senders = u"X-From:, From, X-\u00C4, ,X-Sender"_s;
    server.reasons = u"a b, Subject"_s;
    server.ending = u"/x"_s;
    const ServerProfile& profile = OwnProfile(server);
    EXPECT_TRUE(profile.ratings.empty());
    ASSERT_EQ(profile.senders.size(), 1U);
    EXPECT_EQ(profile.senders[0].name, "X-Sender");
    EXPECT_EQ(profile.reasons, QByteArrayList{"Subject"});
    EXPECT_TRUE(profile.places.listsOthers);
}

TEST(OwnServer, IsMadeOnceForEachDescriptionAndStays) {
    OwnServer server = WithRating(RatingKeys::number);
    const ServerProfile& first = OwnProfile(server);
    EXPECT_EQ(&OwnProfile(server), &first);
    for (int number = 0; number < 100; ++number) {
        server.reasons = u"X-Why-%1"_s.arg(number);
        EXPECT_NE(&OwnProfile(server), &first);
    }
    EXPECT_EQ(&OwnProfile(WithRating(RatingKeys::number)), &first);
    EXPECT_EQ(first.ratings.at(0).name, QByteArray("X-Junk"));
}

TEST(OwnServer, IsMadeOnceForAllThreads) {
    std::vector<const ServerProfile*> made(8);
    std::vector<std::thread> threads;
    for (const ServerProfile*& profile : made) {
        threads.emplace_back([&profile] {
            for (int number = 0; number < 50; ++number) {
                OwnServer server = WithRating(RatingKeys::number);
                server.reasons = u"X-Thread-%1"_s.arg(number);
                profile = &OwnProfile(server);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(std::count(made.begin(), made.end(), made.front()), 8);
}

TEST(OwnServer, ReadsAMessageOfItsServer) {
    OwnServer server;
    server.rating = u"X-Junk-Verdict"_s;
    server.ratingForm = QLatin1String(RatingKeys::behind);
    server.ratingText = u"points="_s;
    server.senders = u"X-Mail-From"_s;
    QFile file(QStringLiteral(QUELLBOX_TEST_DATA "/servers/own.eml"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const HeaderFields fields = ParseHeaderFields(file.readAll(), OwnProfile(server));
    EXPECT_EQ(fields.rating, u"21.5"_s);
    EXPECT_EQ(fields.xSender, u"bounce@shop.example"_s);
}

TEST(FieldNames, AreVisibleAsciiWithoutAColon) {
    EXPECT_TRUE(IsFieldName(u"X-Spam_Score!"_s));
    EXPECT_TRUE(IsFieldName(u"~"_s));
    for (const char16_t* name : {u"", u"a:", u"a b", u"a\t", u"\u00E4", u"\x7F", u" a"}) {
        EXPECT_FALSE(IsFieldName(QString::fromUtf16(name))) << QString::fromUtf16(name).toStdString();
    }
    EXPECT_EQ(SplitFieldNames(u" A,b ,, C c "_s), (QStringList{u"A"_s, u"b"_s, u"C c"_s}));
    EXPECT_TRUE(SplitFieldNames(u" , "_s).isEmpty());
}

TEST(FieldNames, KnowWhatBelongsToAMessage) {
    for (const char* name : {"From", "TO", "subject", "Date", "Message-ID", "Received", "DKIM-Signature", "List-Id",
                             "MIME-Version", "Content-Type", "Reply-To", "Cc", "Bcc", "Resent-To"}) {
        EXPECT_TRUE(IsFieldOfMessage(name)) << name;
    }
    for (const char* name : {"X-From", "Return-Path", "Delivered-To", "Listed", "Received-SPF", ""}) {
        EXPECT_FALSE(IsFieldOfMessage(name)) << name;
    }
}

} // namespace quellbox

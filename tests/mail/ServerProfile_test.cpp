#include "mail/HeaderFields.h"

#include <QFile>

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

HeaderFields Parse(const char* profile, const QByteArray& header) {
    return ParseHeaderFields(header + "\r\nbody\r\n", ProfileOf(QLatin1String(profile)));
}

std::string Rating(const char* profile, const QByteArray& header) {
    return Parse(profile, header).rating.toStdString();
}

std::string Sender(const char* profile, const QByteArray& header) {
    return Parse(profile, header).xSender.toStdString();
}

} // namespace

TEST(DefaultProfile, RatesByWhatPrecedesTheFirstPerCentSign) {
    EXPECT_EQ(Rating("imf", "X-SCL: 7 53.21%\r\n"), "7 53.21");
    EXPECT_EQ(Rating("imf", "X-SCL: 9 1% 2%\r\n"), "9 1");
    EXPECT_EQ(Rating("imf", "X-SCL: %9\r\n"), "");
    EXPECT_EQ(Rating("imf", "X-SCL: 7\r\n"), "");
    EXPECT_EQ(Rating("imf", "X-SCL:\r\n"), "");
    EXPECT_EQ(Rating("imf", "Subject: none\r\n"), "");
}

TEST(DefaultProfile, TakesTheWholeSecondFieldWhenTheFirstIsAbsent) {
    EXPECT_EQ(Rating("imf", "X-SMSMSE-SCL: 9\r\n"), "9");
    EXPECT_EQ(Rating("imf", "X-SMSMSE-SCL: 9% sure\r\n"), "9");
}

TEST(DefaultProfile, AsksTheSecondFieldOnlyWhenTheFirstIsAbsent) {
    EXPECT_EQ(Rating("imf", "X-SMSMSE-SCL: 9\r\nX-SCL: 7\r\n"), "");
    EXPECT_EQ(Rating("imf", "X-SMSMSE-SCL: 9\r\nX-SCL: 7%\r\n"), "7");
    EXPECT_EQ(Rating("imf", "X-SMSMSE-SCL: 9\r\nX-SCL:\r\n"), "");
}

TEST(DefaultProfile, TakesTheEnvelopeSenderAsItStands) {
    EXPECT_EQ(Sender("imf", "x-sender: <a@example.org> \r\n"), "<a@example.org>");
    EXPECT_EQ(Sender("imf", "Return-Path: <a@example.org>\r\n"), "");
}

TEST(DefaultProfile, IsTheFirstAndStandsInForUnknownOnes) {
    EXPECT_EQ(&ProfileOf(u"imf"_s), &ServerProfiles().front());
    EXPECT_EQ(&ProfileOf(u"somebody else's"_s), &ServerProfiles().front());
    EXPECT_EQ(&ProfileOf(QString()), &ServerProfiles().front());
    EXPECT_FALSE(ServerProfiles().front().RatesByNumber());
    EXPECT_TRUE(ServerProfiles().front().reasons.isEmpty());
}

TEST(ServerProfile, HasAKeyOfItsOwnAndFitsIntoTheScanner) {
    std::set<QString> keys;
    for (const ServerProfile& profile : ServerProfiles()) {
        EXPECT_TRUE(keys.insert(profile.key).second) << profile.key.toStdString();
        EXPECT_EQ(profile.wanted.Count(), 4 + profile.ratings.size() + profile.senders.size());
        EXPECT_NE(profile.marks.isEmpty(), profile.places.folders.isEmpty()) << "either tells the server";
    }
    EXPECT_EQ(ProfileOf(u"Amavis"_s).key, u"amavis"_s);
}

TEST(ServerProfile, OfExchangeReadsALevelAndAPathWithParameters) {
    EXPECT_EQ(Rating("exchange", "X-MS-Exchange-Organization-SCL: 7\r\n"), "7");
    EXPECT_EQ(Rating("exchange", "X-MS-Exchange-Organization-SCL: -1\r\n"), "-1");
    EXPECT_EQ(Sender("exchange", "X-Sender: <a@example.org> BODY=8BITMIME\r\n"), "a@example.org");
    EXPECT_EQ(Sender("exchange", "X-Sender: a@example.org BODY=7bit\r\nReturn-Path: <b@example.org>\r\n"),
              "a@example.org");
    EXPECT_EQ(Sender("exchange", "Return-Path: <b@example.org>\r\n"), "b@example.org");
}

TEST(ServerProfile, OfSpamAssassinReadsScoreHitsOrStars) {
    EXPECT_EQ(Rating("spamassassin", "X-Spam-Status: Yes, score=15.2 required=5.0 tests=BAYES_99,\r\n"
                                     "\tHTML_MESSAGE autolearn=spam version=3.4.6\r\n"),
              "15.2");
    EXPECT_EQ(Rating("spamassassin", "X-Spam-Status: No, hits=-2.6 required=5.0\r\n"), "-2.6");
    EXPECT_EQ(Rating("spamassassin", "X-Spam-Status: Yes\r\nX-Spam-Level: ******* \r\n"), "7");
    EXPECT_EQ(Rating("spamassassin", "X-Spam-Level:\r\n"), "0");
    EXPECT_EQ(Rating("spamassassin", "X-Spam-Level: 5\r\n"), "");
    EXPECT_EQ(Rating("spamassassin", "X-Spam-Status: Yes\r\n"), "");
}

TEST(ServerProfile, OfRspamdReadsTheScoreOfAllLimits) {
    EXPECT_EQ(Rating("rspamd", "X-Spamd-Result: default: True [24.31 / 15.00];\r\n\tGTUBE(0.00)[]\r\n"), "24.31");
    EXPECT_EQ(Rating("rspamd", "X-Rspamd-Score: -1.30\r\n"), "-1.30");
    EXPECT_EQ(Rating("rspamd", "X-Spamd-Result: none\r\nX-Rspamd-Score: 3\r\n"), "3");
}

TEST(ServerProfile, OfAmavisReadsTheEnvelopeOfAQuarantine) {
    const QByteArray header = "X-Envelope-From: <bounce+1@example.org>\r\nX-Envelope-To: <r@example.com>\r\n"
                              "X-Quarantine-ID: <dCGTxyz>\r\nX-Spam-Flag: YES\r\nX-Spam-Score: 999.801\r\n";
    EXPECT_EQ(Rating("amavis", header), "999.801");
    EXPECT_EQ(Sender("amavis", header), "bounce+1@example.org");
    EXPECT_EQ(Sender("amavis", "X-Envelope-From: <>\r\nReturn-Path: <b@example.org>\r\n"), ""); // a bounce
}

TEST(ServerProfile, ReadsAMessageOfItsServer) {
    const std::map<QString, std::pair<QString, QString>> expected{
        {u"imf"_s, {u"7 83.15"_s, u"offers@shop.example"_s}},
        {u"exchange"_s, {u"9"_s, u"bounce@shop.example"_s}},
        {u"amavis"_s, {u"13.402"_s, u"bounce@shop.example"_s}},
        {u"rspamd"_s, {u"16.50"_s, u"bounce@shop.example"_s}},
        {u"spamassassin"_s, {u"8.7"_s, u"bounce@shop.example"_s}},
        {u"maildir"_s, {u"12.4"_s, u"bounce@shop.example"_s}}};
    for (const ServerProfile& profile : ServerProfiles()) {
        QFile file(QStringLiteral(QUELLBOX_TEST_DATA "/servers/%1.eml").arg(profile.key));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
        const QByteArray bytes = file.readAll();
        const HeaderFields fields = ParseHeaderFields(bytes, profile);
        EXPECT_EQ(std::pair(fields.rating, fields.xSender), expected.at(profile.key)) << profile.key.toStdString();
        const FieldValueList marks = FieldValues(bytes, WantedFields(profile.marks));
        EXPECT_EQ(std::any_of(marks.begin(), marks.end(), [](const auto& mark) { return mark.has_value(); }),
                  profile.places.folders.isEmpty())
            << profile.key.toStdString();
    }
}

TEST(ServerProfile, TakesNoNumberWhereThereIsNone) {
    for (const char* value : {"", "-", ".", "+", "high", "e5"}) {
        EXPECT_EQ(Rating("exchange", QByteArray("X-MS-Exchange-Organization-SCL: ") + value + "\r\n"), "") << value;
    }
    EXPECT_EQ(Rating("exchange", "X-MS-Exchange-Organization-SCL: 5.5.5\r\n"), "5.5");
    EXPECT_EQ(Rating("exchange", "X-MS-Exchange-Organization-SCL: +5.\r\n"), "5");
    EXPECT_EQ(Rating("exchange", "X-MS-Exchange-Organization-SCL: " + QByteArray(400, '9') + "\r\n"), "");
}

TEST(ServerProfile, ReadsPathsOfEveryForm) {
    for (const auto& [value, address] : std::initializer_list<std::pair<const char*, const char*>>{
             {"a@example.org", "a@example.org"},
             {" < a@example.org > ", "a@example.org"},
             {"<>", ""},
             {"<\"a> b\"@example.org> BODY=7BIT", "\"a> b\"@example.org"},
             {"\"a b\"@example.org X=1", "\"a b\"@example.org"},
             {"<\"a\\\"> b\"@c.d>", "\"a\\\"> b\"@c.d"},
             {"<@one.example,@two.example:a@b.c>", "a@b.c"},
             {"<a@b.c", "a@b.c"},
             {"<=?utf-8?q?friend=40x.org=3E?=@evil.example>", "=?utf-8?q?friend=40x.org=3E?=@evil.example"},
             {"<\xC3\xA4@b.c>", "\xC3\xA4@b.c"}}) {
        EXPECT_EQ(Sender("rspamd", QByteArray("Return-Path: ") + value + "\r\n"), address) << value;
    }
    EXPECT_EQ(Sender("rspamd", "Return-Path:\r\n <a@\r\n b.c>\r\n"), "a@ b.c");
}

TEST(ServerProfile, ReadsARatingOnWhicheverLineOfItsFieldItStands) {
    for (const char* field :
         {"Yes, score=12.5\n required=5", "Yes,\n score=12.5 required=5", "Yes,\n\tscore=12.5\n\ttests",
          "Yes, score=\n 12.5", "Yes, score=12.5\r\n tests=\xE4", "\xE4, score=12.5\n tests",
          "Yes,\tscore=12.5\r\n tests", "=?utf-8?q?Yes=2C_score=3D12=2E5?=\n tests", "=?utf-8?q?Yes=2C?=\n score=12.5",
          "Yes, score=none\n score=12.5 score=12.5"}) {
        const bool isNone = QByteArray(field).contains("none"); // the first place counts
        EXPECT_EQ(Rating("spamassassin", QByteArray("X-Spam-Status: ") + field + "\n"), isNone ? "" : "12.5") << field;
    }
    EXPECT_EQ(Rating("spamassassin", "X-Spam-Status: Yes, score=12\n .5\n"), "12") << "a fold is a blank";
    EXPECT_EQ(Rating("spamassassin", "X-Spam-Status: Yes, score=12.\n 5\n"), "12");
}

TEST(ServerProfile, BelievesNoSenderThatTheSenderWrote) {
    const QByteArray received = "Received: from x by y; Mon, 2 Mar 2026 09:15:00 +0000\r\n";
    for (const auto& [key, field] :
         std::initializer_list<std::pair<const char*, const char*>>{{"exchange", "X-Sender"},
                                                                    {"amavis", "X-Envelope-From"},
                                                                    {"rspamd", "Return-Path"},
                                                                    {"spamassassin", "X-Envelope-From"}}) {
        const QByteArray line = QByteArray(field) + ": <friend@example.org>\r\n";
        EXPECT_EQ(Sender(key, line + received), "friend@example.org") << key;
        EXPECT_EQ(Sender(key, received + line), "") << key;
    }
    EXPECT_EQ(Sender("spamassassin",
                     "Return-Path: <evil@x.org>\r\n" + received + "X-Envelope-From: <friend@example.org>\r\n"),
              "evil@x.org");
    EXPECT_EQ(Sender("imf", received + "X-Sender: a@b.c\r\n"), "a@b.c");
}

TEST(ServerProfile, KnowsWhichRatingsAreNumbers) {
    const std::vector<ServerProfile>& all = ServerProfiles();
    EXPECT_TRUE(std::all_of(all.begin() + 1, all.end(), [](const auto& profile) { return profile.RatesByNumber(); }));
}

TEST(FieldValues, AreThoseOfTheNamesThatAreAskedFor) {
    const auto values =
        FieldValues("B: two\r\na: =?utf-8?q?=C3=A4?=\r\nB: three\r\n\r\nC: no\r\n", WantedFields({"A", "B", "C", "B"}));
    ASSERT_EQ(values.size(), 4U);
    EXPECT_EQ(values[0], u"ä"_s);
    EXPECT_EQ(values[1], u"two"_s);
    EXPECT_FALSE(values[2].has_value());
    EXPECT_EQ(values[3], u"two"_s);
    EXPECT_FALSE(FieldValues("no message", WantedFields({"A"})).front().has_value());
}

} // namespace quellbox

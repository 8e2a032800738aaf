#include "mail/HeaderFields.h"

#include <QFile>

#include <gtest/gtest.h>

namespace quellbox {

namespace {

HeaderFields FieldsOfSample(const char* name, const char* profile) {
    QFile file(QStringLiteral(QUELLBOX_TEST_DATA "/servers/") + QLatin1String(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
    return ParseHeaderFields(file.readAll(), ProfileOf(QLatin1String(profile)));
}

} // namespace

// The samples are files that "make mail-test" has got from real servers.

TEST(ServerSample, OfAmavisHasTheEnvelopeOnTop) {
    const HeaderFields fields = FieldsOfSample("amavis-postfix.eml", "amavis");
    EXPECT_EQ(fields.rating, QStringLiteral("13.801"));
    EXPECT_EQ(fields.xSender, QStringLiteral("bounce-6@shop.test"));
}

TEST(ServerSample, OfSpamAssassinHasNoSenderWhereItIsABounce) {
    const HeaderFields fields = FieldsOfSample("spamassassin-postfix.eml", "spamassassin");
    EXPECT_EQ(fields.rating, QStringLiteral("13.8"));
    EXPECT_EQ(fields.xSender, QString());
}

TEST(ServerSample, OfRspamdHasTheRatingBelowTheSendersOwnFields) {
    const HeaderFields fields = FieldsOfSample("rspamd-postfix.eml", "rspamd");
    EXPECT_EQ(fields.rating, QStringLiteral("10.80"));
    EXPECT_EQ(fields.xSender, QStringLiteral("bounce-6@shop.test"));
}

TEST(ServerSample, OfRspamdHasNoRatingWhereATestLineDecided) {
    const HeaderFields fields = FieldsOfSample("rspamd-postfix-marked.eml", "rspamd");
    EXPECT_EQ(fields.rating, QString());
    EXPECT_EQ(fields.xSender, QStringLiteral("bounce-10@shop.test"));
}

} // namespace quellbox

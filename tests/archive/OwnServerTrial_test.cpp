#include "archive/OwnServerTrial.h"

#include "platform/RuntimeError.h"
#include "tests/support/Gzip.h"
#include "tests/support/MemoryFileSystem.h"
#include "tests/support/RunUntil.h"

#include <QFile>

#include <gtest/gtest.h>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

class OwnServerTrialTest : public testing::Test {
protected:
    OwnServerTrialTest() {
        files_.AddFolder(u"/archive/"_s);
        server_.rating = u"X-Junk-Verdict"_s;
        server_.ratingForm = QLatin1String(RatingKeys::behind);
        server_.ratingText = u"points="_s;
        server_.senders = u"X-Mail-From"_s;
        server_.recipients = u"X-Rcpt-To"_s;
        server_.recipientsRepeat = true;
        server_.reasons = u"X-Junk-Flag"_s;
    }

    OwnServerTrial::Result Try(const QString& folder = u"/archive/"_s) {
        std::optional<OwnServerTrial::Result> found;
        ThreadWorkPool pool;
        OwnServerTrial trial(files_, pool, Folder(folder), server_,
                             [&found](const OwnServerTrial::Result& result) { found = result; });
        trial.Start();
        EXPECT_TRUE(RunUntil([&found] { return found.has_value(); }));
        return found.value_or(OwnServerTrial::Result());
    }

    static QByteArray Sample() {
        QFile file(QStringLiteral(QUELLBOX_TEST_DATA "/servers/own.eml"));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

    MemoryFileSystem files_;
    OwnServer server_;
};

} // namespace

TEST_F(OwnServerTrialTest, ShowsWhatTheFieldsHoldInTheNewestMessage) {
    files_.Add(u"/archive/old.eml"_s, "X-Junk-Verdict: points=1\r\nSubject: old\r\n\r\n", 1);
    files_.Add(u"/archive/new.eml"_s, Sample(), 2);
    const OwnServerTrial::Result result = Try();
    EXPECT_EQ(result.file, u"new.eml"_s);
    EXPECT_EQ(result.error, QString());
    EXPECT_EQ(result.rating, u"21.5"_s);
    EXPECT_EQ(result.sender, u"bounce@shop.example"_s);
    EXPECT_EQ(result.recipients, (QStringList{u"anna@example.com"_s, u"ben@example.com"_s}));
}

TEST_F(OwnServerTrialTest, OfAFieldThatDoesNotRepeatTakesTheTopmost) {
    files_.Add(u"/archive/new.eml"_s, Sample());
    server_.recipientsRepeat = false;
    EXPECT_EQ(Try().recipients, QStringList{u"anna@example.com"_s});
}

TEST_F(OwnServerTrialTest, BelievesNoRecipientsBelowAFieldThatIsNotNamed) {
    files_.Add(u"/archive/new.eml"_s, Sample());
    server_.reasons.clear();
    const OwnServerTrial::Result result = Try();
    EXPECT_TRUE(result.recipients.isEmpty());
    EXPECT_EQ(result.sender, u"bounce@shop.example"_s);
}

TEST_F(OwnServerTrialTest, UnpacksIfTheServerPacks) {
    files_.Add(u"/archive/new.gz"_s, Gzip(Sample()));
    EXPECT_NE(Try().error, QString());
    server_.packed = true;
    EXPECT_EQ(Try().error, QString());
    EXPECT_EQ(Try().rating, u"21.5"_s);
}

TEST_F(OwnServerTrialTest, ReadsNoMoreThanAHeaderBlockMayHave) {
    files_.Add(u"/archive/long.eml"_s, Sample() + QByteArray(3 * kMaximumHeaderBytes, 'x'));
    EXPECT_EQ(Try().rating, u"21.5"_s);
    files_.Add(u"/archive/long.eml"_s, "A: " + QByteArray(2 * kMaximumHeaderBytes, 'x') + "\r\n\r\n");
    EXPECT_NE(Try().error, QString());
}

TEST_F(OwnServerTrialTest, SaysWhatCannotBeRead) {
    EXPECT_EQ(Try().file, QString());
    EXPECT_EQ(Try().error, QString());
    EXPECT_NE(Try(u"/elsewhere/"_s).error, QString());
    files_.Add(u"/archive/a.eml"_s, Sample());
    files_.SetReadHook([](const QString& path) { throw FileError(path, u"locked"_s); });
    const OwnServerTrial::Result result = Try();
    EXPECT_TRUE(result.error.endsWith(u"locked"_s)) << result.error.toStdString();
}

} // namespace quellbox

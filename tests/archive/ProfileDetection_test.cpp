#include "archive/ProfileDetection.h"

#include "platform/RuntimeError.h"
#include "tests/support/MemoryFileSystem.h"
#include "tests/support/RunUntil.h"

#include <gtest/gtest.h>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

class ProfileDetectionTest : public testing::Test {
protected:
    ProfileDetectionTest() { files_.AddFolder(u"/archive/"_s); }

    void Add(int number, const QByteArray& header) {
        files_.Add(u"/archive/m%1.eml"_s.arg(number, 3, 10, QLatin1Char('0')), header + "From: a@b.c\r\n\r\nbody",
                   number);
    }

    ProfileDetection::Result Detect(const QString& folder = u"/archive/"_s) {
        std::optional<ProfileDetection::Result> found;
        ThreadWorkPool pool;
        ProfileDetection detection(files_, pool, Folder(folder),
                                   [&found](ProfileDetection::Result result) { found = std::move(result); });
        detection.Start();
        EXPECT_TRUE(RunUntil([&found] { return found.has_value(); }));
        return found.value_or(ProfileDetection::Result());
    }

    MemoryFileSystem files_;
};

QString KeyOf(const ProfileDetection::Result& result) {
    return result.profile == nullptr ? QString() : result.profile->key;
}

} // namespace

TEST_F(ProfileDetectionTest, ProposesWhatMostMessagesAreMarkedWith) {
    Add(1, "X-SCL: 7 80%\r\n");
    Add(2, "X-Spamd-Result: default: True [16.50 / 15.00]\r\n");
    Add(3, "X-Rspamd-Score: 20\r\n");
    Add(4, "");
    const ProfileDetection::Result result = Detect();
    EXPECT_EQ(KeyOf(result), u"rspamd"_s);
    EXPECT_EQ(result.marked, 2);
    EXPECT_EQ(result.looked, 4);
}

TEST_F(ProfileDetectionTest, TellsAmavisFromTheFilterThatItCalls) {
    Add(1, "X-Envelope-From: <a@b.c>\r\nX-Quarantine-ID: <x>\r\nX-Spam-Status: Yes, score=13\r\n");
    EXPECT_EQ(KeyOf(Detect()), u"amavis"_s);
}

TEST_F(ProfileDetectionTest, TellsAMaildirByItsFolders) {
    files_.Add(u"/archive/new/1.a"_s, "X-Rspamd-Score: 20\r\n\r\nbody");
    files_.AddFolder(u"/archive/cur"_s);
    const ProfileDetection::Result result = Detect();
    EXPECT_EQ(KeyOf(result), u"maildir"_s);
    EXPECT_EQ(result.marked, 1);
    EXPECT_EQ(result.looked, 1);
}

TEST_F(ProfileDetectionTest, LooksAtTheNewestOnly) {
    for (int number = 0; number < 60; ++number) {
        Add(number, number < 40 ? "X-SCL: 7 80%\r\n" : "X-Spam-Status: Yes, score=13\r\n");
    }
    const ProfileDetection::Result result = Detect();
    EXPECT_EQ(result.looked, 50);
    EXPECT_EQ(KeyOf(result), u"imf"_s); // 30 of the newest 50
    EXPECT_EQ(result.marked, 30);
}

TEST_F(ProfileDetectionTest, ProposesNothingWhereNoMessageSaysIt) {
    EXPECT_EQ(KeyOf(Detect()), QString());
    Add(1, "Subject: none\r\n");
    files_.Add(u"/archive/no message"_s, "%PDF-1.4");
    const ProfileDetection::Result result = Detect();
    EXPECT_EQ(KeyOf(result), QString());
    EXPECT_EQ(result.looked, 2);
    EXPECT_EQ(result.error, QString());
}

TEST_F(ProfileDetectionTest, SaysWhyTheArchiveCannotBeRead) {
    const ProfileDetection::Result result = Detect(u"/elsewhere/"_s);
    EXPECT_EQ(KeyOf(result), QString());
    EXPECT_NE(result.error, QString());
}

TEST_F(ProfileDetectionTest, GoesOnWhereAFileCannotBeRead) {
    Add(1, "X-SCL: 7 80%\r\n");
    Add(2, "X-SCL: 7 80%\r\n");
    files_.SetReadHook([](const QString& path) {
        if (path.endsWith(u"m002.eml"_s)) {
            throw FileError(path, u"locked"_s);
        }
    });
    const ProfileDetection::Result result = Detect();
    EXPECT_EQ(KeyOf(result), u"imf"_s);
    EXPECT_EQ(result.marked, 1);
    EXPECT_EQ(result.looked, 1);
    EXPECT_EQ(result.error, QString());
    files_.SetReadHook([](const QString& path) { throw FileError(path, u"locked"_s); });
    EXPECT_TRUE(Detect().error.endsWith(u"locked"_s));
}

TEST_F(ProfileDetectionTest, ProposesNothingThatLessThanHalfOfTheMessagesSay) {
    Add(1, "X-Spam-Status: Yes, score=9\r\n");
    Add(2, "");
    EXPECT_EQ(KeyOf(Detect()), u"spamassassin"_s);
    Add(3, "");
    EXPECT_EQ(KeyOf(Detect()), QString());
}

TEST_F(ProfileDetectionTest, DoesNotTakeAnEnvelopeFieldForAmavis) {
    Add(1, "X-Envelope-From: <a@b.c>\r\nX-Spam-Status: Yes, score=9\r\n");
    EXPECT_EQ(KeyOf(Detect()), u"spamassassin"_s);
}

} // namespace quellbox

#include "dialogs/PickupTest.h"

#include "platform/AnsiText.h"
#include "platform/RuntimeError.h"
#include "tests/support/FakeTransmitter.h"
#include "tests/support/MemoryFileSystem.h"
#include "tests/support/NotedRecord.h"

#include <QDir>

#include <gtest/gtest.h>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

const QString program = u"/opt/prog/"_s;
const QLocale german(QLocale::German, QLocale::Germany);

/// Tries a transmission whose outcome is the given one.
struct TriedTransmission {
    explicit TriedTransmission(const DeliveryOutcome& outcome) {
        transmissions.answer = [outcome](const Envelope&, const QByteArray&) { return outcome; };
        FakeTransmitter transmitter(transmissions);
        error = TryTransmissionTest(
            transmitter, "test", record, [] { return true; }, path);
    }

    FakeTransmissions transmissions;
    NotedRecord record;
    QString path;
    std::optional<QString> error;
};

} // namespace

TEST(PickupTest, TheProgramsFolderAndThoseBelowAreNotSetUp) {
    EXPECT_FALSE(IsPickupSetUp(u"/opt/prog/"_s, program));
    EXPECT_FALSE(IsPickupSetUp(u"/opt/prog/pickup/"_s, program));
    EXPECT_TRUE(IsPickupSetUp(u"/opt/"_s, program));
    EXPECT_TRUE(IsPickupSetUp(u"/opt/program/"_s, program));
    EXPECT_TRUE(IsPickupSetUp(u"/mnt/opt/prog/"_s, program));
}

TEST(PickupTest, AStoredFolderMayLackTheSeparator) {
    EXPECT_FALSE(IsPickupSetUp(QDir::toNativeSeparators(u"/opt/prog"_s), QDir::toNativeSeparators(program)));
}

TEST(PickupTest, AFolderOfAnotherCaseIsAnotherFolder) {
    EXPECT_TRUE(IsPickupSetUp(u"/opt/Prog/pickup/"_s, program));
}

TEST(PickupTest, TheMessageIsNineLinesByteForByte) {
    const QByteArray message = PickupTestMessage(u"Joe Doe"_s, u"/pickup/"_s, u"30.09.04 17:05:09"_s);
    EXPECT_EQ(message.toStdString(),
              "From: \"Quellbox\" <postmaster>\r\n"
              "TO: <postmaster>\r\n"
              "Subject: Joe Doe is testing the Exchange pickup folder\r\n"
              "\r\n"
              "Testing pickup folder: /pickup/ at 30.09.04 17:05:09\r\n"
              "\r\n"
              "If you can see this message, Quellbox has been set up correctly to deliver unblocked messages back to "
              "the Exchange server.\r\n"
              "\r\n"
              "Kind regards, Joe Doe\r\n");
}

TEST(PickupTest, AnUnknownUserNameLeavesItsPlaceEmpty) {
    const QByteArray message = PickupTestMessage({}, u"/pickup/"_s, u"today"_s);
    EXPECT_TRUE(message.contains("\r\nSubject:  is testing the Exchange pickup folder\r\n"));
    EXPECT_TRUE(message.endsWith("\r\nKind regards, \r\n"));
}

TEST(PickupTest, TheMessageIsInTheAnsiCodePage) {
    const QString name = u"J\u00FCrgen \u20AC \u4E2D"_s;
    const QByteArray message = PickupTestMessage(name, u"/Ablage \u00DF/"_s, {});
    EXPECT_TRUE(message.contains("Kind regards, " + AnsiText(name) + "\r\n"));
    EXPECT_TRUE(message.contains("folder: " + AnsiText(u"/Ablage \u00DF/"_s) + " at \r\n"));
    EXPECT_EQ(message.count("\r\n"), 9);
}

TEST(PickupTest, TheDateIsShortAndTheTimeLong) {
    const QDateTime moment(QDate(2026, 3, 10), QTime(17, 5, 9));
    const QString text = GeneralDate(moment, german);
    EXPECT_TRUE(text.startsWith(u"10.03.26 17:05:09"_s)) << text.toStdString();
    EXPECT_TRUE(
        GeneralDate(moment, QLocale(QLocale::English, QLocale::UnitedStates)).startsWith(u"3/10/26 5:05:09 PM"_s));
}

TEST(PickupTest, AtMidnightTheDateStandsAlone) {
    const QDate day(2026, 3, 10);
    EXPECT_EQ(GeneralDate(QDateTime(day, QTime(0, 0)), german), u"10.03.26"_s);
    EXPECT_EQ(GeneralDate(QDateTime(day, QTime(0, 0, 0, 999)), german), u"10.03.26"_s);
    EXPECT_TRUE(GeneralDate(QDateTime(day, QTime(0, 0, 1)), german).startsWith(u"10.03.26 00:00:01"_s));
    EXPECT_TRUE(GeneralDate(QDateTime(day, QTime(23, 59, 59, 999)), german).startsWith(u"10.03.26 23:59:59"_s));
}

TEST(PickupTest, TheDateHasNoBlanksThatTheCodePageLacks) {
    const QDateTime moment(QDate(2026, 3, 10), QTime(17, 5, 9));
    for (const QLocale& locale :
         QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::LatinScript, QLocale::AnyTerritory)) {
        const QString text = GeneralDate(moment, locale);
        EXPECT_FALSE(text.contains(QChar(0x202F)) || text.contains(QChar(0x00A0))) << text.toStdString();
    }
}

TEST(PickupTest, ThePathKeepsBothSeparators) {
    const QString separator = QDir::separator();
    EXPECT_EQ(PickupTestPath(u"/pickup/"_s), u"/pickup/"_s + separator + u"quellbox.eml"_s);
    EXPECT_EQ(PickupTestPath(u"/pickup"_s), u"/pickup"_s + separator + u"quellbox.eml"_s);
}

TEST(PickupTest, OnAShareTheFileStandsBehindABackslash) {
    EXPECT_EQ(PickupTestPath(uR"(\\nas\mail\)"_s).toStdString(), R"(\\nas\mail\\quellbox.eml)");
    EXPECT_EQ(PickupTestPath(uR"(\\nas\mail)"_s).toStdString(), R"(\\nas\mail\quellbox.eml)");
}

TEST(PickupTest, ASecondTestReplacesTheFirst) {
    MemoryFileSystem files;
    files.AddFolder(u"/pickup/"_s);
    WritePickupTest(files, u"first"_s, u"/pickup/"_s, {});
    WritePickupTest(files, u"second"_s, u"/pickup/"_s, {});
    EXPECT_EQ(files.Paths(), QStringList{u"/pickup/quellbox.eml"_s});
    EXPECT_TRUE(files.Bytes(u"/pickup/quellbox.eml"_s).endsWith("Kind regards, second\r\n"));
}

TEST(PickupTest, AMissingFolderIsAnErrorThatNamesThePath) {
    MemoryFileSystem files;
    try {
        WritePickupTest(files, u"joe"_s, u"/none/"_s, {});
        FAIL() << "no error";
    } catch (const FileError& error) {
        EXPECT_EQ(error.Path(), PickupTestPath(u"/none/"_s));
        EXPECT_FALSE(error.Reason().isEmpty());
    }
    EXPECT_TRUE(files.Paths().isEmpty());
}

TEST(PickupTest, TheRecordIsToldThatTheMessageWasWritten) {
    MemoryFileSystem files;
    files.AddFolder(u"/pickup/"_s);
    NotedRecord record;
    EXPECT_EQ(TryPickupTest(files, u"joe"_s, u"/pickup/"_s, u"now"_s, record), std::nullopt);
    EXPECT_EQ(files.Bytes(u"/pickup/quellbox.eml"_s), PickupTestMessage(u"joe"_s, u"/pickup/"_s, u"now"_s));
    ASSERT_EQ(record.taken.size(), 1U);
    EXPECT_EQ(record.taken[0].message.Key(), u"quellbox.eml"_s);
    EXPECT_FALSE(record.taken[0].failure);
    EXPECT_FALSE(record.taken[0].isFinal);
}

TEST(PickupTest, TheRecordIsToldWhyTheMessageCouldNotBeWritten) {
    MemoryFileSystem files;
    NotedRecord record;
    const std::optional<QString> error = TryPickupTest(files, u"joe"_s, u"/none/"_s, {}, record);
    ASSERT_TRUE(error);
    ASSERT_EQ(record.taken.size(), 1U);
    ASSERT_TRUE(record.taken[0].failure);
    EXPECT_EQ(record.taken[0].failure->path, PickupTestPath(u"/none/"_s));
    EXPECT_EQ(record.taken[0].failure->reason, *error);
}

TEST(PickupTest, AMessageThatTheServerHasCannotBeTakenBack) {
    const TriedTransmission tried({DeliveryFate::Delivered, u"250 queued"_s});
    EXPECT_EQ(tried.error, std::nullopt);
    EXPECT_TRUE(tried.path.isEmpty());
    ASSERT_EQ(tried.transmissions.sent.size(), 1U);
    EXPECT_EQ(tried.transmissions.sent[0].first.recipients, QByteArrayList{"postmaster"});
    EXPECT_TRUE(tried.transmissions.sent[0].first.sender.isEmpty());
    EXPECT_EQ(tried.transmissions.sent[0].second, "test");
    ASSERT_EQ(tried.record.taken.size(), 1U);
    EXPECT_EQ(tried.record.taken[0].detail, u"250 queued"_s);
    EXPECT_TRUE(tried.record.taken[0].isFinal);
}

TEST(PickupTest, AFileThatTheServerHasYetToTakeIsNamed) {
    const TriedTransmission tried({DeliveryFate::Delivered, {}, u"/replay/quellbox.eml"_s});
    EXPECT_EQ(tried.error, std::nullopt);
    EXPECT_EQ(tried.path, u"/replay/quellbox.eml"_s);
    ASSERT_EQ(tried.record.taken.size(), 1U);
    EXPECT_FALSE(tried.record.taken[0].isFinal);
}

TEST(PickupTest, WhatTheServerDoesNotTakeIsToldInItsWords) {
    for (const DeliveryFate fate : {DeliveryFate::Refused, DeliveryFate::Failed, DeliveryFate::Uncertain}) {
        const TriedTransmission tried({fate, u"550 no"_s, u"/ignored"_s});
        EXPECT_EQ(tried.error, u"550 no"_s);
        EXPECT_TRUE(tried.path.isEmpty());
        ASSERT_EQ(tried.record.taken.size(), 1U);
        ASSERT_TRUE(tried.record.taken[0].failure);
        EXPECT_EQ(tried.record.taken[0].failure->path, u"smtp://fake:25"_s);
        EXPECT_EQ(tried.record.taken[0].failure->reason, u"550 no"_s);
        EXPECT_TRUE(tried.record.taken[0].isFinal);
    }
}

} // namespace quellbox

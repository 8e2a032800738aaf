#include "mail/HeaderFields.h"

#include "mail/HeaderScanner.h"
#include "mail/LoadError.h"
#include "tests/support/MemoryFileSystem.h"

#include <gtest/gtest.h>

namespace quellbox {

namespace {

const QString kPath = QStringLiteral("/mail/a.eml");

std::string Subject(QByteArrayView bytes) {
    const HeaderFields fields = ParseHeaderFields(bytes);
    return fields.errorCode == 0 ? fields.subject.toStdString() : "error " + std::to_string(fields.errorCode);
}

HeaderFields Read(const QByteArray& bytes) {
    MemoryFileSystem files;
    files.Add(kPath, bytes, 0);
    return ReadHeaderFields(files, kPath, ServerProfiles().front());
}

int Code(LoadError error) {
    return static_cast<int>(error);
}

} // namespace

TEST(HeaderFields, FindsTheSixFieldsInAnyCase) {
    const HeaderFields fields = ParseHeaderFields("TO: r@example.org\r\nfrom: \"S\" <s@example.org>\r\n"
                                                  "sUBJECT: Hi\r\nx-scl: 7 53.21%\r\nX-Smsmse-Scl: 9\r\n"
                                                  "x-Sender: <e@example.org> \r\n\r\nTo: body\r\n");
    EXPECT_EQ(fields.errorCode, 0);
    EXPECT_EQ(fields.recipient, QStringLiteral("r@example.org"));
    EXPECT_EQ(fields.sender, QStringLiteral("\"S\" <s@example.org>"));
    EXPECT_EQ(fields.subject, QStringLiteral("Hi"));
    EXPECT_EQ(fields.rating, QStringLiteral("7 53.21"));
    EXPECT_EQ(fields.xSender, QStringLiteral("<e@example.org>"));
}

TEST(HeaderFields, AbsentFieldsAreEmpty) {
    const HeaderFields fields = ParseHeaderFields("Date: today\nX-SCL:\n\n");
    EXPECT_EQ(fields.errorCode, 0);
    EXPECT_TRUE(fields.recipient.isEmpty() && fields.sender.isEmpty() && fields.subject.isEmpty());
    EXPECT_TRUE(fields.xSender.isEmpty());
    EXPECT_TRUE(fields.rating.isEmpty());
}

TEST(HeaderFields, FirstOfSeveralFieldsCounts) {
    EXPECT_EQ(Subject("Subject: one\nSubject: two\n\n"), "one");
}

TEST(HeaderFields, BodyIsNotSearched) {
    EXPECT_EQ(Subject("Date: x\n\nSubject: body\n"), "");
    EXPECT_EQ(Subject("Date: x\r\n\r\nSubject: body\r\n"), "");
}

TEST(HeaderFields, LineOfSpacesContinuesAFieldAndEndsNothing) {
    EXPECT_EQ(Subject("Date: x\n   \nSubject: here\n\n"), "here");
}

TEST(HeaderFields, FoldedValueIsUnfolded) {
    EXPECT_EQ(Subject("Subject:\r\n one\r\n\ttwo\r\nTo: x\r\n\r\n"), "one two");
}

TEST(HeaderFields, SpaceBeforeTheColonIsAccepted) {
    EXPECT_EQ(Subject("Subject : a\n\n"), "a");
}

TEST(HeaderFields, LongerNameIsAnotherField) {
    EXPECT_EQ(Subject("Subjects: a\nSubject-X: b\nSubjec: c\n\n"), "");
}

TEST(HeaderFields, LineThatIsNoFieldIsSkippedAfterTheFirstField) {
    EXPECT_EQ(Subject("To: x\nrubbish\nSubject again: y\nSubject: z\n\n"), "z");
}

TEST(HeaderFields, ByteOrderMarkAndMboxLineAreAccepted) {
    EXPECT_EQ(Subject("\xEF\xBB\xBFSubject: a\n\n"), "a");
    EXPECT_EQ(Subject("From x@example.org Mon Jan  1 00:00:00 2024\nSubject: a\n\n"), "a");
    EXPECT_EQ(Subject("\xEF\xBB\xBF>From x\r\nSubject: a\r\n\r\n"), "a");
}

TEST(HeaderFields, EndOfFileEndsTheHeaderBlock) {
    EXPECT_EQ(Subject("Subject: a"), "a");
    EXPECT_EQ(Subject("Subject: a\r"), "a");
    EXPECT_EQ(Subject("Subject:"), "");
}

TEST(HeaderFields, EmptyFileIsAnError) {
    const HeaderFields fields = ParseHeaderFields("");
    EXPECT_EQ(fields.errorCode, Code(LoadError::Empty));
    EXPECT_EQ(fields.errorText, QStringLiteral("The file is empty"));
}

TEST(HeaderFields, BytesWithoutAFieldBeforeTheFirstBlankLineAreNoMessage) {
    for (const char* bytes :
         {"\n", "\nSubject: a\n\n", "\r\nSubject: a\r\n\r\n", "rubbish", "rubbish\n\nSubject: a\n\n", " Subject: a\n\n",
          ": a\n\n", "From x\n", "From x", "\xEF\xBB\xBF", "two words: a\n\n", "<html>\nbody{color: red}\n"}) {
        const HeaderFields fields = ParseHeaderFields(bytes);
        EXPECT_EQ(fields.errorCode, Code(LoadError::NoHeaderField)) << bytes;
        EXPECT_EQ(fields.errorText, QStringLiteral("Not a mail message: no header field found"));
    }
}

TEST(HeaderFields, BinaryFileIsNoMessageEvenWithAColonSomewhere) {
    EXPECT_EQ(ParseHeaderFields(QByteArrayView("PK\x03\x04\0\0\nab: c\n", 13)).errorCode,
              Code(LoadError::NoHeaderField));
    QByteArray noise;
    for (quint32 seed = 1, i = 0; i < 3'000'000; ++i)
        noise += static_cast<char>((seed = seed * 1664525U + 1013904223U) >> 24U);
    EXPECT_EQ(Read(noise).errorCode, Code(LoadError::NoHeaderField));
    EXPECT_EQ(Read(QByteArray(3'000'000, 'x')).errorCode, Code(LoadError::NoHeaderField));
    EXPECT_EQ(ParseHeaderFields(QByteArray(3'000'000, 'x')).errorCode, Code(LoadError::NoHeaderField));
}

TEST(HeaderFields, LinesThatAreNoFieldMayComeBeforeTheFirstField) {
    EXPECT_EQ(Subject("     \nMIME-Version: 1.0\nSubject: a\n\n"), "a");
    EXPECT_EQ(Subject(" From: x\nSubject: a\n\n"), "a");
    EXPECT_EQ(Subject("rubbish\nSubject: a\n\n"), "a");
}

TEST(HeaderFields, NulByteDoesNotCutAValue) {
    EXPECT_EQ(Subject(QByteArrayView("Subject: a\0b\nTo: c\n\n", 20)), "ab");
}

TEST(HeaderFields, MissingFileGivesTheFileSystemsText) {
    const MemoryFileSystem files;
    const HeaderFields fields = ReadHeaderFields(files, kPath, ServerProfiles().front());
    EXPECT_EQ(fields.errorCode, Code(LoadError::Unreadable));
    EXPECT_TRUE(fields.errorText.contains(kPath));
}

TEST(HeaderFields, EmptyFileOnDiskIsAnError) {
    EXPECT_EQ(Read("").errorCode, Code(LoadError::Empty));
}

TEST(HeaderFields, FieldsAcrossBlockBordersAreWhole) {
    for (qsizetype filler = 4060; filler <= 4110; ++filler) {
        const QByteArray bytes =
            "X-Filler: " + QByteArray(filler, 'x') + "\r\nSubject: one\r\n two\r\nTo: t\r\n\r\nbody";
        const HeaderFields fields = Read(bytes);
        ASSERT_EQ(fields.subject, QStringLiteral("one two")) << filler;
        ASSERT_EQ(fields.recipient, QStringLiteral("t")) << filler;
    }
}

TEST(HeaderFields, ReadingAgreesWithParsingForEveryLength) {
    const QByteArray whole = QByteArray("\xEF\xBB\xBF"
                                        "From x\r\nX: ") +
                             QByteArray(4070, 'y') + "\r\nTo: =?utf-8?q?=C3=BC?=\r\n more\r\nSubject: s\r\n\r\nbody";
    for (qsizetype size = 4000; size <= whole.size(); ++size) {
        const HeaderFields read = Read(whole.first(size));
        const HeaderFields parsed = ParseHeaderFields(whole.first(size));
        ASSERT_EQ(read.errorCode, parsed.errorCode) << size;
        ASSERT_EQ(read.recipient, parsed.recipient) << size;
        ASSERT_EQ(read.subject, parsed.subject) << size;
    }
}

TEST(HeaderFields, HeaderBlockUpToTheBoundLoadsAndOneByteMoreDoesNot) {
    const QByteArray head = "Subject: a\nX: ";
    const QByteArray fits = head + QByteArray(kMaximumHeaderBytes - head.size() - 2, 'x') + "\n\n";
    ASSERT_EQ(fits.size(), kMaximumHeaderBytes);
    EXPECT_EQ(Read(fits).errorCode, 0);
    EXPECT_EQ(Read(fits + "body").errorCode, 0);
    EXPECT_EQ(ParseHeaderFields(fits + "body").errorCode, 0);
    const QByteArray tooLarge = head + QByteArray(kMaximumHeaderBytes - head.size() - 1, 'x') + "\n\nbody";
    EXPECT_EQ(Read(tooLarge).errorCode, Code(LoadError::HeaderTooLarge));
    EXPECT_EQ(ParseHeaderFields(tooLarge).errorCode, Code(LoadError::HeaderTooLarge));
}

} // namespace quellbox

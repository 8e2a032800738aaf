#include "mail/PackedFile.h"

#include "mail/HeaderFields.h"
#include "tests/support/Gzip.h"
#include "tests/support/MemoryFileSystem.h"

#include <gtest/gtest.h>

namespace quellbox {
namespace {

using namespace Qt::StringLiterals;

const QByteArray text = "Subject: packed\r\nX-Spam-Score: 9\r\nReturn-Path: <a@b.c>\r\n\r\nbody\r\n";

/// Gives its bytes in pieces of one size.
class Pieces : public InputFile {
public:
    Pieces(QByteArray bytes, qint64 size) : bytes_(std::move(bytes)), size_(size) {}

    qint64 Read(char* buffer, qint64 capacity) override {
        const qint64 count = std::min({capacity, size_, bytes_.size() - at_});
        std::copy_n(bytes_.constData() + at_, count, buffer);
        at_ += count;
        return count;
    }

private:
    QByteArray bytes_;
    qint64 size_;
    qint64 at_ = 0;
};

QByteArray Unpack(const QByteArray& bytes, qint64 piece = 1000, qint64 most = kMaximumUnpackedBytes) {
    UnpackedFile file(std::make_unique<Pieces>(bytes, piece), u"/a/1.gz"_s, most);
    return ReadWhole(file);
}

/// The error of unpacking; None when there is none.
LoadError ErrorOf(const QByteArray& bytes, qint64 most = kMaximumUnpackedBytes) {
    try {
        Unpack(bytes, 1000, most);
        return LoadError::None;
    } catch (const PackedFileError& error) {
        EXPECT_EQ(error.Path(), u"/a/1.gz"_s);
        EXPECT_EQ(error.Reason(), LoadErrorText(error.Error()));
        EXPECT_FALSE(error.Reason().isEmpty());
        return error.Error();
    }
}

} // namespace

TEST(UnpackedFile, ReadsWhatIsPackedAndWhatIsNot) {
    for (const qint64 piece : {1, 2, 7, 100000}) {
        EXPECT_EQ(Unpack(Gzip(text), piece), text) << piece;
        EXPECT_EQ(Unpack(text, piece), text) << piece;
        EXPECT_EQ(Unpack(Gzip({}), piece), QByteArray()) << piece;
        for (const QByteArray& other :
             {QByteArray(), QByteArray("\x1F"), QByteArray("\x1Fx"), QByteArray("\x8B\x1F")}) {
            EXPECT_EQ(Unpack(other, piece), other) << piece;
        }
    }
    const QByteArray large = text.repeated(50'000);
    EXPECT_EQ(Unpack(Gzip(large)), large);
}

TEST(UnpackedFile, ReadsSeveralPackedOnesInARowAndPassesOverWhatElseFollows) {
    for (const qint64 piece : {1, 1000}) {
        EXPECT_EQ(Unpack(Gzip("one") + Gzip("two"), piece), "onetwo");
        EXPECT_EQ(Unpack(Gzip("one") + QByteArray(512, '\0'), piece), "one");
        EXPECT_EQ(Unpack(Gzip("one") + "\x1F", piece), "one");
    }
}

TEST(UnpackedFile, TellsWhatIsDamaged) {
    const QByteArray packed = Gzip(text);
    for (qsizetype size = 2; size < packed.size(); ++size) {
        EXPECT_EQ(ErrorOf(packed.first(size)), LoadError::Damaged) << size << " bytes are not the whole";
    }
    EXPECT_EQ(ErrorOf(packed), LoadError::None);
    QByteArray wrongSum = packed;
    wrongSum[packed.size() - 8] = static_cast<char>(~wrongSum[packed.size() - 8]);
    EXPECT_EQ(ErrorOf(wrongSum), LoadError::Damaged);
    EXPECT_EQ(ErrorOf("\x1F\x8Bnothing that was packed"), LoadError::Damaged);
}

TEST(UnpackedFile, EndsAtTheLimit) {
    const QByteArray packed = Gzip(QByteArray(200'000, 'x'));
    EXPECT_EQ(ErrorOf(packed, 200'000), LoadError::None);
    EXPECT_EQ(ErrorOf(packed, 199'999), LoadError::UnpackedTooLarge);
    const QByteArray bomb = Gzip(QByteArray(8 << 20, '\0')).repeated(17);
    EXPECT_LT(bomb.size(), 200'000);
    EXPECT_EQ(ErrorOf(bomb), LoadError::UnpackedTooLarge);
}

class PackedMessage : public testing::Test {
protected:
    HeaderFields Fields(const char* profile) {
        return ReadHeaderFields(files, u"/a/1"_s, ProfileOf(QLatin1String(profile)));
    }

    MemoryFileSystem files;
};

TEST_F(PackedMessage, IsReadUnpackedWhereTheServerPacks) {
    files.Add(u"/a/1"_s, Gzip(text));
    const HeaderFields fields = Fields("amavis");
    EXPECT_EQ(fields.errorCode, 0);
    EXPECT_EQ(fields.subject, u"packed"_s);
    EXPECT_EQ(fields.rating, u"9"_s);
    EXPECT_EQ(fields.xSender, u"a@b.c"_s);
    EXPECT_TRUE(fields.isPacked);
    EXPECT_EQ(Fields("imf").errorCode, static_cast<int>(LoadError::NoHeaderField));
    EXPECT_FALSE(Fields("imf").isPacked);
    EXPECT_EQ(ReadWholeMessage(files, u"/a/1"_s, Packing::Possible), text);
    EXPECT_EQ(ReadWholeMessage(files, u"/a/1"_s, Packing::Never), Gzip(text));
    files.Add(u"/a/1"_s, text);
    EXPECT_EQ(Fields("amavis").subject, u"packed"_s);
    EXPECT_FALSE(Fields("amavis").isPacked);
}

TEST_F(PackedMessage, NeedsNoMoreThanItsHeader) {
    QByteArray noise(300'000, '\0');
    quint32 state = 1;
    for (char& byte : noise) {
        state = state * 1664525 + 1013904223;
        byte = static_cast<char>(state >> 24);
    }
    files.Add(u"/a/1"_s, Gzip(text + noise).chopped(100));
    int reads = 0;
    files.SetReadHook([&reads](const QString&) { ++reads; });
    EXPECT_EQ(Fields("amavis").subject, u"packed"_s) << "though its end is missing";
    EXPECT_LE(reads, 2) << "of some twenty";
    EXPECT_THROW(ReadWholeMessage(files, u"/a/1"_s, Packing::Possible), PackedFileError);
}

TEST_F(PackedMessage, ThatIsDamagedIsNoMessageUntilItChanges) {
    files.Add(u"/a/1"_s, Gzip(text).first(12));
    EXPECT_EQ(Fields("amavis").errorCode, static_cast<int>(LoadError::Damaged));
    EXPECT_EQ(Fields("amavis").errorText, u"The packed file is damaged"_s);
}

TEST_F(PackedMessage, IsRefusedWhereOnlyAnUnpackedOneIsUnderstood) {
    files.Add(u"/a/1"_s, Gzip(text));
    try {
        RequireNotPacked(files, u"/a/1"_s);
        FAIL();
    } catch (const FileError& error) {
        EXPECT_EQ(error.Problem(), FileProblem::Packed);
        EXPECT_EQ(error.Path(), u"/a/1"_s);
    }
    for (const QByteArray& bytes : {text, QByteArray(), QByteArray("\x1F")}) {
        files.Add(u"/a/1"_s, bytes);
        EXPECT_NO_THROW(RequireNotPacked(files, u"/a/1"_s));
    }
    EXPECT_THROW(RequireNotPacked(files, u"/a/2"_s), FileError);
}

} // namespace quellbox

#include "messages/KeptFolder.h"

#include "platform/RuntimeError.h"
#include "settings/AppState.h"
#include "tests/support/CallGate.h"
#include "tests/support/MemoryFileSystem.h"
#include "tests/support/NativePath.h"
#include "tests/support/RealFiles.h"

#include <QDir>
#include <QRegularExpression>
#include <QSet>
#include <QTimeZone>

#include <array>
#include <thread>
#include <vector>

namespace quellbox {

namespace {

const QDateTime moment(QDate(2026, 7, 30), QTime(23, 59, 58, 7), QTimeZone::utc());

QString ReasonOf(KeptFolder& kept) {
    try {
        kept.Make();
        return {};
    } catch (const FileError& error) {
        return error.Reason();
    }
}

class KeptFolderTest : public testing::Test {
protected:
    KeptFolderTest() { files_.AddFolder(archive_); }

    const QString archive_ = NativePath(QStringLiteral("/archive/"));
    MemoryFileSystem files_;
};

using KeptFolderOnDisk = RealFilesTest;

} // namespace

TEST_F(KeptFolderTest, TheNameTellsTheMomentInUtcAndForHowLong) {
    const QTimeZone west(-9 * 3600); // where it is another day
    const KeptFolder kept(files_, archive_, 30, moment.toTimeZone(west));
    const QRegularExpression form(QStringLiteral("^20260730-235958-007-30d-[0-9a-f]{6}$"));
    EXPECT_TRUE(form.match(kept.Name()).hasMatch()) << kept.Name().toStdString();
    const std::optional<KeptFolderName> read = ParseKeptFolderName(kept.Name());
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(read->made, moment);
    EXPECT_EQ(read->days, 30);
}

TEST_F(KeptFolderTest, TwoActionsOfTheSameMomentHaveFoldersOfTheirOwn) {
    QSet<QString> names;
    for (int action = 0; action < 5; ++action) {
        names.insert(KeptFolder(files_, archive_, 1, moment).Name());
    }
    EXPECT_GE(names.size(), 4) << "one of five may be the same by chance once in a million runs, two never";
}

TEST_F(KeptFolderTest, TheDaysAreAtLeastOneAndFitTheName) {
    for (const auto& [days, kept] : {std::pair(-1, 1), {0, 1}, {1, 1}, {9999, 9999}, {32767, 9999}}) {
        const KeptFolder folder(files_, archive_, days, moment);
        ASSERT_TRUE(ParseKeptFolderName(folder.Name()).has_value());
        EXPECT_EQ(ParseKeptFolderName(folder.Name())->days, kept);
    }
}

TEST(KeptFolderName, OtherNamesAreNone) {
    for (const char* name :
         {"", "x", "20260730-235958-007-30d-12345", "20260730-235958-007-30d-1234567", "20260730-235958-007-0d-123456",
          "20260730-235958-007-030d-123456", "20260730-235958-007--1d-123456", "20260730-235958-007-10000d-123456",
          "20260231-235958-007-30d-123456", "20260730-245958-007-30d-123456", "20260730-235958-007-30d-12345G",
          "20260730-235958-007-30d-12345A", "20260730-235958-007-30d-123456\n", " 20260730-235958-007-30d-123456",
          "20260730-235958-007-30d-123456.bak", "20260730T235958-007-30d-123456",
          "\xD9\xA2\xD9\xA0\xD9\xA2\xD9\xA6"
          "0730-235958-007-30d-123456"}) {
        EXPECT_EQ(ParseKeptFolderName(QString::fromUtf8(name)), std::nullopt) << name;
    }
    EXPECT_TRUE(ParseKeptFolderName(QStringLiteral("20260730-235958-007-9999d-00ff00")).has_value());
}

TEST_F(KeptFolderTest, ItsPathsLieInTheArchiveWithTheSeparatorOfThat) {
    const KeptFolder local(files_, archive_, 1, moment);
    EXPECT_EQ(local.Path(), KeptFoldersOf(archive_).PathOf(local.Name() + QDir::separator()));
    EXPECT_EQ(local.PathOf(QStringLiteral("a.EML")), local.Path() + QStringLiteral("a.EML"));
    EXPECT_TRUE(local.Path().Text().startsWith(archive_ + QStringLiteral(".quellbox-deleted")));
    const KeptFolder onShare(files_, QStringLiteral(R"(\\nas\mail\)"), 1, moment);
    EXPECT_EQ(onShare.PathOf(QStringLiteral("a.EML")),
              QStringLiteral(R"(\\nas\mail\.quellbox-deleted\)") + onShare.Name() + QStringLiteral(R"(\a.EML)"));
}

TEST_F(KeptFolderTest, NothingIsMadeBeforeItIsAsked) {
    KeptFolder kept(files_, archive_, 1, moment);
    EXPECT_EQ(files_.CallCount(), 0);
    EXPECT_FALSE(kept.IsMade());
    kept.Make();
    EXPECT_TRUE(kept.IsMade());
    EXPECT_TRUE(files_.FolderExists(kept.Path()));
    const int calls = files_.CallCount();
    kept.Make();
    EXPECT_EQ(files_.CallCount(), calls) << "it is made once";
}

TEST_F(KeptFolderTest, ARefusalIsRememberedAndTheServerIsNotAskedAgain) {
    for (const bool above : {true, false}) {
        KeptFolder kept(files_, archive_, 1, moment);
        files_.FailPath(above ? KeptFoldersOf(archive_) : kept.Path(), QStringLiteral("refused"));
        EXPECT_EQ(ReasonOf(kept), QStringLiteral("refused"));
        const int calls = files_.CallCount();
        EXPECT_EQ(ReasonOf(kept), QStringLiteral("refused"));
        EXPECT_EQ(files_.CallCount(), calls);
        EXPECT_FALSE(kept.IsMade());
        ASSERT_TRUE(kept.Refusal().has_value());
        EXPECT_EQ(kept.Refusal()->reason, QStringLiteral("refused"));
        files_.FailPath(KeptFoldersOf(archive_), {});
    }
}

TEST_F(KeptFolderTest, WhoComesMeanwhileWaits) {
    KeptFolder kept(files_, archive_, 1, moment);
    CallGate gate;
    files_.SetChangeHook([&](const QString& path) {
        if (path == kept.Path().Text()) {
            gate.Pass(0);
        }
    });
    std::vector<std::thread> threads;
    std::atomic<int> through = 0;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&] {
            kept.Make();
            through += kept.IsMade() ? 1 : 100;
        });
    }
    EXPECT_TRUE(gate.WaitForInside(1));
    EXPECT_EQ(through, 0);
    gate.LetAll();
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(through, 4);
    EXPECT_EQ(files_.CallCount(), 2) << "the folder above, and the one of the action";
}

TEST_F(KeptFolderOnDisk, AFileOrALinkInItsPlaceIsAnError) {
    ASSERT_TRUE(QDir(folder_.path()).mkdir(Text("file")));
    files_->WriteWhole(Path("file/.quellbox-deleted"), "mine");
    KeptFolder onFile(*files_, Path("file"), 1, moment);
    EXPECT_FALSE(ReasonOf(onFile).isEmpty());
    EXPECT_EQ(ReadWhole(*files_, Path("file/.quellbox-deleted")), "mine");
#ifndef _WIN32
    ASSERT_TRUE(QDir(folder_.path()).mkdir(Text("linked")));
    ASSERT_TRUE(QDir(folder_.path()).mkdir(Text("elsewhere")));
    ASSERT_TRUE(QFile::link(Path("elsewhere"), Path("linked/.quellbox-deleted")));
    KeptFolder onLink(*files_, Path("linked"), 1, moment);
    EXPECT_FALSE(ReasonOf(onLink).isEmpty()) << "somebody could lead the messages elsewhere";
    EXPECT_TRUE(QDir(Path("elsewhere")).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
#endif
}

TEST_F(KeptFolderOnDisk, TheSecondActionFindsTheFolderAbove) {
    KeptFolder first(*files_, folder_.path(), 1, moment);
    first.Make();
    KeptFolder second(*files_, folder_.path(), 1, moment.addMSecs(1));
    second.Make();
    EXPECT_TRUE(QDir(first.Path()).exists());
    EXPECT_TRUE(QDir(second.Path()).exists());
}

TEST_F(KeptFolderTest, TheSettingsSayForHowLongAndWhetherAtAll) {
    AppState state;
    state.ArchiveDir = archive_;
    for (const qint16 days : std::array<qint16, 2>{-1, 0}) {
        state.KeepDeletedDays = days;
        EXPECT_EQ(FolderToKeepIn(files_, state, moment), nullptr) << days;
    }
    state.KeepDeletedDays = 7;
    const std::shared_ptr<KeptFolder> kept = FolderToKeepIn(files_, state, moment);
    ASSERT_NE(kept, nullptr);
    EXPECT_TRUE(kept->Path().Text().startsWith(KeptFoldersOf(archive_).Text())) << kept->Path().Text().toStdString();
    EXPECT_EQ(ParseKeptFolderName(kept->Name()), (KeptFolderName{moment, 7}));
    EXPECT_EQ(files_.CallCount(), 0);
}

TEST(TextOfRefusal, NamesArchiveAndReason) {
    const QString text =
        TextOfRefusal(QStringLiteral("/archive/"), {QStringLiteral("/archive/x"), QStringLiteral("Why")});
    EXPECT_EQ(text, QStringLiteral("Nothing was deleted: the folder for deleted messages cannot be made in "
                                   "/archive/\n\nWhy"));
}

} // namespace quellbox

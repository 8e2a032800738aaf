#include "messages/FailureList.h"

#include <gtest/gtest.h>

namespace quellbox {
namespace {

using namespace Qt::StringLiterals;

const QDateTime noon(QDate(2026, 3, 10), QTime(12, 4));

FileFailure Failure(FileProblem problem, const QString& path = u"/archive/a.EML"_s) {
    return FileFailure(FileError(path, u"in the system's words"_s, problem));
}

class FailureListTest : public testing::Test {
protected:
    FailureText TextOf(FileProblem problem, const QString& path = u"/archive/a.EML"_s) {
        list.TakeAction({Failure(problem, path)}, noon);
        return list.Texts(QLocale(u"de_DE"_s)).at(0);
    }

    FailureList list;
};

TEST_F(FailureListTest, SaysInPlainWordsWhatIsTheMatter) {
    EXPECT_EQ(TextOf(FileProblem::Exists).reason, u"The pickup directory holds a message of this name already."_s);
    EXPECT_EQ(TextOf(FileProblem::NoRight).reason, u"No right to change or delete in /archive/"_s);
    EXPECT_EQ(TextOf(FileProblem::NoRoom).reason, u"There is no room left in /archive/"_s);
    EXPECT_EQ(TextOf(FileProblem::InUse).reason, u"Another program uses the file."_s);
    EXPECT_EQ(TextOf(FileProblem::Missing).reason, u"The file or its folder is gone: /archive/"_s);
    EXPECT_EQ(TextOf(FileProblem::NoAnswer).reason, u"The server has not answered since 12:04: /archive/"_s);
}

TEST_F(FailureListTest, SaysWhatToDoWhereSomethingCanBeDone) {
    for (const FileProblem problem :
         {FileProblem::Exists, FileProblem::NoRight, FileProblem::NoRoom, FileProblem::InUse, FileProblem::NoAnswer,
          FileProblem::Missing, FileProblem::Packed}) {
        EXPECT_FALSE(TextOf(problem).advice.isEmpty()) << static_cast<int>(problem);
    }
}

TEST_F(FailureListTest, HasTheSystemsWordsForAnythingElse) {
    EXPECT_EQ(TextOf(FileProblem::Other), (FailureText{u"a.EML"_s, u"in the system's words"_s, {}}));
}

TEST_F(FailureListTest, TakesPathsOfEitherKindApart) {
    EXPECT_EQ(TextOf(FileProblem::Other, u"\\\\server\\share\\b.EML"_s).message, u"b.EML"_s);
    EXPECT_EQ(TextOf(FileProblem::NoRoom, u"\\\\server\\share\\b.EML"_s).reason,
              u"There is no room left in \\\\server\\share\\"_s);
    EXPECT_EQ(TextOf(FileProblem::Other, u"b.EML"_s).message, u"b.EML"_s);
}

TEST_F(FailureListTest, ShowsNoControlCharactersOfNames) {
    const FailureText text = TextOf(FileProblem::NoRoom, u"/a\nb/\u202Ec.EML"_s);
    EXPECT_FALSE(text.message.contains(QChar(0x202E)));
    EXPECT_FALSE(text.reason.contains(QLatin1Char('\n')));
}

TEST_F(FailureListTest, KeepsTheTimeSinceWhichAServerDoesNotAnswerUntilOneDoes) {
    TextOf(FileProblem::NoAnswer);
    list.TakeAction({Failure(FileProblem::NoAnswer)}, noon.addSecs(600));
    EXPECT_EQ(list.Texts(QLocale(u"de_DE"_s))[0].reason, u"The server has not answered since 12:04: /archive/"_s);
    list.TakeAction({}, noon.addSecs(700));
    list.TakeAction({Failure(FileProblem::NoAnswer)}, noon.addSecs(1200));
    EXPECT_EQ(list.Texts(QLocale(u"de_DE"_s))[0].reason, u"The server has not answered since 12:24: /archive/"_s);
}

TEST_F(FailureListTest, IsEmptyAfterAnActionThatWentWell) {
    int changes = 0;
    QObject::connect(&list, &FailureList::Changed, [&changes] { ++changes; });
    list.TakeAction({}, noon);
    EXPECT_EQ(changes, 0);
    list.TakeAction({Failure(FileProblem::Other), Failure(FileProblem::Other)}, noon);
    EXPECT_EQ(list.Count(), 2);
    list.TakeAction({}, noon);
    EXPECT_EQ(list.Count(), 0);
    EXPECT_EQ(changes, 2);
}

TEST_F(FailureListTest, OutlivesARefreshThatWentWell) {
    list.TakeAction({Failure(FileProblem::Other)}, noon);
    list.TakeRefresh({}, noon);
    EXPECT_EQ(list.Count(), 1);
    list.TakeRefresh({Failure(FileProblem::Exists), Failure(FileProblem::Exists)}, noon);
    EXPECT_EQ(list.Count(), 2);
}

} // namespace
} // namespace quellbox

#include "contents/MessageLoader.h"

#include "tests/support/MemoryFileSystem.h"
#include "tests/support/RunUntil.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QSemaphore>

#include <stdexcept>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;
using Kind = MessageAnswer::Kind;

class MessageLoaderTest : public testing::Test {
protected:
    MessageLoaderTest() {
        pool.SetMost(16);
        files.Add(u"/a/1.eml"_s, "Subject: one\r\nTo: b@x.org\r\n\r\nfirst\r\nsecond\r\n");
        files.Add(u"/a/2.eml"_s, "Subject: two\r\n\r\nbody\r\n");
        loader = std::make_unique<MessageLoader>(files, pool);
    }

    // The readers of a test must not outlive its file system.
    ~MessageLoaderTest() override {
        release.release(1000);
        pool.WaitForDone();
    }

    /// Lets every reader of a file whose path ends like this wait until it is released.
    void Stall(const QString& ending) {
        files.SetReadHook([this, ending](const QString& path) {
            if (path.endsWith(ending)) {
                stalled.release();
                release.acquire();
            }
        });
    }

    MessageLoader::Handler Note() {
        return [this](const MessageAnswer& answer) { answers.push_back(answer); };
    }

    bool WaitUntilIdle() {
        return RunUntil([this] { return !loader->IsBusy(); });
    }

    void Load(const QString& path) {
        loader->Load({.path = path, .ifExists = true, .text = true, .structure = true}, Note());
    }

    std::vector<Kind> Kinds() const {
        std::vector<Kind> kinds;
        for (const MessageAnswer& answer : answers) {
            kinds.push_back(answer.kind);
        }
        return kinds;
    }

    MemoryFileSystem files;
    // What a read hook uses must live as long as the readers.
    QSemaphore release;
    QSemaphore stalled;
    ThreadWorkPool pool;
    std::vector<MessageAnswer> answers;
    std::unique_ptr<MessageLoader> loader;
};

} // namespace

TEST_F(MessageLoaderTest, HandsOverTheTextAndThenTheStructureOfOneReading) {
    Load(u"/a/1.eml"_s);
    EXPECT_TRUE(loader->IsBusy());
    ASSERT_TRUE(WaitUntilIdle());
    EXPECT_FALSE(loader->IsBusy());
    ASSERT_EQ(Kinds(), (std::vector{Kind::Text, Kind::Structure}));
    EXPECT_EQ(answers[0].path, u"/a/1.eml"_s);
    EXPECT_EQ(answers[0].text, QString::fromLatin1(files.Bytes(u"/a/1.eml"_s)));
    EXPECT_FALSE(answers[0].isLast);
    ASSERT_EQ(answers[1].structure.size(), 2U);
    EXPECT_EQ(answers[1].structure[1].children.back().text, u"TEXT: first"_s);
    EXPECT_EQ(files.OpenCount(), 1);
}

TEST_F(MessageLoaderTest, GivesAnEmptyStructureForWhatIsNoMessage) {
    files.Add(u"/a/1.eml"_s, "");
    Load(u"/a/1.eml"_s);
    ASSERT_TRUE(WaitUntilIdle());
    ASSERT_EQ(Kinds(), (std::vector{Kind::Text, Kind::Structure}));
    EXPECT_EQ(answers[0].text, QString());
    EXPECT_TRUE(answers[1].structure.empty());
}

TEST_F(MessageLoaderTest, TellsAFileThatHasGoneFromOneThatCannotBeRead) {
    Load(u"/a/none.eml"_s);
    ASSERT_TRUE(WaitUntilIdle());
    loader->Load({u"/a/none.eml"_s, false, true, false}, Note());
    ASSERT_TRUE(WaitUntilIdle());
    loader->Load({u"/a/1.eml"_s, true, false, false}, Note());
    ASSERT_TRUE(WaitUntilIdle());
    ASSERT_EQ(Kinds(), (std::vector{Kind::Gone, Kind::Unreadable, Kind::Exists}));
    EXPECT_FALSE(answers[1].reason.isEmpty());
    EXPECT_EQ(answers[1].path, u"/a/none.eml"_s);
}

TEST_F(MessageLoaderTest, ReadsHeadersBesideAMessageAndOnlyOnceAtATime) {
    Stall(u"1.eml"_s);
    loader->LoadHeaders(u"/a/1.eml"_s, ServerProfiles().front(), Note());
    loader->LoadHeaders(u"/a/1.eml"_s, ServerProfiles().front(), Note());
    Load(u"/a/2.eml"_s);
    Load(u"/a/2.eml"_s);
    release.release(1000);
    ASSERT_TRUE(WaitUntilIdle());
    int headers = 0;
    for (const MessageAnswer& answer : answers) {
        headers += answer.kind == Kind::Headers ? 1 : 0;
        EXPECT_TRUE(answer.kind != Kind::Headers || answer.headers.subject == u"one"_s);
    }
    EXPECT_EQ(headers, 1);
    EXPECT_EQ(answers.size(), 3U);
}

TEST_F(MessageLoaderTest, DropsTheLateAnswerOfAMessageThatAnotherOneReplaced) {
    Stall(u"1.eml"_s);
    Load(u"/a/1.eml"_s);
    ASSERT_TRUE(stalled.tryAcquire(1, 20'000));
    Load(u"/a/2.eml"_s);
    ASSERT_TRUE(WaitUntilIdle()) << "a reader that stalls holds up another message";
    release.release(1000);
    pool.WaitForDone();
    QCoreApplication::processEvents();
    ASSERT_EQ(Kinds(), (std::vector{Kind::Text, Kind::Structure}));
    EXPECT_TRUE(answers[0].text.contains(u"two"_s));
}

TEST_F(MessageLoaderTest, DropsAnAnswerThatWasThereBeforeItWasCancelled) {
    Load(u"/a/1.eml"_s);
    pool.WaitForDone();
    loader->CancelLoad();
    QCoreApplication::processEvents();
    EXPECT_TRUE(answers.empty());
    EXPECT_FALSE(loader->IsBusy());
}

TEST_F(MessageLoaderTest, StopsReadingAFileThatIsNoLongerWanted) {
    files.Add(u"/a/large.eml"_s, QByteArray(10 * 1024 * 1024, 'x'));
    Stall(u"large.eml"_s);
    Load(u"/a/large.eml"_s);
    ASSERT_TRUE(stalled.tryAcquire(1, 20'000));
    const int before = files.CallCount();
    loader->Cancel();
    release.release(1000);
    pool.WaitForDone();
    EXPECT_LE(files.CallCount() - before, 1) << "no more than the read that stalled";
}

TEST_F(MessageLoaderTest, AnswersHoweverManyMessagesStall) {
    files.Add(u"/a/other.mail"_s, "Subject: other\r\n\r\nbody\r\n");
    Stall(u"eml"_s);
    for (int click = 0; click < 50; ++click) {
        Load(click % 2 == 0 ? u"/a/1.eml"_s : u"/a/2.eml"_s);
        ASSERT_TRUE(stalled.tryAcquire(1, 20'000)) << "a click on " << click << " others that stall";
    }
    Load(u"/a/other.mail"_s);
    ASSERT_TRUE(WaitUntilIdle());
    ASSERT_EQ(Kinds(), (std::vector{Kind::Text, Kind::Structure}));
    EXPECT_TRUE(answers[0].text.contains(u"other"_s));
}

TEST_F(MessageLoaderTest, IsDestroyedWhileAReaderStalls) {
    Stall(u"1.eml"_s);
    Load(u"/a/1.eml"_s);
    loader->LoadHeaders(u"/a/1.eml"_s, ServerProfiles().front(), Note());
    ASSERT_TRUE(stalled.tryAcquire(1, 20'000));
    // Only afterwards is a reader let go: a destructor that waits for it would never come back.
    loader.reset();
    release.release(1000);
    pool.WaitForDone();
    QCoreApplication::processEvents();
    EXPECT_TRUE(answers.empty());
}

TEST_F(MessageLoaderTest, TellsWhatReadingThrew) {
    files.SetReadHook([](const QString& path) {
        if (path.endsWith(u"1.eml"_s)) {
            throw std::length_error("too long");
        }
    });
    QStringList reasons;
    QObject::connect(loader.get(), &MessageLoader::Failed, [&reasons](const QString& reason) { reasons += reason; });
    Load(u"/a/1.eml"_s);
    EXPECT_TRUE(WaitUntilIdle());
    EXPECT_EQ(reasons, QStringList{u"too long"_s});
    Load(u"/a/2.eml"_s);
    EXPECT_TRUE(WaitUntilIdle());
    EXPECT_EQ(Kinds(), (std::vector{Kind::Text, Kind::Structure}));
}

TEST_F(MessageLoaderTest, AHandlerMayAskForTheNextMessage) {
    loader->Load({u"/a/1.eml"_s, false, true, true}, [this](const MessageAnswer& answer) {
        answers.push_back(answer);
        Load(u"/a/2.eml"_s);
    });
    ASSERT_TRUE(WaitUntilIdle());
    EXPECT_EQ(Kinds(), (std::vector{Kind::Text, Kind::Text, Kind::Structure}));
}

} // namespace quellbox

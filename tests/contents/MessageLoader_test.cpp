#include "contents/MessageLoader.h"

#include "tests/support/MemoryFileSystem.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QSemaphore>
#include <QThread>

#include <stdexcept>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Kind = MessageAnswer::Kind;

constexpr auto longest = 20s;

class MessageLoaderTest : public testing::Test {
protected:
    MessageLoaderTest() {
        pool.setMaxThreadCount(16);
        files.Add(u"/a/1.eml"_s, "Subject: one\r\nTo: b@x.org\r\n\r\nfirst\r\nsecond\r\n");
        files.Add(u"/a/2.eml"_s, "Subject: two\r\n\r\nbody\r\n");
        loader = std::make_unique<MessageLoader>(files, pool);
    }

    // The readers of a test must not outlive its file system.
    ~MessageLoaderTest() override {
        release.release(1000);
        pool.waitForDone();
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

    void Load(const QString& path) { loader->Load({path, true, true, true}, Note()); }

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
    QThreadPool pool;
    std::vector<MessageAnswer> answers;
    std::unique_ptr<MessageLoader> loader;
};

} // namespace

TEST_F(MessageLoaderTest, HandsOverTheTextAndThenTheStructureOfOneReading) {
    Load(u"/a/1.eml"_s);
    EXPECT_TRUE(loader->IsBusy());
    ASSERT_TRUE(loader->WaitFor(longest));
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
    ASSERT_TRUE(loader->WaitFor(longest));
    ASSERT_EQ(Kinds(), (std::vector{Kind::Text, Kind::Structure}));
    EXPECT_EQ(answers[0].text, QString());
    EXPECT_TRUE(answers[1].structure.empty());
}

TEST_F(MessageLoaderTest, TellsAFileThatHasGoneFromOneThatCannotBeRead) {
    Load(u"/a/none.eml"_s);
    ASSERT_TRUE(loader->WaitFor(longest));
    loader->Load({u"/a/none.eml"_s, false, true, false}, Note());
    ASSERT_TRUE(loader->WaitFor(longest));
    loader->Load({u"/a/1.eml"_s, true, false, false}, Note());
    ASSERT_TRUE(loader->WaitFor(longest));
    ASSERT_EQ(Kinds(), (std::vector{Kind::Gone, Kind::Unreadable, Kind::Exists}));
    EXPECT_FALSE(answers[1].reason.isEmpty());
    EXPECT_EQ(answers[1].path, u"/a/none.eml"_s);
}

TEST_F(MessageLoaderTest, ReadsHeadersBesideAMessageAndOnlyOnceAtATime) {
    Stall(u"1.eml"_s);
    loader->LoadHeaders(u"/a/1.eml"_s, Note());
    loader->LoadHeaders(u"/a/1.eml"_s, Note());
    Load(u"/a/2.eml"_s);
    Load(u"/a/2.eml"_s);
    release.release(1000);
    ASSERT_TRUE(loader->WaitFor(longest));
    int headers = 0;
    for (const MessageAnswer& answer : answers) {
        headers += answer.kind == Kind::Headers ? 1 : 0;
        EXPECT_TRUE(answer.kind != Kind::Headers || answer.headers.subject == u"one"_s);
    }
    EXPECT_EQ(headers, 1);
    EXPECT_EQ(answers.size(), 3U);
}

TEST_F(MessageLoaderTest, AnnouncesToTheEventLoopWhatNobodyWaitedFor) {
    Stall(u"1.eml"_s);
    QObject::connect(loader.get(), &MessageLoader::Arrived, loader.get(), [this] { loader->Deliver(); });
    Load(u"/a/1.eml"_s);
    EXPECT_FALSE(loader->WaitFor(1ms));
    EXPECT_TRUE(answers.empty());
    release.release(1000);
    const QDeadlineTimer deadline(longest);
    while (loader->IsBusy() && !deadline.hasExpired()) {
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(Kinds(), (std::vector{Kind::Text, Kind::Structure}));
}

TEST_F(MessageLoaderTest, DropsTheLateAnswerOfAMessageThatAnotherOneReplaced) {
    Stall(u"1.eml"_s);
    Load(u"/a/1.eml"_s);
    ASSERT_TRUE(stalled.tryAcquire(1, 20'000));
    Load(u"/a/2.eml"_s);
    ASSERT_TRUE(loader->WaitFor(longest)) << "a reader that stalls holds up another message";
    release.release(1000);
    pool.waitForDone();
    loader->Deliver();
    ASSERT_EQ(Kinds(), (std::vector{Kind::Text, Kind::Structure}));
    EXPECT_TRUE(answers[0].text.contains(u"two"_s));
}

TEST_F(MessageLoaderTest, DropsAnAnswerThatWasThereBeforeItWasCancelled) {
    Load(u"/a/1.eml"_s);
    pool.waitForDone();
    loader->CancelLoad();
    loader->Deliver();
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
    pool.waitForDone();
    EXPECT_LE(files.CallCount() - before, 1) << "no more than the read that stalled";
}

TEST_F(MessageLoaderTest, LeavesThreadsToOthersHoweverManyMessagesStall) {
    Stall(u"eml"_s);
    for (int click = 0; click < 50; ++click) {
        Load(click % 2 == 0 ? u"/a/1.eml"_s : u"/a/2.eml"_s);
        EXPECT_FALSE(loader->WaitFor(0ms));
    }
    EXPECT_LE(pool.activeThreadCount(), 4);
    release.release(1000);
    ASSERT_TRUE(loader->WaitFor(longest));
    ASSERT_EQ(Kinds(), (std::vector{Kind::Text, Kind::Structure}));
    EXPECT_TRUE(answers[0].text.contains(u"two"_s)) << "the last one asked for is the one to be shown";
    EXPECT_LE(files.OpenCount(), 5) << "those in between were read";
}

TEST_F(MessageLoaderTest, IsDestroyedWhileAReaderStalls) {
    Stall(u"1.eml"_s);
    Load(u"/a/1.eml"_s);
    loader->LoadHeaders(u"/a/1.eml"_s, Note());
    ASSERT_TRUE(stalled.tryAcquire(1, 20'000));
    // Only afterwards is a reader let go: a destructor that waits for it would never come back.
    loader.reset();
    release.release(1000);
    pool.waitForDone();
    QCoreApplication::processEvents();
    EXPECT_TRUE(answers.empty());
}

TEST_F(MessageLoaderTest, ThrowsHereWhatReadingThrewThere) {
    files.SetReadHook([](const QString& path) {
        if (path.endsWith(u"1.eml"_s)) {
            throw std::length_error("too long");
        }
    });
    Load(u"/a/1.eml"_s);
    EXPECT_THROW(loader->WaitFor(longest), std::length_error);
    EXPECT_FALSE(loader->IsBusy());
    Load(u"/a/2.eml"_s);
    EXPECT_TRUE(loader->WaitFor(longest));
    EXPECT_EQ(Kinds(), (std::vector{Kind::Failed, Kind::Text, Kind::Structure}));
}

TEST_F(MessageLoaderTest, AHandlerMayAskForTheNextMessage) {
    loader->Load({u"/a/1.eml"_s, false, true, true}, [this](const MessageAnswer& answer) {
        answers.push_back(answer);
        Load(u"/a/2.eml"_s);
    });
    ASSERT_TRUE(loader->WaitFor(longest));
    EXPECT_EQ(Kinds(), (std::vector{Kind::Text, Kind::Text, Kind::Structure}));
}

} // namespace quellbox

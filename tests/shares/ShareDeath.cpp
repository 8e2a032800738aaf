#include "tests/shares/ShareDeath.h"

#include "tests/shares/CountedFiles.h"
#include "tests/shares/PickupScanner.h"

#include <chrono>
#include <cstdio>
#include <numeric>
#include <thread>

namespace quellbox {

namespace {

constexpr int inside = 3; // so many messages are in the middle of it when the server dies
constexpr qsizetype size = 200'000;
constexpr qint16 daysToKeep = 7;
constexpr int daysLater = 30;

const std::vector<Death> deaths{{1, false}, {5, true}, {9, false}, {14, true}};

std::set<QString> NamesOf(const std::vector<FileFailure>& failures) {
    std::set<QString> names;
    for (const FileFailure& failure : failures) {
        names.insert(failure.path.mid(failure.path.lastIndexOf(QLatin1Char('/')) + 1));
    }
    return names;
}

} // namespace

ShareDeathTest::Action ShareDeathTest::Unblocking() {
    return {"unblock", true, [this](FileSystem& files, const Wait& wait) {
                return DisposeOfListed(quellbox::Action::unblock, files, wait);
            }};
}

ShareDeathTest::Action ShareDeathTest::Deleting() {
    return {"delete", false, [this](FileSystem& files, const Wait& wait) {
                return DisposeOfListed(quellbox::Action::remove, files, wait);
            }};
}

ShareDeathTest::Action ShareDeathTest::Tolerating() {
    return {"toleration", true, [this](FileSystem& files, const Wait& wait) {
                store_.SetValue(QStringLiteral("Tolerate"), QStringLiteral("@friends.example"), QStringLiteral("0"));
                state_.TolerationLevel = 2;
                Told told;
                RefreshTask task({files, store_, clock_, pool_}, state_, model_);
                QObject::connect(&task, &RefreshTask::Ended, [&told](const RefreshResult& result) {
                    told.failed = NamesOf(result.failures);
                    told.wasComplete = result.outcome == RefreshOutcome::Completed;
                });
                task.Start(false, false);
                wait([&task] { return !task.IsRunning(); });
                state_.TolerationLevel = 0;
                const QStringList keys = Keys();
                told.listed = {keys.begin(), keys.end()};
                return told;
            }};
}

ShareDeathTest::Action ShareDeathTest::Cleansing() {
    return {"cleansing", false, [this](FileSystem& files, const Wait& wait) {
                Told told;
                CleansingTask task(files, pool_);
                QObject::connect(&task, &CleansingTask::Ended, [&told](const CleansingResult& result) {
                    told.failed = NamesOf(result.failures);
                    // What could not be listed is told of as a failure of the folder.
                    told.wasComplete = told.failed.erase(QString()) == 0;
                });
                task.Start(state_.ArchiveDir, daysToKeep, clock_.Now().date().addDays(daysLater));
                wait([&task] { return !task.IsRunning(); });
                return told;
            }};
}

Told ShareDeathTest::DisposeOfListed(qint16 action, FileSystem& files, const Wait& wait) {
    EXPECT_EQ(Refresh().outcome, RefreshOutcome::Completed);
    EXPECT_EQ(model_.Count(), count);
    std::vector<int> rows(static_cast<size_t>(model_.Count()));
    std::iota(rows.begin(), rows.end(), 0);
    Told told;
    DisposalTask task(files, pool_, model_);
    QObject::connect(&task, &DisposalTask::Ended, [&told](const DisposalResult& result) {
        told.failed = NamesOf(result.failures);
        told.wasComplete = result.rowsGone == count;
    });
    task.Start(action, {state_.ArchiveDir, state_.PickupDir}, rows);
    wait([&task] { return !task.IsRunning(); });
    return told;
}

void ShareDeathTest::ExpectNothingLost(const Action& action, bool isWithinShare) {
    Sum sum;
    for (const Death& death : deaths) {
        SCOPED_TRACE(testing::Message() << "after " << death.after << (death.isShort ? ", back at once" : ""));
        ASSERT_NO_FATAL_FAILURE(Try(action, death, isWithinShare, sum));
    }
    EXPECT_GT(sum.notDone + sum.failedDone, 0) << "the server never died in the middle of it";
    std::printf(
        "faults: %s, %s%s: server killed %d times, %s; not dealt with and told %d, in both %d, done but told as "
        "failed %d, files left %d\n",
        GetParam() == ShareClient::SmbNetFs ? "smbnetfs" : "desktop", action.name,
        isWithinShare ? " within a share" : "", sum.tried, HasFailure() ? "FAILED" : "nothing lost", sum.notDone,
        sum.both, sum.failedDone, sum.leftBehind);
}

void ShareDeathTest::Try(const Action& action, const Death& death, bool isWithinShare, Sum& sum) {
    ASSERT_NO_FATAL_FAILURE(MakeMessages(isWithinShare));
    PickupScanner watch(pickupBehind_, messages_);
    CountedFiles files(*files_, death.after, inside);
    const Told told = action.run(files, [&](const std::function<bool()>& hasEnded) {
        LetDie(
            death, [&files] { return files.IsReady(); }, [&files] { files.GoOn(); }, hasEnded);
    });
    ASSERT_FALSE(HasFatalFailure());
    ASSERT_TRUE(own.WhyNot().isEmpty()) << "the action does not end";
    Judge(action, told, sum);
    ASSERT_NO_FATAL_FAILURE(BringBack(death));
    EXPECT_TRUE(FinishTheRest(action)) << "what is left cannot be dealt with when the server is back";
    EXPECT_EQ(watch.End(), "") << "a mail server could have picked up what is no whole message";
    sum.leftBehind += static_cast<int>(
        QDir(pickupBehind_).entryList({QStringLiteral(".quellbox-*")}, QDir::Files | QDir::Hidden).size());
    ++sum.tried;
}

// Each death has folders of its own, as the kernel remembers names.
void ShareDeathTest::MakeMessages(bool isWithinShare) {
    static int number = 0;
    const QString run = QStringLiteral("run%1/").arg(++number);
    const QString below = run + (isWithinShare ? QStringLiteral("pickup/") : QString());
    const char* const pickupShare = isWithinShare ? "archive" : "pickup";
    archiveBehind_ = Behind("archive") + run;
    pickupBehind_ = Behind(pickupShare) + below;
    ASSERT_TRUE(QDir().mkpath(archiveBehind_) && QDir().mkpath(pickupBehind_));
    messages_.clear();
    for (int message = 0; message < count; ++message) {
        const QString name = QStringLiteral("%1-%2.EML").arg(number).arg(message, 2, 10, QLatin1Char('0'));
        ASSERT_NO_FATAL_FAILURE(Deliver(archiveBehind_, name, size, "ann@friends.example"));
        messages_[name] = delivered_.at(name);
    }
    Use(Mounted("archive") + run, Mounted(pickupShare) + below);
}

void ShareDeathTest::LetDie(const Death& death, const std::function<bool()>& isReady, const std::function<void()>& goOn,
                            const std::function<bool()>& hasEnded) {
    EXPECT_TRUE(WaitLong([&] { return isReady() || hasEnded(); }));
    own.Server().Kill();
    goOn();
    if (death.isShort) {
        EXPECT_TRUE(own.Server().StartAgain()) << own.Server().WhyNot().toStdString();
    }
    if (!WaitLong(hasEnded)) {
        own.EndClient();
        WaitLong(hasEnded);
    }
}

void ShareDeathTest::BringBack(const Death& death) {
    if (!death.isShort) {
        ASSERT_TRUE(own.Server().StartAgain()) << own.Server().WhyNot().toStdString();
    }
    ASSERT_TRUE(WaitLong([this] { return own.Mount().Reconnect(); }));
}

void ShareDeathTest::Judge(const Action& action, const Told& told, Sum& sum) const {
    for (const auto& [name, bytes] : messages_) {
        const State source = StateOf(archiveBehind_, name);
        const State target = StateOf(pickupBehind_, name);
        const bool saysFailed = told.failed.count(name) > 0;
        const bool isTold = saysFailed || told.listed.count(name) > 0 || !told.wasComplete;
        EXPECT_NE(source, State::Damaged) << name.toStdString();
        EXPECT_NE(target, State::Damaged) << name.toStdString();
        EXPECT_TRUE(!action.moves || source == State::Whole || target == State::Whole)
            << name.toStdString() << " is lost";
        EXPECT_TRUE(source == State::Missing || isTold) << name.toStdString() << " is still there, and nobody says so";
        const bool isDone = source == State::Missing && (target == State::Whole || !action.moves);
        sum.notDone += source == State::Whole && target == State::Missing ? 1 : 0;
        sum.both += source == State::Whole && target == State::Whole ? 1 : 0;
        sum.failedDone += isDone && saysFailed ? 1 : 0;
    }
}

/// With the server back, the user refreshes and does it again until nothing is left but what is in both folders. For
/// some seconds the clients still answer out of what they remember.
bool ShareDeathTest::FinishTheRest(const Action& action) {
    const auto isFinished = [&] {
        return std::all_of(messages_.begin(), messages_.end(), [&](const auto& message) {
            const State target = StateOf(pickupBehind_, message.first);
            return action.moves ? target == State::Whole : StateOf(archiveBehind_, message.first) == State::Missing;
        });
    };
    return WaitLong([&] {
        state_.LastAddedFile.clear();
        Refresh();
        DisposeOfAll(action.moves ? quellbox::Action::unblock : quellbox::Action::remove);
        if (isFinished()) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        return false;
    });
}

ShareDeathTest::State ShareDeathTest::StateOf(const QString& folder, const QString& name) const {
    QFile file(folder + name);
    if (!file.open(QIODevice::ReadOnly)) {
        return State::Missing;
    }
    return file.readAll() == messages_.at(name) ? State::Whole : State::Damaged;
}

} // namespace quellbox

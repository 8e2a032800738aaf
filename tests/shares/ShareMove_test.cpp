#include "tests/shares/ShareFixture.h"

#include "platform/RuntimeError.h"

#include <atomic>
#include <set>
#include <thread>

namespace quellbox {

namespace {

/// Looks all the time at the size of what has a name on the server.
class SizeWatch {
public:
    explicit SizeWatch(const QString& path) : thread_([this, path] { Run(path); }) {}

    /// The sizes that were seen.
    std::set<qint64> End() {
        isEnding_ = true;
        thread_.join();
        return sizes_;
    }

private:
    void Run(const QString& path) {
        const std::unique_ptr<FileSystem> files = MakeLocalFileSystem();
        while (!isEnding_) {
            if (const auto status = files->Status(path)) {
                sizes_.insert(status->size);
            }
        }
    }

    std::atomic<bool> isEnding_ = false;
    std::set<qint64> sizes_;
    std::thread thread_;
};

} // namespace

/// Unblocking from every kind of folder to every other one.
class ShareMove : public ShareTest {
protected:
    /// Unblocks messages between two folders, which are also known as `archiveBehind` and `pickupBehind`.
    void ExpectUnblocked(const QString& archive, const QString& archiveBehind, const QString& pickup,
                         const QString& pickupBehind) {
        ASSERT_NO_FATAL_FAILURE(DeliverMany(archiveBehind, 10));
        Use(archive, pickup);
        Refresh();
        const DisposalResult result = Dispose(Action::unblock, {0, 2, 3, 4, 9});
        EXPECT_EQ(result.rowsGone, 5);
        EXPECT_EQ(Reasons(result.failures), "");
        ExpectExactly(pickupBehind, Names({0, 2, 3, 4, 9}));
        ExpectExactly(archiveBehind, Names({1, 5, 6, 7, 8}));
    }

    /// Unblocks a message whose name is taken.
    void ExpectRefused(const QString& archive, const QString& archiveBehind, const QString& pickup,
                       const QString& pickupBehind) {
        ASSERT_NO_FATAL_FAILURE(DeliverMany(archiveBehind, 2));
        QFile taken(pickupBehind + QStringLiteral("00000.EML"));
        ASSERT_TRUE(taken.open(QIODevice::WriteOnly));
        taken.write("another message");
        taken.close();
        Use(archive, pickup);
        Refresh();
        EXPECT_EQ(DisposeOfAll(Action::unblock).failures.size(), 1U);
        const std::unique_ptr<FileSystem> files = MakeLocalFileSystem();
        EXPECT_EQ(ReadWhole(*files, taken.fileName()), "another message");
        ExpectExactly(archiveBehind, {QStringLiteral("00000.EML")});
        delivered_.erase(QStringLiteral("00000.EML"));
        ExpectExactly(pickupBehind, {QStringLiteral("00000.EML"), QStringLiteral("00001.EML")});
    }

    /// Moves a message of 25 MiB while somebody looks at where it goes.
    void ExpectWholeAtAnyMoment(const QString& archive, const QString& archiveBehind, const QString& pickup,
                                const QString& pickupBehind) {
        constexpr qsizetype large = 25 * 1024 * 1024;
        const QString name = QStringLiteral("large.EML");
        ASSERT_NO_FATAL_FAILURE(Deliver(archiveBehind, name, large));
        Use(archive, pickup);
        Refresh();
        SizeWatch watch(pickupBehind + name);
        const DisposalResult result = DisposeOfAll(Action::unblock);
        const std::set<qint64> sizes = watch.End();
        EXPECT_EQ(Reasons(result.failures), "");
        ExpectExactly(pickupBehind, {name});
        ExpectExactly(archiveBehind, {});
        if (!sizes.empty()) {
            EXPECT_EQ(sizes.size(), 1U);
            EXPECT_EQ(*sizes.begin(), delivered_.at(name).size());
        }
    }

    /// A second folder in the share of the archive.
    QString InArchive(const QString& folder) {
        QDir().mkpath(Behind("archive") + QStringLiteral("../") + name_ + QStringLiteral("pickup"));
        return folder.chopped(1) + QStringLiteral("pickup/");
    }

    static QStringList Names(const std::vector<int>& numbers) {
        QStringList names;
        for (const int number : numbers) {
            names += QStringLiteral("%1.EML").arg(number, 5, 10, QLatin1Char('0'));
        }
        return names;
    }
};

TEST_P(ShareMove, UnblocksWithinAShare) {
    ExpectUnblocked(Mounted("archive"), Behind("archive"), InArchive(Mounted("archive")), InArchive(Behind("archive")));
}

TEST_P(ShareMove, UnblocksBetweenShares) {
    ExpectUnblocked(Mounted("archive"), Behind("archive"), Mounted("pickup"), Behind("pickup"));
}

TEST_P(ShareMove, UnblocksToAFolderOfThisComputer) {
    ExpectUnblocked(Mounted("archive"), Behind("archive"), Local("pickup"), Local("pickup"));
}

TEST_P(ShareMove, UnblocksFromAFolderOfThisComputer) {
    ExpectUnblocked(Local("archive"), Local("archive"), Mounted("pickup"), Behind("pickup"));
}

TEST_P(ShareMove, NeverReplacesWithinAShare) {
    ExpectRefused(Mounted("archive"), Behind("archive"), InArchive(Mounted("archive")), InArchive(Behind("archive")));
}

TEST_P(ShareMove, NeverReplacesBetweenShares) {
    ExpectRefused(Mounted("archive"), Behind("archive"), Mounted("pickup"), Behind("pickup"));
}

TEST_P(ShareMove, NeverReplacesOnThisComputer) {
    ExpectRefused(Mounted("archive"), Behind("archive"), Local("pickup"), Local("pickup"));
}

TEST_P(ShareMove, NeverReplacesWhatComesFromThisComputer) {
    ExpectRefused(Local("archive"), Local("archive"), Mounted("pickup"), Behind("pickup"));
}

TEST_P(ShareMove, ShowsNoPartOfAMessageWithinAShare) {
    ExpectWholeAtAnyMoment(Mounted("archive"), Behind("archive"), InArchive(Mounted("archive")),
                           InArchive(Behind("archive")));
}

TEST_P(ShareMove, ShowsNoPartOfAMessageBetweenShares) {
    ExpectWholeAtAnyMoment(Mounted("archive"), Behind("archive"), Mounted("pickup"), Behind("pickup"));
}

TEST_P(ShareMove, ShowsNoPartOfAMessageOnThisComputer) {
    ExpectWholeAtAnyMoment(Mounted("archive"), Behind("archive"), Local("pickup"), Local("pickup"));
}

TEST_P(ShareMove, ShowsNoPartOfAMessageFromThisComputer) {
    ExpectWholeAtAnyMoment(Local("archive"), Local("archive"), Mounted("pickup"), Behind("pickup"));
}

QUELLBOX_ON_EACH_CLIENT(ShareMove);

} // namespace quellbox

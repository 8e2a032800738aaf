#pragma once

#include "tests/shares/ShareFixture.h"

#include <functional>
#include <set>

namespace quellbox {

/// When a server is killed, and when it is there again.
struct Death {
    int after = 0;        ///< so many messages have been dealt with
    bool isShort = false; ///< it is started again at once, and not only when the action has ended
};

/// What the program said it did.
struct Told {
    std::set<QString> failed; ///< the messages of which it said that something went wrong
    std::set<QString> listed; ///< those that a refresh shows
    bool wasComplete = true;  ///< it has dealt with all messages, as far as it says
};

/// A server of the test's own, as the other tests need theirs alive.
struct OwnWorld {
    ShareWorld own{testing::WithParamInterface<ShareClient>::GetParam()};
};

/// A server that is killed in the middle of what the program does with twenty messages. What becomes of them is looked
/// for behind the server's back.
class ShareDeathTest : private OwnWorld, public ShareTest {
protected:
    static constexpr int count = 20;

    ShareDeathTest() : ShareTest(own) {}

    /// Runs events until the action has ended; on the way the server dies.
    using Wait = std::function<void(const std::function<bool()>& hasEnded)>;

    /// Something that is done with all messages of the archive.
    struct Action {
        const char* name;
        bool moves; ///< into the pickup folder; others delete
        std::function<Told(FileSystem& files, const Wait& wait)> run;
    };

    Action Unblocking();
    Action Deleting();
    Action Tolerating();
    Action Cleansing();

    /// Does it with new messages for each of the deaths, and expects that none is lost, damaged or passed over in
    /// silence. Where `isWithinShare`, the pickup folder is in the share of the archive.
    void ExpectNothingLost(const Action& action, bool isWithinShare = false);

private:
    enum class State { Missing, Whole, Damaged };

    /// What became of the messages.
    struct Sum {
        int tried = 0;
        int notDone = 0;    ///< not dealt with, which was told
        int both = 0;       ///< in both folders, which was told
        int failedDone = 0; ///< dealt with, and told as failed
        int leftBehind = 0; ///< temporary files that later messages did not clear away
    };

    Told DisposeOfListed(qint16 action, FileSystem& files, const Wait& wait);
    void MakeMessages(bool isWithinShare);
    void LetDie(const Death& death, const std::function<bool()>& isReady, const std::function<void()>& goOn,
                const std::function<bool()>& hasEnded);
    void Try(const Action& action, const Death& death, bool isWithinShare, Sum& sum);
    void BringBack(const Death& death);
    void Judge(const Action& action, const Told& told, Sum& sum) const;
    bool FinishTheRest(const Action& action);
    State StateOf(const QString& folder, const QString& name) const;

    QString archiveBehind_;
    QString pickupBehind_;
    std::map<QString, QByteArray> messages_;
};

} // namespace quellbox

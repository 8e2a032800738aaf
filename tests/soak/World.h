#pragma once

#include "tests/support/FaultMount.h"

#include <QStringList>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <random>
#include <set>
#include <thread>

namespace quellbox::soak {

/// Everything around the program: a share on which messages arrive, are touched, vanish and come back; other programs
/// that hold files open; a mail server that takes what it finds in the pickup directory; and a server that stalls and
/// dies now and then. All of it acts at random on a thread of its own, and looks for what must never be.
class World {
public:
    /// What has happened, and what must not have.
    struct Account {
        int arrived = 0;
        int touched = 0;
        int vanished = 0;
        int held = 0;
        int delivered = 0;
        int stalls = 0;
        int writeFaults = 0;
        int lostAnswers = 0;
        int deaths = 0;
        int inBoth = 0;           ///< messages that were delivered and are still in the archive
        QStringList violations{}; ///< each in a sentence
    };

    explicit World(unsigned seed);
    ~World();
    World(const World&) = delete;
    World& operator=(const World&) = delete;

    /// Why there is no share; empty when there is one.
    QString WhyNot() const { return whyNot_; }

    QString Archive() const { return archive_; }
    QString Pickup() const { return pickup_; }

    /// Nothing happens any more, and the server answers. Returns at once; IsQuiet() says when it is so.
    void Pause();
    bool IsQuiet() const { return isQuiet_; }
    void GoOn();

    /// Looks, while it is quiet, for every message that has ever arrived. Those in `deleted` may be gone.
    Account Look(const std::set<int>& deleted);

    /// Lets so many messages arrive, while it is quiet.
    void LetArrive(int count);

    /// The names of the files in the archive, while it is quiet.
    std::set<QString> ArchiveNames() const;

    /// Whether the archive holds a message at this moment.
    bool IsInArchive(const QString& name) const;

    /// Whether the message was away at any time, while it is quiet.
    bool HasVanished(int number) const { return vanished_.count(number) > 0; }

    /// What kind of share it is.
    const char* Kind() const { return kind_; }

private:
    void Run(unsigned seed);
    FaultMount::Traits ChooseTraits(unsigned seed);
    void Step();
    int NextTrouble();
    void Trouble();
    void EndTrouble();
    void Arrive();
    void Touch();
    void Vanish();
    void ComeBack();
    void Hold();
    void TakePickup();
    void Violate(const QString& sentence);
    QString AnyOf(const QString& folder);
    int Random(int below);

    std::unique_ptr<FaultMount> mount_; // of the thread
    std::mt19937 random_;
    QString whyNot_;
    QString real_; // the folder behind the mount
    QString archive_;
    QString pickup_;
    Account account_;
    std::set<int> delivered_;
    std::set<int> vanished_;
    const char* kind_ = "";
    std::vector<std::unique_ptr<class QFile>> held_;
    int next_ = 0;
    std::vector<int> troubles_; // of those to come
    int troubleFor_ = 0;        // steps
    bool isDead_ = false;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool isStarted_ = false;
    bool wantsQuiet_ = false;
    bool ends_ = false;
    std::atomic<bool> isQuiet_ = false;
    std::thread thread_;
};

} // namespace quellbox::soak

#pragma once

#ifdef __linux__

#include "platform/FileSystem.h"
#include "tests/support/FaultMount.h"

#include <QString>

#include <set>
#include <vector>

namespace quellbox {

/// What the program said it did.
struct Told {
    std::set<QString> failed; ///< the messages of which it said that something went wrong
    std::set<QString> listed; ///< those that a refresh shows
    bool wasComplete = true;  ///< it has dealt with all messages, as far as it says
};

/// What became of the messages.
struct Found {
    int lost = 0;       ///< in neither folder, and were not to be deleted for good
    int damaged = 0;    ///< not the bytes that they were
    int silent = 0;     ///< were not dealt with, and nobody said so
    int both = 0;       ///< in both folders, and that was said
    int failedDone = 0; ///< dealt with, and said to have failed
    int leftBehind = 0; ///< temporary files in the folder to which they were to be moved
    int strayNames = 0; ///< names there that a mail server picks up and that are no message
};

/// What was to become of the messages.
enum class Wanted { InPickup, Deleted, Kept, PutBack };

/// An archive of twenty messages of a tolerated sender and an empty pickup folder, anew for each run, in a mounted
/// folder. One message is longer than what is written at once.
class FaultScene {
public:
    static constexpr int count = 20;

    /// With this all messages end.
    static const QByteArray& Ending();

    explicit FaultScene(FaultMount& mount);
    ~FaultScene();
    FaultScene(const FaultScene&) = delete;
    FaultScene& operator=(const FaultScene&) = delete;

    FaultMount& Mount() { return mount_; }
    QString Archive() const { return mount_.Folder() + run_ + QStringLiteral("/archive/"); }
    QString Pickup() const { return mount_.Folder() + run_ + QStringLiteral("/pickup/"); }
    static std::vector<QString> Names();

    /// What became of messages of which the program said that.
    Found LookFor(Wanted wanted, const Told& told) const;

    /// The temporary files in the folder to which they were to be moved.
    int LeftBehind(Wanted wanted) const;

    /// The folder to which they were to be moved, as the program names it.
    QString FolderToClear(Wanted wanted) const;

    /// Has all messages moved into a folder, which is named as the program does, by another program.
    void MoveAllTo(const QString& folder) const;

    /// Another message, which the program has not met yet, in a folder from which it could be moved there.
    QString AddMessage(Wanted wanted) const;

private:
    enum class State { Missing, Whole, Damaged };

    QString Real(const char* folder) const;
    QString RealKept() const;
    QString Source(Wanted wanted) const;
    QString Target(Wanted wanted) const;
    Found LookForMoved(Wanted wanted, const Told& told) const;
    Found LookForDeleted(const Told& told) const;
    static State StateOf(const QString& folder, const QString& name);

    FaultMount& mount_;
    const QString run_;
};

} // namespace quellbox

#endif

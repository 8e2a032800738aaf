#pragma once

#ifdef __linux__

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include <chrono>
#include <map>

namespace quellbox {

/// A mounted folder that is as slow as a share and has its faults, in a folder of its own; unmounted by the destructor.
/// The kernel gets each call, and remembers names for a second. Where FUSE is missing or may not be used, WhyNot()
/// tells why, and everything else must be left alone.
class FaultMount {
public:
    struct Traits {
        std::chrono::milliseconds delay{0}; ///< of each call
        bool links = true;                  ///< knows hard links
        bool noReplace = true;              ///< knows a rename that does not replace
        bool refusesOpen = false;           ///< refuses to rename, replace or remove a file that is open
        bool separate = false;              ///< nothing is renamed or linked from one folder into another
        QByteArray ending;                  ///< of a whole message, when "incomplete" is to be counted
    };

    /// Neither links nor a rename that does not replace.
    static Traits Poor();

    /// Links, but no rename that does not replace.
    static Traits LinksOnly();

    /// As the kernel shows a share of a Windows server: a rename that does not replace, but no links.
    static Traits LikeKernelClient();

    /// Two shares, one in each folder, as a program shows them that knows little and refuses what is open.
    static Traits TwoShares();

    explicit FaultMount(const Traits& traits);
    ~FaultMount();
    FaultMount(const FaultMount&) = delete;
    FaultMount& operator=(const FaultMount&) = delete;

    bool IsMounted() const { return whyNot_.isEmpty(); }
    QString WhyNot() const { return whyNot_; }

    /// The mounted folder, and the real one behind it, which is reached without delay. Both end with a separator.
    QString Folder() const;
    QString RealFolder() const;

    /// Sets what goes wrong from now on: lines as in "hang unlink *", which stand for what happens, to which kind of
    /// call and to which name; tests/support/fault_mount/Rules.h has the whole of it. Counting begins anew with each
    /// call of this. Without lines nothing goes wrong.
    void SetRules(const QByteArray& lines);

    /// How many calls of each kind there were until now, as in "unlink"; under "hanging" those that hang at present,
    /// under "came-true" how often a rule did, and under "incomplete" how often a file named *.EML was not whole.
    /// Calls for which the kernel waits are all counted when the program has its answer. Of a program that was killed
    /// there are those that were told last, if any.
    std::map<QByteArray, int> Counts();

    /// Kills the program behind the folder, which then is dead: every call fails with ENOTCONN.
    void Kill();

    /// Whether the program behind the folder has ended, as a rule told it to.
    bool HasEnded();

    /// Mounts the folder again in the same place, without rules, after Kill() or a rule that did the same, or that took
    /// the folder away. Throws std::runtime_error.
    void MountAgain();
    int TimesMounted() const { return timesMounted_; }

private:
    QString Path(const char* name) const;
    std::map<QByteArray, int> ReadCounts() const;
    bool Start();
    void Stop();

    const Traits traits_;
    int rulesSet_ = 0;
    int timesMounted_ = 0;
    QTemporaryDir place_;
    QProcess process_;
    QString whyNot_;
};

} // namespace quellbox

#endif

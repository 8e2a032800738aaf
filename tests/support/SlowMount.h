#pragma once

#ifdef __linux__

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include <chrono>
#include <map>

namespace quellbox {

/// A mounted folder that is as slow as a share, in a folder of its own; unmounted by the destructor. The kernel gets
/// each call, and remembers names for a second. Where FUSE is missing or may not be used, WhyNot() tells why, and
/// everything else must be left alone.
class SlowMount {
public:
    struct Traits {
        std::chrono::milliseconds delay{0}; ///< of each call
        bool poor = false;                  ///< neither hard links nor a rename that does not replace
    };

    /// The default has neither delay nor faults.
    explicit SlowMount(const Traits& traits);
    ~SlowMount();
    SlowMount(const SlowMount&) = delete;
    SlowMount& operator=(const SlowMount&) = delete;

    bool IsMounted() const { return whyNot_.isEmpty(); }
    QString WhyNot() const { return whyNot_; }

    /// The mounted folder, and the real one behind it, which is reached without delay. Both end with a separator.
    QString Folder() const;
    QString RealFolder() const;

    /// Sets what goes wrong from now on: lines as in "hang unlink *", which stand for what happens, to which kind of
    /// call and to which name. Without lines nothing does.
    void SetRules(const QByteArray& lines);

    /// How many calls of each kind there were until now, as in "unlink"; under "hanging" those that hang at present.
    /// Calls for which the kernel waits are all counted when the program has its answer.
    std::map<QByteArray, int> Counts();

private:
    QString Path(const char* name) const;
    bool Start(const Traits& traits);
    void Stop();

    QTemporaryDir place_;
    QProcess process_;
    QString whyNot_;
};

} // namespace quellbox

#endif

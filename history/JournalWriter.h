#pragma once

#include "history/JournalDatabase.h"
#include "platform/WorkPool.h"

#include <QMutex>
#include <QWaitCondition>

#include <atomic>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QLockFile;

namespace quellbox {

/// Does what is to be done with the database of the history, one thing after the other, beside the window. What is
/// written gathers for a moment and is then written as a whole. Nobody waits for it, and a database that cannot be used
/// for a while is tried again.
///
/// A database that is damaged is put aside, and a new one begun. One that a newer version of the program has made, or
/// that cannot be opened, is left alone, and the history then lasts until the program ends.
///
/// Every method may be called from several threads at once.
class JournalWriter : public std::enable_shared_from_this<JournalWriter> {
public:
    using Job = std::function<void(JournalDatabase&)>;

    /// Who is told what; on a thread of the pool.
    struct Listener {
        std::function<void(const QString&)> trouble; ///< what the user is to know, once for each kind of trouble
        std::function<void()> written;               ///< the history is another one now
    };

    /// An empty `file` keeps the history in memory.
    JournalWriter(WorkPool& pool, QString file, Listener listener);
    ~JournalWriter();

    enum class Pace {
        Gather, ///< what else comes soon may be written together with it
        AtOnce,
    };

    /// `job` changes the database. When it is written for good, `done` is called on a thread of the pool. A job that
    /// is done again after a failure finds the database as it was before.
    void Write(Job job, Pace pace, std::function<void()> done = {});

    /// What a job has to find in the database.
    enum class Sight {
        Present, ///< what is there
        All,     ///< everything that was to be written before, or the job fails
    };

    /// `job` only reads. When it fails, `failed` is called instead, as it is when the writer is closed.
    void Read(Job job, Sight sight, std::function<void()> failed);

    /// True while nothing can be written, which is tried again later.
    bool IsInTrouble() const { return isInTrouble_; }

    /// The program ends: what cannot be written now is not tried again.
    void Hurry();

    /// What comes from now on is kept in that file; an empty one keeps it in memory.
    void SetFile(const QString& file);

    /// Nothing more is accepted. What is there is written, if that is possible now.
    void Close();

    /// The name under which this program writes down what it has begun.
    const QString& Session() const { return session_; }

    /// True when the program with that session has ended. Only within a job that writes.
    bool IsAbandoned(const QString& session) const;

private:
    struct Task {
        Job job;
        std::function<void()> done;
        std::function<void()> failed;
        bool writes = false;
        bool seesAll = false;
    };
    using Tasks = std::deque<Task>;

    void Add(Task task, Pace pace);
    void Drain();
    Tasks TakeTasks();
    void Run(Tasks& tasks);
    void RunRead(Task& task);
    bool RunWrites(Tasks& tasks);
    void TryWrites(const Tasks& tasks, size_t count);
    void PutOff(Tasks tasks);
    JournalDatabase& Database();
    void ChangeFile();
    void Open();
    void PutAside();
    void HoldSession();
    bool Recover(const JournalError& error);
    void Tell(JournalProblem problem, const QString& reason);
    QString SessionFile(const QString& session) const;

    WorkPool& pool_;
    const Listener listener_;
    const QString session_;

    std::atomic<bool> isInTrouble_ = false;

    QMutex mutex_; // of what follows
    QWaitCondition changed_;
    Tasks waiting_;
    bool isUrgent_ = false;
    bool isRunning_ = false;
    bool isClosed_ = false;
    bool isHurried_ = false;
    bool mustWait_ = false; // before the next attempt
    std::optional<QString> nextFile_;

    // Used by the running work only.
    QString file_;
    std::optional<JournalDatabase> database_;
    std::unique_ptr<QLockFile> sessionLock_;
    std::vector<JournalProblem> told_;
    int timesDamaged_ = 0;
};

} // namespace quellbox

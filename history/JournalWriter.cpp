#include "history/JournalWriter.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QUuid>

#include <algorithm>
#include <array>
#include <utility>

namespace quellbox {

namespace {

// An action on local files needs both processors for itself, and most have ended by then.
constexpr qint64 gatherMs = 1000;
constexpr qint64 retryMs = 5000;

// So long another program may take to put the same database aside.
constexpr int putAsideTimeoutMs = 3000;

// A disk on which every new database is damaged is not asked for ever.
constexpr int mostDamaged = 3;

/// SQLite keeps what was written last in files beside the database.
const std::array besideDatabase{QLatin1String("-wal"), QLatin1String("-shm")};

/// The folder is this user's alone: who wrote to whom is nobody else's business.
void MakeFolderOf(const QString& file) {
    const QString folder = QFileInfo(file).absolutePath();
    if (!QFileInfo::exists(folder) && QDir().mkpath(folder)) {
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
}

bool IsWhole(const QString& file) {
    try {
        return JournalDatabase(file).IsWhole();
    } catch (const JournalError& error) {
        return error.Problem() != JournalProblem::Damaged;
    }
}

} // namespace

JournalWriter::JournalWriter(WorkPool& pool, QString file, Listener listener)
    : pool_(pool), listener_(std::move(listener)), session_(QUuid::createUuid().toString(QUuid::Id128)),
      file_(std::move(file)) {}

JournalWriter::~JournalWriter() = default;

void JournalWriter::Write(Job job, Pace pace, std::function<void()> done) {
    Add({std::move(job), std::move(done), {}, true, false}, pace);
}

void JournalWriter::Read(Job job, Sight sight, std::function<void()> failed) {
    Add({std::move(job), {}, std::move(failed), false, sight == Sight::All}, Pace::AtOnce);
}

void JournalWriter::Hurry() {
    const QMutexLocker lock(&mutex_);
    isHurried_ = true;
    changed_.wakeAll();
}

void JournalWriter::Add(Task task, Pace pace) {
    QMutexLocker lock(&mutex_);
    if (isClosed_) {
        lock.unlock();
        if (task.failed) {
            task.failed();
        }
        return;
    }
    waiting_.push_back(std::move(task));
    isUrgent_ = isUrgent_ || pace == Pace::AtOnce;
    changed_.wakeAll();
    if (!std::exchange(isRunning_, true)) {
        pool_.Start(WorkPool::Kind::Journal, [self = shared_from_this()] { self->Drain(); });
    }
}

void JournalWriter::Close() {
    const QMutexLocker lock(&mutex_);
    isClosed_ = true;
    changed_.wakeAll();
    if (!std::exchange(isRunning_, true)) {
        pool_.Start(WorkPool::Kind::Journal, [self = shared_from_this()] { self->Drain(); });
    }
}

void JournalWriter::SetFile(const QString& file) {
    const QMutexLocker lock(&mutex_);
    nextFile_ = file;
}

void JournalWriter::Drain() {
    for (Tasks tasks = TakeTasks(); !tasks.empty(); tasks = TakeTasks()) {
        ChangeFile();
        Run(tasks);
    }
}

void JournalWriter::ChangeFile() {
    QMutexLocker lock(&mutex_);
    const std::optional<QString> file = std::exchange(nextFile_, std::nullopt);
    lock.unlock();
    if (file) {
        database_.reset();
        sessionLock_.reset();
        file_ = *file;
    }
}

/// Takes what waits, after a moment in which more may come. Nothing is taken when there is nothing left; the work ends
/// then.
JournalWriter::Tasks JournalWriter::TakeTasks() {
    QMutexLocker lock(&mutex_);
    const QDeadlineTimer pause(mustWait_ ? retryMs : gatherMs);
    const auto isDue = [this] { return waiting_.empty() || isClosed_ || isHurried_ || (isUrgent_ && !mustWait_); };
    while (!isDue() && changed_.wait(&mutex_, pause)) {
    }
    isUrgent_ = false;
    mustWait_ = false;
    isRunning_ = !waiting_.empty();
    if (!isRunning_ && (isClosed_ || isHurried_)) {
        database_.reset();
        sessionLock_.reset();
    }
    return std::exchange(waiting_, {});
}

// Writes that follow each other are written together.
void JournalWriter::Run(Tasks& tasks) {
    while (!tasks.empty()) {
        if (!tasks.front().writes) {
            Task task = std::move(tasks.front());
            tasks.pop_front();
            RunRead(task);
        } else if (!RunWrites(tasks)) {
            PutOff(std::move(tasks));
            return;
        }
    }
}

void JournalWriter::RunRead(Task& task) {
    try {
        task.job(Database());
    } catch (const JournalError& error) {
        Recover(error);
        task.failed();
    }
}

/// Writes the first tasks. Returns false when that has to be tried again later.
bool JournalWriter::RunWrites(Tasks& tasks) {
    const auto firstRead = std::find_if(tasks.begin(), tasks.end(), [](const Task& task) { return !task.writes; });
    const auto count = static_cast<size_t>(firstRead - tasks.begin());
    try {
        TryWrites(tasks, count);
        isInTrouble_ = false;
        listener_.written();
    } catch (const JournalError& error) {
        if (Recover(error)) {
            return false;
        }
        tasks.erase(tasks.begin(), tasks.begin() + static_cast<std::ptrdiff_t>(count));
        return true;
    }
    for (size_t task = 0; task < count; ++task) {
        if (tasks.front().done) {
            tasks.front().done();
        }
        tasks.pop_front();
    }
    return true;
}

void JournalWriter::TryWrites(const Tasks& tasks, size_t count) {
    JournalDatabase& database = Database();
    database.BeginTransaction();
    try {
        std::for_each_n(tasks.begin(), count, [&database](const Task& task) { task.job(database); });
        database.Commit();
    } catch (...) {
        database.Rollback();
        throw;
    }
}

// What only looks at what is there need not wait until something can be written. What has come meanwhile comes behind
// the rest. A program that ends does not try again.
void JournalWriter::PutOff(Tasks tasks) {
    Tasks left;
    for (Task& task : tasks) {
        if (task.writes) {
            left.push_back(std::move(task));
        } else if (task.seesAll) {
            task.failed();
        } else {
            RunRead(task);
        }
    }
    const QMutexLocker lock(&mutex_);
    if (isClosed_ || isHurried_) {
        return;
    }
    std::move(waiting_.begin(), waiting_.end(), std::back_inserter(left));
    waiting_ = std::move(left);
}

JournalDatabase& JournalWriter::Database() {
    if (!database_) {
        Open();
    }
    return *database_;
}

void JournalWriter::Open() {
    if (file_.isEmpty()) {
        database_.emplace(QString());
        return;
    }
    MakeFolderOf(file_);
    database_.emplace(file_);
    QFile::setPermissions(file_, QFile::ReadOwner | QFile::WriteOwner);
    HoldSession();
}

/// What the user is told of an error, and what is done about it. Returns true when it is worth trying again.
bool JournalWriter::Recover(const JournalError& error) {
    if (error.Problem() == JournalProblem::Damaged) {
        PutAside();
        return true;
    }
    const bool isInMemory = file_.isEmpty();
    const bool isOpen = database_.has_value();
    const bool isBusy = error.Problem() == JournalProblem::Busy || error.Problem() == JournalProblem::Full;
    if (isInMemory) {
        return false;
    }
    if (!isOpen && !isBusy) {
        Tell(JournalProblem::Newer, error.Text());
        file_.clear();
        return true;
    }
    Tell(error.Problem(), error.Text());
    isInTrouble_ = true;
    const QMutexLocker lock(&mutex_);
    mustWait_ = true;
    isUrgent_ = false;
    return true;
}

// Another program may have put it aside already, and begun a new one. Where it stays where it is, the history is kept
// in memory.
void JournalWriter::PutAside() {
    database_.reset();
    sessionLock_.reset();
    QLockFile lock(file_ + QStringLiteral(".lock"));
    [[maybe_unused]] const bool isMine = lock.tryLock(putAsideTimeoutMs);
    if (++timesDamaged_ <= mostDamaged && IsWhole(file_)) {
        return;
    }
    const QString stamp = QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd-HHmmss-zzz"));
    const QString aside = file_ + QStringLiteral(".damaged-") + stamp;
    if (timesDamaged_ > mostDamaged || !QFile::rename(file_, aside)) {
        Tell(JournalProblem::Newer, QCoreApplication::translate("quellbox", "It is damaged, and cannot be put aside."));
        file_.clear();
        return;
    }
    for (const QLatin1String ending : besideDatabase) {
        QFile::rename(file_ + ending, aside + ending);
    }
    Tell(JournalProblem::Damaged, aside);
}

void JournalWriter::HoldSession() {
    const QString file = SessionFile(session_);
    QDir().mkpath(QFileInfo(file).absolutePath());
    sessionLock_ = std::make_unique<QLockFile>(file);
    sessionLock_->setStaleLockTime(0);
    [[maybe_unused]] const bool isMine = sessionLock_->tryLock();
}

// A lock that nobody holds any more can be had; of a program on another computer that is not known.
bool JournalWriter::IsAbandoned(const QString& session) const {
    if (session == session_ || file_.isEmpty()) {
        return false;
    }
    QLockFile lock(SessionFile(session));
    lock.setStaleLockTime(0);
    return lock.tryLock();
}

QString JournalWriter::SessionFile(const QString& session) const {
    return QFileInfo(file_).absolutePath() + QStringLiteral("/sessions/") + session;
}

void JournalWriter::Tell(JournalProblem problem, const QString& reason) {
    if (std::find(told_.begin(), told_.end(), problem) != told_.end()) {
        return;
    }
    told_.push_back(problem);
    const auto text = [problem] {
        switch (problem) {
        case JournalProblem::Busy:
            return QCoreApplication::translate("quellbox",
                                               "What is done cannot be written into the history at the moment, "
                                               "because another program keeps it locked. It is tried again "
                                               "while this program runs. %1: %2");
        case JournalProblem::Full:
            return QCoreApplication::translate("quellbox",
                                               "What is done cannot be written into the history at the moment, "
                                               "because the disk is full. It is tried again while this "
                                               "program runs. %1: %2");
        case JournalProblem::Damaged:
            return QCoreApplication::translate("quellbox",
                                               "The history %1 is damaged. It was put aside as %2, and a new "
                                               "one has been begun.");
        case JournalProblem::Other:
            return QCoreApplication::translate("quellbox",
                                               "What is done cannot be written into the history at the moment. It is "
                                               "tried again while this program runs. %1: %2");
        case JournalProblem::Newer:
            return QCoreApplication::translate("quellbox",
                                               "The history cannot be used, and is left alone. What is done now "
                                               "can be looked up until the program ends. %1: %2");
        }
        return QString();
    }();
    listener_.trouble(text.arg(QDir::toNativeSeparators(file_), reason));
}

} // namespace quellbox

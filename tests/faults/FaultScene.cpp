#ifdef __linux__

#include "tests/faults/FaultScene.h"

#include "messages/KeptFolder.h"

#include <QDateTime>
#include <QDir>
#include <QFile>

#include <algorithm>
#include <stdexcept>

namespace quellbox {

namespace {

constexpr int longMessage = 7;
constexpr int longBody = 300'000;
constexpr int shortBody = 1500;
constexpr int daysAgo = 10;

// The kernel remembers names, so each run has folders of its own.
QString NewRun() {
    static int runs = 0;
    return QStringLiteral("run") + QString::number(++runs);
}

QByteArray MessageBytes(const QString& name) {
    const bool isLong = name.startsWith(QStringLiteral("m%1").arg(longMessage, 2, 10, QLatin1Char('0')));
    QByteArray bytes = "To: someone@example.com\r\nFrom: friend@tolerated.example\r\nSubject: " + name.toUtf8() +
                       "\r\nX-SENDER: friend@tolerated.example\r\n\r\n";
    bytes.append(QByteArray(isLong ? longBody : shortBody, name.at(2).toLatin1()));
    return bytes + FaultScene::Ending();
}

void WriteOld(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    const bool isWritten =
        file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush() &&
        file.setFileTime(QDateTime::currentDateTime().addDays(-daysAgo), QFileDevice::FileModificationTime);
    if (!isWritten) {
        throw std::runtime_error("a message cannot be written");
    }
}

} // namespace

const QByteArray& FaultScene::Ending() {
    static const QByteArray ending = "\r\nthe end\r\n";
    return ending;
}

FaultScene::FaultScene(FaultMount& mount) : mount_(mount), run_(NewRun()) {
    for (const char* folder : {"archive", "pickup"}) {
        QDir().mkpath(Real(folder));
    }
    for (const QString& name : Names()) {
        WriteOld(Real("archive") + name, MessageBytes(name));
    }
}

FaultScene::~FaultScene() {
    QDir(mount_.RealFolder() + run_).removeRecursively();
}

std::vector<QString> FaultScene::Names() {
    std::vector<QString> names;
    for (int number = 0; number < count; ++number) {
        names.push_back(QStringLiteral("m%1.EML").arg(number, 2, 10, QLatin1Char('0')));
    }
    return names;
}

QString FaultScene::Real(const char* folder) const {
    return mount_.RealFolder() + run_ + QLatin1Char('/') + QLatin1String(folder) + QLatin1Char('/');
}

/// The folder of deleted messages; one that does not exist where none was made.
QString FaultScene::RealKept() const {
    const QDir above(KeptFoldersOf(Real("archive")));
    const QStringList names = above.entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot);
    if (names.size() > 1) {
        throw std::runtime_error("one action has made two folders");
    }
    return above.path() + QLatin1Char('/') + names.value(0, QStringLiteral("none")) + QLatin1Char('/');
}

QString FaultScene::Source(Wanted wanted) const {
    return wanted == Wanted::PutBack ? RealKept() : Real("archive");
}

QString FaultScene::Target(Wanted wanted) const {
    switch (wanted) {
    case Wanted::Kept:
        return RealKept();
    case Wanted::PutBack:
        return Real("archive");
    default:
        return Real("pickup");
    }
}

FaultScene::State FaultScene::StateOf(const QString& folder, const QString& name) {
    QFile file(folder + name);
    if (!file.open(QIODevice::ReadOnly)) {
        return State::Missing;
    }
    return file.readAll() == MessageBytes(name) ? State::Whole : State::Damaged;
}

Found FaultScene::LookFor(Wanted wanted, const Told& told) const {
    return wanted == Wanted::Deleted ? LookForDeleted(told) : LookForMoved(wanted, told);
}

Found FaultScene::LookForMoved(Wanted wanted, const Told& told) const {
    Found found;
    const QString from = Source(wanted);
    const QString to = Target(wanted);
    for (const QString& name : Names()) {
        const State source = StateOf(from, name);
        const State target = StateOf(to, name);
        const bool saysFailed = told.failed.contains(name);
        const bool isTold = saysFailed || told.listed.contains(name) || !told.wasComplete;
        found.damaged += source == State::Damaged || target == State::Damaged ? 1 : 0;
        found.lost += source != State::Whole && target != State::Whole ? 1 : 0;
        found.silent += source == State::Whole && !isTold ? 1 : 0;
        found.both += source == State::Whole && target == State::Whole ? 1 : 0;
        found.failedDone += source == State::Missing && target == State::Whole && saysFailed ? 1 : 0;
    }
    found.leftBehind = LeftBehind(wanted);
    const QStringList seen = QDir(to).entryList({QStringLiteral("*.EML")}, QDir::Files | QDir::Hidden);
    const std::vector<QString> names = Names();
    found.strayNames = static_cast<int>(std::count_if(seen.begin(), seen.end(), [&names](const QString& name) {
        return std::find(names.begin(), names.end(), name) == names.end();
    }));
    return found;
}

Found FaultScene::LookForDeleted(const Told& told) const {
    Found found;
    for (const QString& name : Names()) {
        const State state = StateOf(Real("archive"), name);
        const bool saysFailed = told.failed.contains(name);
        found.damaged += state == State::Damaged ? 1 : 0;
        found.silent += state != State::Missing && !saysFailed && told.wasComplete ? 1 : 0;
        found.failedDone += state == State::Missing && saysFailed ? 1 : 0;
    }
    return found;
}

int FaultScene::LeftBehind(Wanted wanted) const {
    const QStringList left =
        QDir(Target(wanted)).entryList({QStringLiteral(".quellbox-*.part")}, QDir::Files | QDir::Hidden);
    return static_cast<int>(left.size());
}

QString FaultScene::FolderToClear(Wanted wanted) const {
    return mount_.Folder() + Target(wanted).mid(mount_.RealFolder().size());
}

void FaultScene::MoveAllTo(const QString& folder) const {
    const QString real = mount_.RealFolder() + folder.mid(mount_.Folder().size());
    for (const QString& name : Names()) {
        if (!QFile::rename(Real("archive") + name, real + name)) {
            throw std::runtime_error("a message cannot be moved");
        }
    }
}

QString FaultScene::AddMessage(Wanted wanted) const {
    const bool isFromArchive = wanted != Wanted::PutBack;
    const QString name = QStringLiteral("more.EML");
    WriteOld(Real(isFromArchive ? "archive" : "pickup") + name, MessageBytes(name));
    return (isFromArchive ? Archive() : Pickup()) + name;
}

} // namespace quellbox

#endif

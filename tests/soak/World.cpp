#include "tests/soak/World.h"

#include "tests/soak/Messages.h"

#include <QDateTime>
#include <QDir>
#include <QFile>

#include <algorithm>
#include <numeric>

namespace quellbox::soak {

namespace {

constexpr std::chrono::milliseconds stepLength(20);
constexpr int mostInArchive = 2'000;
constexpr int betweenTroubles = 150; // steps, on average
constexpr int kindsOfTrouble = 8;

QByteArray BytesOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList NamesIn(const QString& folder) {
    return QDir(folder).entryList(QDir::Files | QDir::Hidden);
}

} // namespace

World::World(unsigned seed) : random_(seed), thread_([this, seed] { Run(seed); }) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return isStarted_; });
}

World::~World() {
    {
        const std::lock_guard lock(mutex_);
        ends_ = true;
    }
    changed_.notify_all();
    thread_.join();
}

/// The seed decides the kind of share: one in which messages are renamed, or two between which they are copied.
FaultMount::Traits World::ChooseTraits(unsigned seed) {
    FaultMount::Traits traits = FaultMount::LikeKernelClient();
    switch (seed % 3) {
    case 0:
        kind_ = "one share";
        break;
    case 1:
        kind_ = "two shares";
        traits.separate = true;
        break;
    default:
        kind_ = "two poor shares";
        traits = FaultMount::TwoShares();
        break;
    }
    traits.delay = std::chrono::milliseconds(2);
    return traits;
}

// The mount belongs to the thread that has made it.
void World::Run(unsigned seed) {
    mount_ = std::make_unique<FaultMount>(ChooseTraits(seed));
    whyNot_ = mount_->WhyNot();
    if (whyNot_.isEmpty()) {
        real_ = mount_->RealFolder();
        for (const char* folder : {"archive", "pickup", "aside", "sent"}) {
            QDir(real_).mkdir(QLatin1String(folder));
        }
        archive_ = mount_->Folder() + QStringLiteral("archive/");
        pickup_ = mount_->Folder() + QStringLiteral("pickup/");
    }
    std::unique_lock lock(mutex_);
    isStarted_ = true;
    changed_.notify_all();
    while (!ends_) {
        const bool quiet = wantsQuiet_;
        lock.unlock();
        if (whyNot_.isEmpty() && !quiet) {
            Step();
        } else if (whyNot_.isEmpty() && !isQuiet_) {
            EndTrouble();
            held_.clear();
            TakePickup();
        }
        lock.lock();
        isQuiet_ = quiet;
        changed_.wait_for(lock, stepLength, [this] { return ends_; });
    }
    lock.unlock();
    held_.clear();
    mount_.reset();
}

void World::Pause() {
    const std::lock_guard lock(mutex_);
    wantsQuiet_ = true;
}

void World::GoOn() {
    const std::lock_guard lock(mutex_);
    wantsQuiet_ = false;
    isQuiet_ = false;
}

int World::Random(int below) {
    return std::uniform_int_distribution<int>(0, below - 1)(random_);
}

QString World::AnyOf(const QString& folder) {
    const QStringList names = NamesIn(folder);
    return names.isEmpty() ? QString() : names[Random(static_cast<int>(names.size()))];
}

void World::Step() {
    TakePickup();
    for (int arriving = Random(3); arriving > 0; --arriving) {
        Arrive();
    }
    switch (Random(60)) {
    case 0:
        Touch();
        break;
    case 1:
        Vanish();
        break;
    case 2:
        ComeBack();
        break;
    case 3:
        Hold();
        break;
    default:
        break;
    }
    if (troubleFor_ > 0 && --troubleFor_ == 0) {
        EndTrouble();
    } else if (troubleFor_ == 0 && Random(betweenTroubles) == 0) {
        Trouble();
    }
}

/// The next kind of trouble. Each comes before any comes again, so that a minute has nearly all of them.
int World::NextTrouble() {
    if (troubles_.empty()) {
        troubles_.resize(kindsOfTrouble);
        std::iota(troubles_.begin(), troubles_.end(), 0);
        std::shuffle(troubles_.begin(), troubles_.end(), random_);
    }
    const int next = troubles_.back();
    troubles_.pop_back();
    return next;
}

void World::Trouble() {
    troubleFor_ = 25 + Random(150);
    switch (NextTrouble()) {
    case 0:
        mount_->Kill();
        isDead_ = true;
        ++account_.deaths;
        break;
    case 1:
        mount_->SetRules("hang unlink *");
        ++account_.stalls;
        break;
    case 2:
        mount_->SetRules("hang rename *");
        ++account_.stalls;
        break;
    case 3:
        mount_->SetRules("hang readdir *\nhang open *");
        ++account_.stalls;
        break;
    case 4:
        mount_->SetRules("cut write *");
        ++account_.writeFaults;
        break;
    case 5:
        mount_->SetRules("fail write,create,flush,fsync * error=ENOSPC");
        ++account_.writeFaults;
        break;
    case 6:
        mount_->SetRules("lose rename,unlink * error=EIO");
        ++account_.lostAnswers;
        break;
    default:
        mount_->SetRules("lose rename,unlink * error=ENOENT");
        ++account_.lostAnswers;
        break;
    }
}

void World::EndTrouble() {
    troubleFor_ = 0;
    if (isDead_) {
        mount_->MountAgain();
        isDead_ = false;
    }
    mount_->SetRules({});
}

// As the filter of a server does it: a message has its name when it is whole.
void World::Arrive() {
    if (NamesIn(real_ + QStringLiteral("archive")).size() >= mostInArchive) {
        return;
    }
    const int number = next_++;
    const QString made = real_ + QStringLiteral("aside/") + NameOf(number) + QStringLiteral(".new");
    QFile file(made);
    if (!file.open(QIODevice::WriteOnly) || file.write(MessageOf(number)) < 0 || !file.flush()) {
        Violate(QStringLiteral("The test could not write %1").arg(made));
    }
    file.close();
    QFile::rename(made, real_ + QStringLiteral("archive/") + NameOf(number));
    ++account_.arrived;
}

void World::Touch() {
    QFile file(real_ + QStringLiteral("archive/") + AnyOf(real_ + QStringLiteral("archive")));
    // It may be gone by now, and must not come into being again as an empty file.
    if (file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly)) {
        file.setFileTime(QDateTime::currentDateTime(), QFileDevice::FileModificationTime);
        ++account_.touched;
    }
}

void World::Vanish() {
    const QString name = AnyOf(real_ + QStringLiteral("archive"));
    if (!name.isEmpty() &&
        QFile::rename(real_ + QStringLiteral("archive/") + name, real_ + QStringLiteral("aside/") + name)) {
        vanished_.insert(NumberOf(name));
        ++account_.vanished;
    }
}

void World::ComeBack() {
    const QString name = AnyOf(real_ + QStringLiteral("aside"));
    if (NumberOf(name) >= 0) {
        QFile::rename(real_ + QStringLiteral("aside/") + name, real_ + QStringLiteral("archive/") + name);
    }
}

void World::Hold() {
    if (held_.size() >= 5) {
        held_.erase(held_.begin());
    }
    auto file = std::make_unique<QFile>(real_ + QStringLiteral("archive/") + AnyOf(real_ + QStringLiteral("archive")));
    if (file->open(QIODevice::ReadOnly)) {
        held_.push_back(std::move(file));
        ++account_.held;
    }
}

// A mail server takes every file of that ending at once, whatever is in it.
void World::TakePickup() {
    const QString pickup = real_ + QStringLiteral("pickup/");
    for (const QString& name : NamesIn(pickup)) {
        if (!name.endsWith(QStringLiteral(".EML"))) {
            continue;
        }
        const int number = NumberOf(name);
        const QByteArray bytes = BytesOf(pickup + name);
        if (number < 0 || bytes != MessageOf(number)) {
            Violate(QStringLiteral("%1 in the pickup directory is not the whole message: %2 bytes of %3")
                        .arg(name)
                        .arg(bytes.size())
                        .arg(MessageOf(std::max(number, 0)).size()));
        }
        if (!delivered_.insert(number).second) {
            QFile::remove(pickup + name);
            continue;
        }
        QFile::rename(pickup + name, real_ + QStringLiteral("sent/") + name);
        ++account_.delivered;
    }
}

World::Account World::Look(const std::set<int>& deleted) {
    account_.inBoth = 0;
    for (int number = 0; number < next_; ++number) {
        const QString name = NameOf(number);
        int places = 0;
        for (const char* folder : {"archive/", "aside/", "pickup/", "sent/"}) {
            const QString path = real_ + QLatin1String(folder) + name;
            if (!QFile::exists(path)) {
                continue;
            }
            ++places;
            if (BytesOf(path) != MessageOf(number)) {
                Violate(QStringLiteral("%1 is not whole").arg(path));
            }
        }
        if (places == 0 && deleted.count(number) == 0) {
            Violate(QStringLiteral("%1 is gone, and nobody has deleted it").arg(name));
        }
        account_.inBoth += places > 1 ? 1 : 0;
    }
    return account_;
}

void World::LetArrive(int count) {
    for (int message = 0; message < count; ++message) {
        Arrive();
    }
}

bool World::IsInArchive(const QString& name) const {
    return QFile::exists(real_ + QStringLiteral("archive/") + name);
}

std::set<QString> World::ArchiveNames() const {
    const QStringList names = NamesIn(real_ + QStringLiteral("archive"));
    return {names.begin(), names.end()};
}

void World::Violate(const QString& sentence) {
    if (account_.violations.size() < 20) {
        account_.violations += sentence;
    }
}

} // namespace quellbox::soak

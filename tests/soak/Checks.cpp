#include "tests/soak/Checks.h"

#include "tests/soak/Messages.h"

#include <QAction>
#include <QtTest/QTest>

#include <cstdio>

namespace quellbox::soak {

namespace {

constexpr int patienceMs = 60'000;
constexpr int mostTold = 20;
constexpr int arriving = 5;

} // namespace

bool Expect(bool holds, const QString& otherwise) {
    if (!holds) {
        std::printf("NOT SO: %s\n", qPrintable(otherwise));
    }
    return holds;
}

QStringList Checks::Make() {
    wrong_.clear();
    QTest::qWait(1'500); // the names that the kernel remembers are a second old at most
    LookForNotDone();
    CompareList();
    LookForWhatArrives();
    LookForTolerated();
    return wrong_;
}

void Checks::Tell(const QString& sentence) {
    if (wrong_.size() < mostTold) {
        wrong_ += sentence;
    }
}

/// What has vanished and come back is not meant.
void Checks::LookForNotDone() {
    for (const QString& name : ledger_.NotDone()) {
        if (!world_.HasVanished(NumberOf(name))) {
            Tell(QStringLiteral("%1 was still in the archive after an action that told no failure of it").arg(name));
        }
    }
}

void Checks::CompareList() {
    if (!Refresh(true, 0)) {
        return;
    }
    const std::set<QString> there = world_.ArchiveNames();
    for (const QString& name : there) {
        if (!IsListed(name)) {
            Tell(QStringLiteral("%1 is in the archive, and a full refresh does not list it").arg(name));
        }
    }
    const auto listed = static_cast<size_t>(window_.Messages().Count());
    if (listed > there.size()) {
        Tell(QStringLiteral("a full refresh lists %1 messages where there are %2").arg(listed).arg(there.size()));
    }
}

/// A tick adds to the list that CompareList() has left.
void Checks::LookForWhatArrives() {
    world_.LetArrive(arriving);
    if (window_.Messages().Count() == 0 || !Refresh(false, 0)) {
        return;
    }
    for (const QString& name : world_.ArchiveNames()) {
        if (!IsListed(name)) {
            Tell(QStringLiteral("%1 has arrived, and an automatic refresh does not list it").arg(name));
        }
    }
}

void Checks::LookForTolerated() {
    const auto* bulk = window_.findChild<QAction*>(QStringLiteral("mnuViewBulk"));
    if (bulk == nullptr || bulk->isChecked() || !Refresh(true, 2)) {
        return; // in bulk mode no sender is read
    }
    const std::set<QString> failed = NamesOf(ledger_.LastRefresh().failures);
    for (const QString& name : world_.ArchiveNames()) {
        if (IsOfToleratedSender(NumberOf(name)) && failed.count(name) == 0) {
            Tell(QStringLiteral("%1 is of a tolerated sender and still in the archive, and no failure was told of it")
                     .arg(name));
        }
    }
}

/// Whether it has completed.
bool Checks::Refresh(bool isFull, qint16 tolerationLevel) {
    window_.State().TolerationLevel = tolerationLevel;
    isFull ? window_.mnuAcRefresh_Click() : window_.RefreshArchive(true);
    const bool ended = QTest::qWaitFor([this] { return window_.Jobs().IsIdle(); }, patienceMs);
    window_.State().TolerationLevel = 2;
    if (!ended || ledger_.LastRefresh().outcome != RefreshOutcome::Completed) {
        Tell(QStringLiteral("a refresh of the quiet archive does not complete: ") + ledger_.LastRefresh().reason);
        return false;
    }
    return true;
}

} // namespace quellbox::soak

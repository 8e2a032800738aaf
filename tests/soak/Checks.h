#pragma once

#include "tests/soak/Ledger.h"
#include "tests/soak/World.h"

namespace quellbox::soak {

/// Sets what the window shows and has said against the folders, while it is quiet and no job runs.
class Checks {
public:
    /// What is lent has to outlive this object.
    Checks(frmMain& window, World& world, const Ledger& ledger) : window_(window), world_(world), ledger_(ledger) {}

    /// Returns what is not as it should be, each in a sentence. Leaves a full list behind, and lets some messages
    /// arrive.
    QStringList Make();

private:
    void LookForNotDone();
    void CompareList();
    void LookForWhatArrives();
    void LookForTolerated();
    bool Refresh(bool isFull, qint16 tolerationLevel);
    void Tell(const QString& sentence);
    bool IsListed(const QString& name) const { return window_.Messages().RowOfKey(name) >= 0; }

    frmMain& window_;
    World& world_;
    const Ledger& ledger_;
    QStringList wrong_;
};

/// Prints a sentence if something does not hold, and returns whether it does.
bool Expect(bool holds, const QString& otherwise);

} // namespace quellbox::soak

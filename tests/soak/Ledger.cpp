#include "tests/soak/Ledger.h"

namespace quellbox::soak {

Ledger::Ledger(frmMain& window, std::function<bool(const QString& name)> isThere)
    : window_(window), isThere_(std::move(isThere)) {
    const WindowJobs* jobs = &window.Jobs();
    QObject::connect(jobs, &WindowJobs::ActivityChanged, &context_, [this] {
        if (window_.Jobs().Now() == Activity::Working) {
            before_ = Listed();
        }
    });
    QObject::connect(jobs, &WindowJobs::DisposalEnded, &context_,
                     [this](const DisposalResult& result) { TakeDisposal(result); });
    QObject::connect(jobs, &WindowJobs::RefreshEnded, &context_,
                     [this](const RefreshResult& result) { lastRefresh_ = result; });
}

std::set<QString> Ledger::Listed() const {
    std::set<QString> names;
    const MessageListModel& model = window_.Messages();
    for (int row = 0; row < model.Count(); ++row) {
        names.insert(model.Row(row).Key());
    }
    return names;
}

void Ledger::TakeDisposal(const DisposalResult& result) {
    const std::set<QString> failed = NamesOf(result.failures);
    for (const QString& name : Listed()) {
        before_.erase(name);
    }
    for (const QString& name : before_) {
        if (failed.count(name) > 0) {
            continue;
        }
        ++done_;
        if (isThere_(name)) {
            notDone_.insert(name);
        }
    }
    before_.clear();
}

std::set<QString> NamesOf(const std::vector<FileFailure>& failures) {
    std::set<QString> names;
    for (const FileFailure& failure : failures) {
        names.insert(failure.path.mid(failure.path.lastIndexOf(QLatin1Char('/')) + 1));
    }
    return names;
}

} // namespace quellbox::soak

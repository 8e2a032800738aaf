#pragma once

#include "messages/MessageListModel.h"
#include "messages/Overview.h"
#include "platform/OrderedWork.h"

#include <QObject>
#include <QTimer>

#include <memory>
#include <optional>

namespace quellbox {

/// Keeps the pictures of a list up to date: counts what the list holds beside its thread, whenever it has changed. One
/// count runs at a time. Changes that come meanwhile are counted together afterwards, so that a list that changes all
/// the time is counted some times a second, and what is shown is never older than that.
class OverviewCounter : public QObject {
    Q_OBJECT

public:
    /// What is lent has to outlive this object, and the pool what it does for it.
    OverviewCounter(WorkPool& pool, const MessageListModel& model);

    /// Counts, and goes on with it, or stops; nothing is told then, not even of a count that runs.
    void SetActive(bool isActive);

    /// True while something is to be told that is not told yet.
    bool IsCounting() const { return isCounting_ || again_.isActive(); }

Q_SIGNALS:
    void Counted(const Overview& overview);

private:
    void NoteChange();
    void Count();
    void EndCount();

    WorkPool& pool_;
    const MessageListModel& model_;
    std::optional<OrderedWork<Overview>> work_;
    QTimer again_;
    bool isActive_ = false;
    bool isCounting_ = false;
    bool hasChanged_ = false; // since the count began
};

} // namespace quellbox

#include "messages/OverviewCounter.h"

#include "messages/ListTable.h"

#include <utility>

namespace quellbox {

namespace {

// Rows come and go one after the other; so long they gather.
constexpr int gatherMs = 50;

// A full refresh empties the list first. That is not to be seen, unless it takes long.
constexpr int gatherEmptyMs = 400;

} // namespace

OverviewCounter::OverviewCounter(WorkPool& pool, const MessageListModel& model) : pool_(pool), model_(model) {
    again_.setSingleShot(true);
    again_.callOnTimeout([this] { Count(); });
    connect(&model_, &QAbstractItemModel::rowsInserted, this, &OverviewCounter::NoteChange);
    connect(&model_, &QAbstractItemModel::rowsRemoved, this, &OverviewCounter::NoteChange);
    connect(&model_, &QAbstractItemModel::modelReset, this, &OverviewCounter::NoteChange);
    connect(&model_, &MessageListModel::CountsChanged, this, &OverviewCounter::NoteChange); // out of sight
    connect(&model_, &QAbstractItemModel::dataChanged, this,
            [this](const QModelIndex&, const QModelIndex&, const QList<int>& roles) {
                if (roles != QList<int>{MessageListModel::unreadRole}) {
                    NoteChange();
                }
            });
}

void OverviewCounter::SetActive(bool isActive) {
    if (isActive == isActive_) {
        return;
    }
    isActive_ = isActive;
    again_.stop();
    if (isActive_) {
        Count();
        return;
    }
    if (work_) {
        work_->GiveUp();
    }
    isCounting_ = false;
    hasChanged_ = false;
}

void OverviewCounter::NoteChange() {
    if (!isActive_) {
        return;
    }
    if (isCounting_) {
        hasChanged_ = true;
    } else if (model_.Count() == 0) {
        again_.start(gatherEmptyMs); // also where rows were gathering when the list was emptied
    } else if (!again_.isActive()) {
        again_.start(gatherMs);
    }
}

// The copy takes a tenth of the time of the count, and is freed beside this thread, too.
void OverviewCounter::Count() {
    isCounting_ = true;
    hasChanged_ = false;
    auto rows = std::make_shared<std::vector<MessageRow>>(CopyOfRows(model_));
    const auto count = [rows, listed = model_.TotalCount(), ratesByNumber = model_.RatesByNumber()](size_t) {
        const std::vector<MessageRow> mine = std::move(*rows);
        Overview overview = CountOverview(mine, ratesByNumber);
        overview.listed = listed;
        return overview;
    };
    work_.emplace(
        pool_, 1, count, [this](size_t, const Overview& overview) { Q_EMIT Counted(overview); },
        [this](SeriesEnd) { EndCount(); }, oneAtATime);
    work_->Start();
}

void OverviewCounter::EndCount() {
    isCounting_ = false;
    if (std::exchange(hasChanged_, false)) {
        NoteChange();
    }
}

} // namespace quellbox

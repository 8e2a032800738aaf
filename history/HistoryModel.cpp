#include "history/HistoryModel.h"

#include <algorithm>
#include <utility>

namespace quellbox {

namespace {

constexpr int linesOfPage = 200;
constexpr int mostPages = 50;

// While an action runs, the history changes all the time.
constexpr int againMs = 300;

} // namespace

HistoryModel::HistoryModel(Journal& journal)
    : journal_(journal), pages_(mostPages), question_(std::make_shared<std::atomic<int>>(0)) {
    again_.setSingleShot(true);
    again_.setInterval(againMs);
    again_.callOnTimeout([this] { Ask(); });
    connect(&journal_, &Journal::Changed, this, [this] {
        if (!again_.isActive()) {
            again_.start();
        }
    });
}

HistoryModel::~HistoryModel() {
    ++*question_;
}

void HistoryModel::SetFilter(const HistoryFilter& filter) {
    filter_ = filter;
    Ask();
}

void HistoryModel::Ask() {
    again_.stop();
    isAsking_ = true;
    const int mine = ++*question_;
    const auto find = [filter = filter_, question = question_, mine](JournalDatabase& database) {
        return *question == mine ? database.Find(filter) : HistoryIds();
    };
    const auto take = [this, mine](HistoryIds ids) {
        if (*question_ == mine) {
            TakeIds(std::move(ids));
        }
    };
    journal_.AskFor(Journal::Question::Reads, this, find, take);
}

// Where new lines have come above the others, what is selected stays so.
void HistoryModel::TakeIds(HistoryIds ids) {
    isAsking_ = false;
    const bool isGrown =
        !ids_.empty() && ids.size() >= ids_.size() && std::equal(ids_.rbegin(), ids_.rend(), ids.rbegin());
    const int added = static_cast<int>(ids.size()) - static_cast<int>(ids_.size());
    if (!isGrown) {
        beginResetModel();
        Replace(std::move(ids));
        endResetModel();
    } else if (added > 0) {
        beginInsertRows({}, 0, added - 1);
        Replace(std::move(ids));
        endInsertRows();
    } else {
        Replace(std::move(ids));
    }
    if (!ids_.empty()) {
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1)); // results may be other ones
    }
    Q_EMIT Found();
}

/// The lines that are there or on their way belong to other rows now.
void HistoryModel::Replace(HistoryIds ids) {
    ids_ = std::move(ids);
    ++pagesOf_;
    pages_.clear();
    awaited_.clear();
}

const HistoryLine* HistoryModel::Line(int row) const {
    if (row < 0 || row >= rowCount()) {
        return nullptr;
    }
    const int page = row / linesOfPage;
    const Page* lines = pages_.object(page);
    if (lines == nullptr) {
        AskForPage(page);
        return nullptr;
    }
    const auto wanted = static_cast<size_t>(row % linesOfPage);
    return wanted < lines->size() ? &(*lines)[wanted] : nullptr;
}

void HistoryModel::AskForPage(int page) const {
    if (awaited_.contains(page)) {
        return;
    }
    awaited_.insert(page);
    const auto first = ids_.begin() + static_cast<std::ptrdiff_t>(page) * linesOfPage;
    const HistoryIds wanted(first, first + std::min<std::ptrdiff_t>(linesOfPage, ids_.end() - first));
    const auto fetch = [wanted](JournalDatabase& database) { return database.Lines(wanted); };
    auto* self = const_cast<HistoryModel*>(this); // a view asks for what it shows by const functions only
    journal_.AskFor(Journal::Question::Reads, this, fetch, [self, page, pages = pagesOf_](const Page& lines) {
        if (pages == self->pagesOf_) {
            self->TakePage(page, lines);
        }
    });
}

void HistoryModel::TakePage(int page, const Page& lines) {
    awaited_.remove(page);
    pages_.insert(page, new Page(lines));
    const int first = page * linesOfPage;
    const int last = std::min(first + linesOfPage, rowCount()) - 1;
    Q_EMIT dataChanged(index(first, 0), index(last, columnCount() - 1));
    Q_EMIT Fetched(first, last);
}

int HistoryModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(ids_.size());
}

int HistoryModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : HistoryColumnCount;
}

QVariant HistoryModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || role != Qt::DisplayRole) {
        return {};
    }
    const HistoryLine* line = Line(index.row());
    return line == nullptr ? QVariant() : CellOf(*line, index.column());
}

QVariant HistoryModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    return HeaderOf(static_cast<HistoryColumn>(section));
}

} // namespace quellbox

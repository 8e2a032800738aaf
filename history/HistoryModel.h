#pragma once

#include "history/HistoryTexts.h"
#include "history/Journal.h"

#include <QAbstractTableModel>
#include <QCache>
#include <QSet>
#include <QTimer>

#include <atomic>
#include <memory>
#include <vector>

namespace quellbox {

/// The lines of the history that a filter lets through, the newest first. Only the numbers of the lines are there from
/// the beginning; the lines themselves are fetched when a view asks for them, and come a moment later.
class HistoryModel : public QAbstractTableModel {
    Q_OBJECT

public:
    /// The journal has to outlive this object.
    explicit HistoryModel(Journal& journal);
    ~HistoryModel() override;

    /// Asks for the lines that a filter lets through. Those that were asked for before are not awaited any more.
    void SetFilter(const HistoryFilter& filter);

    const HistoryFilter& Filter() const { return filter_; }

    /// Null when there is no such line, or when it has not come yet; then it is asked for.
    const HistoryLine* Line(int row) const;

    qint64 Id(int row) const { return ids_[static_cast<size_t>(row)]; }
    const HistoryIds& Ids() const { return ids_; }

    /// True until what a filter lets through is known.
    bool IsAsking() const { return isAsking_; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

Q_SIGNALS:
    /// The numbers of the lines have come.
    void Found();

    /// These lines have come.
    void Fetched(int first, int last);

private:
    using Page = std::vector<HistoryLine>;

    void Ask();
    void TakeIds(HistoryIds ids);
    void Replace(HistoryIds ids);
    void AskForPage(int page) const;
    void TakePage(int page, const Page& lines);

    Journal& journal_;
    HistoryFilter filter_;
    HistoryIds ids_;
    mutable QCache<int, Page> pages_;
    mutable QSet<int> awaited_;                  // pages
    std::shared_ptr<std::atomic<int>> question_; // the latest one; what others ask is not answered
    int pagesOf_ = 0;                            // counts how often the pages became invalid
    QTimer again_;
    bool isAsking_ = false;
};

} // namespace quellbox

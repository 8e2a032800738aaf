#include "messages/ListTable.h"
#include "messages/MessageListModel.h"
#include "messages/SelectionStatus.h"
#include "tests/messages/ListRows.h"

#include <gtest/gtest.h>

#include <QPersistentModelIndex>
#include <QRandomGenerator>
#include <QSet>
#include <memory>

namespace quellbox {
namespace {

using namespace Qt::StringLiterals;

class NarrowedList : public testing::Test {
protected:
    NarrowedList() { model.Append(RowsWith({u"apple 1"_s, u"Berry 2"_s, u"apple 3"_s, u"cherry 4"_s, u"APPLE 5"_s})); }

    std::string Shown() const { return KeysOf(model).join(u',').toStdString(); }

    MessageListModel model;
};

/// How often a signal of the model was sent.
template <class Signal>
std::shared_ptr<int> CountOf(const MessageListModel& model, Signal signal) {
    auto count = std::make_shared<int>(0);
    QObject::connect(&model, signal, &model, [count] { ++*count; });
    return count;
}

/// What a list is compared with that was narrowed while it changed: all rows, and a look at each of them.
class PlainList {
public:
    explicit PlainList(quint32 seed) : random_(seed) {}

    /// Does the same at random to the list and to the model.
    void ChangeBoth(MessageListModel& model) {
        switch (random_.bounded(6)) {
        case 0:
            return Append(model);
        case 1:
            return Remove(model);
        case 2:
            return Replace(model);
        case 3:
            return Sort(model);
        case 4:
            return RemoveKey(model);
        default:
            Type(QStringList{u""_s, u"a"_s, u"ab"_s, u"ab c"_s, u"B"_s, u"d a"_s}.at(random_.bounded(6)));
            model.Narrow(typed_);
        }
    }

    QStringList Expected() const {
        QStringList keys;
        for (const MessageRow& row : rows_) {
            keys += IsShown(row) ? QStringList{row.Key()} : QStringList{};
        }
        return keys;
    }

    int Count() const { return static_cast<int>(rows_.size()); }

private:
    void Type(const QString& text) {
        if (text != typed_) {
            late_.clear();
        }
        typed_ = text;
    }

    bool IsShown(const MessageRow& row) const {
        if (late_.contains(row.Key())) {
            return false;
        }
        const QStringList words = typed_.split(u' ', Qt::SkipEmptyParts);
        return std::all_of(words.begin(), words.end(), [&row](const QString& word) {
            return row.Cell(ColumnSubject).contains(word, Qt::CaseInsensitive);
        });
    }

    QString RandomSubject() {
        QString subject;
        for (int letter = 0; letter < 6; ++letter) {
            subject += QStringLiteral("abcdAB").at(random_.bounded(6));
        }
        return subject;
    }

    void Append(MessageListModel& model) {
        std::vector<MessageRow> rows;
        for (int count = random_.bounded(1, 40); count > 0; --count) {
            rows.push_back(RowWith(RandomSubject(), QString::number(++lastKey_)));
        }
        rows_.insert(rows_.end(), rows.begin(), rows.end());
        model.Append(std::move(rows));
    }

    void Remove(MessageListModel& model) {
        std::vector<int> gone;
        for (int row = 0; row < model.Count(); ++row) {
            if (random_.bounded(4) == 0) {
                gone.push_back(row);
                Forget(model.Row(row).Key());
            }
        }
        model.Remove(gone);
    }

    void RemoveKey(MessageListModel& model) {
        if (!rows_.empty()) {
            const QString key = rows_[random_.bounded(static_cast<quint32>(rows_.size()))].Key();
            Forget(key);
            model.RemoveKey(key);
        }
    }

    void Forget(const QString& key) {
        std::erase_if(rows_, [&key](const MessageRow& row) { return row.HasKey(key); });
    }

    // A row keeps matching here: one that does not any more stays in sight until other words are typed, and one that
    // begins to stays out of it.
    void Replace(MessageListModel& model) {
        if (!rows_.empty()) {
            MessageRow& row = rows_[random_.bounded(static_cast<quint32>(rows_.size()))];
            if (!IsShown(row)) {
                late_.insert(row.Key());
            }
            row = RowWith(row.Cell(ColumnSubject) + u"abcd"_s, row.Key());
            model.Replace(row);
        }
    }

    void Sort(MessageListModel& model) {
        std::stable_sort(rows_.begin(), rows_.end(), [](const MessageRow& left, const MessageRow& right) {
            return left.Cell(ColumnSubject).compare(right.Cell(ColumnSubject), Qt::CaseInsensitive) < 0;
        });
        model.sort(ColumnSubject, Qt::AscendingOrder);
    }

    QRandomGenerator random_;
    std::vector<MessageRow> rows_;
    QString typed_;
    QSet<QString> late_; // out of sight, whatever is in them
    int lastKey_ = 0;
};

} // namespace

TEST_F(NarrowedList, ShowsOnlyTheRowsWithTheWords) {
    EXPECT_TRUE(model.Narrow(u"apple"_s));
    EXPECT_EQ(Shown(), "apple 1,apple 3,APPLE 5");
    EXPECT_EQ(model.rowCount(), 3);
    EXPECT_EQ(model.TotalCount(), 5);
    EXPECT_TRUE(model.IsNarrowed());
    EXPECT_EQ(model.data(model.index(1, ColumnSubject), Qt::DisplayRole).toString(), u"apple 3"_s);
    EXPECT_TRUE(model.Narrow(u"apple 5"_s));
    EXPECT_EQ(Shown(), "APPLE 5");
    EXPECT_TRUE(model.Narrow(u"rry"_s)) << "not within what was sought before";
    EXPECT_EQ(Shown(), "Berry 2,cherry 4");
    EXPECT_TRUE(model.Narrow(u" "_s));
    EXPECT_FALSE(model.IsNarrowed());
    EXPECT_EQ(model.Count(), 5);
}

TEST_F(NarrowedList, IsNotResetWhenTheSameRowsStay) {
    const auto resets = CountOf(model, &QAbstractItemModel::modelReset);
    EXPECT_FALSE(model.Narrow(u"1970"_s)) << "the date of all rows";
    EXPECT_FALSE(model.Narrow({}));
    EXPECT_EQ(*resets, 0);
    model.Narrow(u"app"_s);
    EXPECT_FALSE(model.Narrow(u"apple"_s));
    EXPECT_EQ(*resets, 1);
}

TEST_F(NarrowedList, FindsRowsByKeyInSightAndAllOfThemForTheArchive) {
    model.Narrow(u"apple"_s);
    EXPECT_TRUE(FindsEveryRow(model));
    EXPECT_EQ(model.RowOfKey(u"Berry 2"_s), -1);
    ASSERT_NE(model.Find(u"Berry 2"_s), nullptr);
    EXPECT_EQ(model.Find(u"Berry 2"_s)->Key(), u"Berry 2"_s);
    EXPECT_EQ(model.Find(u"none"_s), nullptr);
}

TEST_F(NarrowedList, NewRowsComeIntoSightWhenTheyMatch) {
    model.Narrow(u"apple"_s);
    const auto inserted = CountOf(model, &QAbstractItemModel::rowsInserted);
    QObject::connect(&model, &QAbstractItemModel::rowsInserted, &model, [](const QModelIndex&, int first, int last) {
        EXPECT_EQ(first, 3);
        EXPECT_EQ(last, 3);
    });
    const auto counts = CountOf(model, &MessageListModel::CountsChanged);
    model.Append(RowsWith({u"plum 6"_s}));
    EXPECT_EQ(*inserted, 0);
    EXPECT_EQ(*counts, 1) << "there is one row more, if not in sight";
    model.Append(RowsWith({u"plum 7"_s, u"apple 8"_s, u"plum 9"_s}));
    EXPECT_EQ(*inserted, 1);
    EXPECT_EQ(Shown(), "apple 1,apple 3,APPLE 5,apple 8");
    EXPECT_EQ(model.TotalCount(), 9);
}

TEST_F(NarrowedList, RemovesOnlyRowsInSight) {
    model.Narrow(u"apple"_s);
    model.Remove({0, 1, 2});
    EXPECT_EQ(model.Count(), 0);
    model.Narrow({});
    EXPECT_EQ(Shown(), "Berry 2,cherry 4");
}

TEST_F(NarrowedList, RemovesARowOutOfSightByItsKey) {
    model.Narrow(u"apple"_s);
    const auto removed = CountOf(model, &QAbstractItemModel::rowsRemoved);
    model.RemoveKey(u"Berry 2"_s);
    EXPECT_EQ(*removed, 0);
    model.RemoveKey(u"apple 3"_s);
    EXPECT_EQ(*removed, 1);
    model.RemoveKey(u"none"_s);
    EXPECT_EQ(Shown(), "apple 1,APPLE 5");
    model.Narrow({});
    EXPECT_EQ(Shown(), "apple 1,cherry 4,APPLE 5");
}

TEST_F(NarrowedList, SortingKeepsItAndMovesSelectedRows) {
    model.Narrow(u"apple"_s);
    const QPersistentModelIndex last(model.index(2, 0));
    model.sort(ColumnSubject, Qt::DescendingOrder);
    EXPECT_EQ(Shown(), "APPLE 5,apple 3,apple 1");
    EXPECT_EQ(last.row(), 0);
    EXPECT_TRUE(model.Narrow(u"apple 3"_s));
    EXPECT_EQ(Shown(), "apple 3");
    model.Narrow({});
    EXPECT_EQ(Shown(), "cherry 4,Berry 2,APPLE 5,apple 3,apple 1");
}

TEST_F(NarrowedList, AChangedRowStaysInSightUntilOtherWordsAreSought) {
    model.Narrow(u"apple"_s);
    model.Update(1, RowWith(u"plum"_s, u"apple 3"_s));
    EXPECT_EQ(Shown(), "apple 1,apple 3,APPLE 5");
    EXPECT_EQ(model.Row(1).Cell(ColumnSubject), u"plum"_s);
    model.Narrow(u"apple 1970"_s);
    EXPECT_EQ(Shown(), "apple 1,APPLE 5");
}

TEST_F(NarrowedList, AChangedRowThatMatchesComesIntoSightWithOtherWords) {
    model.Narrow(u"apple"_s);
    model.Replace(RowWith(u"an apple now"_s, u"Berry 2"_s));
    model.Replace(RowWith(u"still none"_s, u"cherry 4"_s));
    model.Replace(RowWith(u"apple"_s, u"unknown"_s));
    EXPECT_EQ(Shown(), "apple 1,apple 3,APPLE 5") << "nothing moves under the mouse pointer";
    model.Narrow(u"apple n"_s);
    EXPECT_EQ(Shown(), "Berry 2") << "narrower words look beyond what was in sight";
    model.Narrow(u"apple"_s);
    EXPECT_EQ(Shown(), "apple 1,Berry 2,apple 3,APPLE 5");
    EXPECT_EQ(model.Find(u"cherry 4"_s)->Cell(ColumnSubject), u"still none"_s);
    EXPECT_EQ(model.TotalCount(), 5);
}

TEST_F(NarrowedList, MarksRowsInSightAndAnyOneByItsKey) {
    model.Narrow(u"apple"_s);
    model.MarkRows(0, model.Count() - 1, true);
    model.MarkKey(u"cherry 4"_s, true);
    model.MarkKey(u"apple 3"_s, false);
    model.MarkKey(u"none"_s, true);
    model.Narrow({});
    std::string unread;
    for (int row = 0; row < model.Count(); ++row) {
        unread += model.Row(row).IsUnread() ? 'u' : '.';
    }
    EXPECT_EQ(unread, "u..uu");
}

TEST_F(NarrowedList, StaysNarrowedWhenTheListIsMadeAnew) {
    model.Narrow(u"apple"_s);
    model.Clear();
    EXPECT_EQ(model.TotalCount(), 0);
    EXPECT_EQ(model.Count(), 0);
    model.Append(RowsWith({u"plum"_s, u"apple"_s}));
    EXPECT_EQ(Shown(), "apple");
}

TEST_F(NarrowedList, PlacesStayWhatNarrowingChanges) {
    model.Narrow(u"rry"_s);
    EXPECT_EQ(model.PlaceOf(0), 1);
    EXPECT_EQ(model.PlaceOf(1), 3);
    EXPECT_EQ(model.RowAtPlace(3), 1);
    EXPECT_EQ(model.RowAtPlace(2), -1);
    EXPECT_EQ(model.RowAtPlace(4), -1);
    model.Narrow({});
    EXPECT_EQ(model.PlaceOf(3), 3);
    EXPECT_EQ(model.RowAtPlace(3), 3);
}

TEST_F(NarrowedList, CanBeMadeReadyInParts) {
    EXPECT_TRUE(model.PrepareToNarrow(2));
    model.sort(ColumnSubject, Qt::DescendingOrder); // what was ready is not where it was
    EXPECT_TRUE(model.PrepareToNarrow(4));
    model.RemoveKey(u"Berry 2"_s);
    EXPECT_FALSE(model.PrepareToNarrow(4));
    model.Narrow(u"apple"_s);
    EXPECT_EQ(Shown(), "APPLE 5,apple 3,apple 1");
    model.Narrow({});
    model.ForgetNarrowing();
    EXPECT_TRUE(model.PrepareToNarrow(1)) << "nothing is ready any more";
}

TEST_F(NarrowedList, CountsTheWholeListAndExportsWhatIsShown) {
    model.Narrow(u"rry"_s);
    const SelectionStatus status = ComputeSelectionStatus(model, {{0, 1}}, AppState(), false);
    EXPECT_EQ(status.SelectedCount, 2);
    EXPECT_EQ(status.count, u"5 messages"_s);
    EXPECT_EQ(CopyOfRows(model).size(), 2U);
    model.Narrow(u"nothing"_s);
    EXPECT_TRUE(ComputeSelectionStatus(model, {}, AppState(), false).hasRows);
}

TEST(NarrowedListAtRandom, IsWhatALookAtEachRowGives) {
    for (quint32 seed = 1; seed <= 12; ++seed) {
        MessageListModel model;
        PlainList plain(seed);
        for (int step = 0; step < 60; ++step) {
            plain.ChangeBoth(model);
            ASSERT_EQ(KeysOf(model), plain.Expected()) << "seed " << seed << ", step " << step;
            ASSERT_EQ(model.TotalCount(), plain.Count());
            ASSERT_TRUE(FindsEveryRow(model));
        }
    }
}

} // namespace quellbox

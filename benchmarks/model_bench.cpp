// How the work on the list grows with its length: 2.0 for twice the rows is linear.
#include "app/MessageListView.h"
#include "benchmarks/Bench.h"

#include <QApplication>
#include <QRandomGenerator>

#include <array>
#include <cstdio>
#include <functional>
#include <numeric>
#include <string>

using namespace quellbox;
using namespace quellbox::bench;

namespace {

constexpr std::array counts{4000, 8000, 16000, 32000};

/// Rows with texts as they are in use, many of them equal, in no order.
std::vector<MessageRow> MakeRows(int count) {
    QRandomGenerator random(1);
    constexpr qint64 september2004 = 1'094'000'000; // seconds since 1970
    constexpr int threeWeeks = 21 * 86400;
    std::vector<MessageRow> rows;
    for (int number = 0; number < count; ++number) {
        const qint64 time = september2004 + random.bounded(threeWeeks);
        MessageTexts texts;
        texts.to = QStringLiteral("reader%1@example.org").arg(random.bounded(50));
        texts.from = QStringLiteral("\"Sender %1\" <s@example.com>").arg(random.bounded(2000));
        texts.subject = QStringLiteral("Subject %1").arg(random.generate());
        texts.scl = QStringLiteral("%1 %2").arg(random.bounded(10)).arg(random.bounded(100));
        rows.emplace_back(QStringLiteral("%1.EML").arg(number, 6, 10, QLatin1Char('0')), random.bounded(500, 90000),
                          time, texts);
    }
    return rows;
}

/// A list in a shown view, as the window has it.
struct List {
    explicit List(int count) : view(model) {
        view.resize(900, 400);
        view.show();
        model.Append(MakeRows(count));
        QCoreApplication::processEvents();
    }

    void RequireSorted(int column) const {
        for (int row = 1; row < model.Count(); ++row) {
            const int compared =
                QString::compare(model.Row(row - 1).Cell(column), model.Row(row).Cell(column), Qt::CaseInsensitive);
            Require(compared < 0 || (compared == 0 && model.Row(row - 1).Key() < model.Row(row).Key()),
                    "the list is not sorted stably");
        }
    }

    MessageListModel model;
    MessageListView view{model};
};

struct Work {
    std::string name;
    std::function<void(List&)> prepare;
    std::function<void(List&)> measured;
    std::function<void(const List&, int count)> check;
};

std::vector<int> Rows(int count, int step) {
    std::vector<int> rows;
    for (int row = 0; row < count; row += step) {
        rows.push_back(row);
    }
    return rows;
}

Work SortBy(int column, const char* name) {
    return {std::string("sort by ") + name, [](List&) {},
            [column](List& list) { list.model.sort(column, Qt::AscendingOrder); },
            [column](const List& list, int) { list.RequireSorted(column); }};
}

std::vector<Work> AllWork() {
    const auto selectAll = [](List& list) { list.view.selectAll(); };
    const auto nothing = [](List&) {};
    std::vector<Work> work{SortBy(ColumnDate, "date"),   SortBy(ColumnTo, "recipient"),
                           SortBy(ColumnFrom, "sender"), SortBy(ColumnSubject, "subject"),
                           SortBy(ColumnBytes, "size"),  SortBy(ColumnScl, "confidence")};
    work.push_back({"select all", nothing, selectAll, [](const List& list, int count) {
                        const std::vector<RowRange> ranges = list.view.SelectedRanges();
                        Require(ranges.size() == 1 && ranges[0].last == count - 1, "not all rows are selected");
                    }});
    work.push_back({"count the selection", selectAll,
                    [](List& list) {
                        const AppState state;
                        const SelectionStatus status =
                            ComputeSelectionStatus(list.model, list.view.SelectedRanges(), state, false);
                        Require(status.SelectedCount == list.model.Count(), "another number is selected");
                    },
                    [](const List&, int) {}});
    work.push_back({"sort with all selected", selectAll,
                    [](List& list) { list.model.sort(ColumnSubject, Qt::AscendingOrder); },
                    [](const List& list, int count) {
                        list.RequireSorted(ColumnSubject);
                        const std::vector<RowRange> ranges = list.view.SelectedRanges();
                        Require(ranges.size() == 1 && ranges[0].last == count - 1, "the selection is lost");
                    }});
    work.push_back({"remove all", selectAll, [](List& list) { list.model.Remove(Rows(list.model.Count(), 1)); },
                    [](const List& list, int) { Require(list.model.Count() == 0, "rows remain"); }});
    work.push_back({"remove every second row", nothing,
                    [](List& list) { list.model.Remove(Rows(list.model.Count(), 2)); },
                    [](const List& list, int count) {
                        Require(list.model.Count() == count / 2, "another number of rows remains");
                        Require(list.model.RowOfKey(QStringLiteral("000001.EML")) == 0, "the wrong rows remain");
                    }});
    return work;
}

double Measure(const Work& work, int count) {
    Best best;
    for (int round = 0; round < 3; ++round) {
        List list(count);
        work.prepare(list);
        best.Add(Time([&] {
            work.measured(list);
            QCoreApplication::processEvents();
        }));
        work.check(list, count);
    }
    return best.seconds;
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    for (const Work& work : AllWork()) {
        double smallest = 0;
        double seconds = 0;
        std::printf("%-28s", work.name.c_str());
        for (const int count : counts) {
            const double before = seconds;
            seconds = Measure(work, count);
            smallest = smallest > 0 ? smallest : seconds;
            before > 0 ? std::printf("  x%.2f  %7.2f ms", seconds / before, seconds * 1e3)
                       : std::printf("  %7.2f ms", seconds * 1e3);
        }
        const double perRow = seconds / counts.back() / (smallest / counts.front());
        std::printf("\n");
        Report(("list, " + work.name + ": a row of 32,000 / of 4,000").c_str(), perRow, "times", "near 1");
    }
    return 0;
}

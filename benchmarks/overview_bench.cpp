// How long 32,000 rows take to be counted for the overview, and how long the interface thread is held when the list
// changes while the overview is shown, and when a group is selected from it. Once with as many different senders,
// recipients and subjects as an archive has, and once with hardly two that are the same.
#include "app/MessageListView.h"
#include "app/frmOverview.h"
#include "benchmarks/Bench.h"
#include "messages/ListTable.h"
#include "messages/OverviewCounter.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QRandomGenerator>

#include <cstdio>
#include <string>

using namespace quellbox;
using namespace quellbox::bench;

namespace {

constexpr int count = 32'000;
constexpr int rounds = 7;

/// Rows with texts as they are in use: so many different senders, recipients and kinds of subjects.
std::vector<MessageRow> MakeRows(int different) {
    QRandomGenerator random(1);
    constexpr qint64 june2026 = 1'780'000'000; // seconds since 1970
    std::vector<MessageRow> rows;
    rows.reserve(count);
    for (int number = 0; number < count; ++number) {
        const int reader = random.bounded(different);
        MessageTexts texts;
        texts.to = QStringLiteral("\"Reader Number%1\" <reader%1@example.org>").arg(reader);
        texts.from = QStringLiteral("\"Sender %1\" <s@example.com>").arg(random.bounded(different));
        texts.subject = QStringLiteral("Re: Reader, your order %1 of kind%2x is waiting for you")
                            .arg(random.generate())
                            .arg(QString::number(random.bounded(different), 26).replace(QChar(u'0'), QChar(u'z')));
        texts.scl = QStringLiteral("%1 %2.00").arg(random.bounded(10)).arg(random.bounded(100));
        texts.tag = QStringLiteral("s@host%1.example.com").arg(random.bounded(different));
        rows.emplace_back(QStringLiteral("%1.EML").arg(number, 6, 10, QLatin1Char('0')), random.bounded(500, 90000),
                          june2026 + random.bounded(21 * 86400), texts);
    }
    return rows;
}

void Print(const std::string& what, const Best& best, const char* wanted) {
    Report(("overview, " + what).c_str(), best.seconds * 1e3, "ms", wanted);
}

void MeasureCount(const std::vector<MessageRow>& rows, const std::string& name) {
    Best best;
    for (int round = 0; round < rounds; ++round) {
        Overview overview;
        best.Add(Time([&] { overview = CountOverview(rows, false); }));
        Require(overview.count == count, "not all rows are counted");
        Require(overview.Of(OverviewKind::Levels).bars.size() == 10, "another number of levels is counted");
    }
    Print("32,000 rows counted, " + name, best, "< 50");
}

/// From the change to the picture, and what of it the interface thread is held.
void MeasureWindow(const std::vector<MessageRow>& rows, const std::string& name) {
    MessageListModel model;
    model.Append(rows);
    MessageListView view(model);
    view.resize(900, 400);
    view.show();
    frmOverview window(nullptr);
    window.resize(1000, 720);
    window.show();
    ThreadWorkPool pool;
    OverviewCounter counter(pool, model);
    Best shown;
    QObject::connect(&counter, &OverviewCounter::Counted, [&](const Overview& overview) {
        shown.Add(Time([&] {
            window.ShowOverview(overview);
            window.repaint();
        }));
    });
    Best begun;
    Best whole;
    for (int round = 0; round < rounds; ++round) {
        QElapsedTimer timer;
        timer.start();
        begun.Add(Time([&] { counter.SetActive(true); }));
        while (counter.IsCounting()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
        }
        whole.Add(static_cast<double>(timer.nsecsElapsed()) * 1e-9);
        counter.SetActive(false);
        window.ShowOverview({});
    }
    Print("interface thread held to begin a count, " + name, begun, "< 16");
    Print("interface thread held to show one, " + name, shown, "< 16");
    Print("from the change to the pictures, " + name, whole, "");
}

void MeasureSelection(const std::vector<MessageRow>& rows, const std::string& name) {
    const Overview overview = CountOverview(rows, false);
    for (const OverviewKind kind : overviewKinds) {
        const OverviewBar& bar = overview.Of(kind).bars.front();
        Best best;
        for (int round = 0; round < rounds; ++round) {
            qint64 found = 0;
            best.Add(Time([&] {
                GroupMatcher matcher(bar.group, false);
                for (const MessageRow& row : rows) {
                    found += matcher.Holds(row) ? 1 : 0;
                }
            }));
            Require(found == bar.Count(), "another number of rows belongs to the group");
        }
        Print("rows of a bar of \"" + TitleOf(kind).toStdString() + "\" found, " + name, best, "< 16");
    }
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    for (const int different : {1'000, 20'000}) {
        const std::string name = std::to_string(different) + " different";
        const std::vector<MessageRow> rows = MakeRows(different);
        MeasureCount(rows, name);
        MeasureWindow(rows, name);
        MeasureSelection(rows, name);
    }
    return 0;
}

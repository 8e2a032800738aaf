// What it costs to have many calls made beside a thread and their results handed over in order, against what Qt offers.
#include "benchmarks/Bench.h"
#include "benchmarks/TurnWatch.h"
#include "platform/OrderedWork.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFutureWatcher>
#include <QThread>
#include <QThreadPool>
#include <QtConcurrentMap>

#include <cstdio>
#include <numeric>
#include <string>
#include <thread>
#include <vector>

using namespace quellbox;
using namespace quellbox::bench;

namespace {

constexpr int rounds = 3;

struct Figures {
    Best time;
    Best gap;
};

/// What a call does: it waits for an answer, or computes for about a microsecond.
size_t Answer(size_t item, std::chrono::milliseconds wait) {
    if (wait.count() > 0) {
        std::this_thread::sleep_for(wait);
        return item;
    }
    size_t sum = item;
    for (size_t step = 0; step < 500; ++step) {
        sum = sum * 31 + step;
    }
    return sum == 0 ? item + 1 : item;
}

void RequireOrder(const std::vector<size_t>& taken, size_t count) {
    std::vector<size_t> expected(count);
    std::iota(expected.begin(), expected.end(), size_t{0});
    Require(taken == expected, "the results did not come in order");
}

void RunOrdered(size_t count, std::chrono::milliseconds wait, Figures& figures) {
    ThreadWorkPool pool;
    std::vector<size_t> taken;
    const TurnWatch watch;
    figures.time.Add(Time([&] {
        QEventLoop loop;
        OrderedWork<size_t> work(
            pool, count, [wait](size_t item) { return Answer(item, wait); },
            [&taken](size_t, size_t result) { taken.push_back(result); }, [&loop](SeriesEnd) { loop.quit(); });
        work.Start();
        loop.exec();
    }));
    figures.gap.Add(watch.LongestMs() / 1e3);
    RequireOrder(taken, count);
}

/// Qt's own way: it announces each result when it is there, and whoever wants an order waits for the next one.
void RunMapped(size_t count, std::chrono::milliseconds wait, int threads, Figures& figures) {
    QThreadPool pool;
    pool.setMaxThreadCount(threads);
    std::vector<size_t> items(count);
    std::iota(items.begin(), items.end(), size_t{0});
    std::vector<size_t> taken;
    const TurnWatch watch;
    figures.time.Add(Time([&] {
        QEventLoop loop;
        QFutureWatcher<size_t> watcher;
        const auto takeWhatIsThere = [&] {
            const QFuture<size_t> future = watcher.future();
            while (taken.size() < count && future.isResultReadyAt(static_cast<int>(taken.size()))) {
                taken.push_back(future.resultAt(static_cast<int>(taken.size())));
            }
        };
        QObject::connect(&watcher, &QFutureWatcher<size_t>::resultReadyAt, &loop, takeWhatIsThere);
        QObject::connect(&watcher, &QFutureWatcher<size_t>::finished, &loop, [&] {
            takeWhatIsThere();
            loop.quit();
        });
        watcher.setFuture(QtConcurrent::mapped(&pool, items, [wait](size_t item) { return Answer(item, wait); }));
        loop.exec();
    }));
    figures.gap.Add(watch.LongestMs() / 1e3);
    RequireOrder(taken, count);
}

void Compare(const char* name, size_t count, std::chrono::milliseconds wait) {
    const int cores = std::max(2, QThread::idealThreadCount());
    Figures ordered;
    Figures few;
    Figures many;
    for (int round = 0; round < rounds; ++round) {
        RunOrdered(count, wait, ordered);
        RunMapped(count, wait, cores, few);
        RunMapped(count, wait, 64, many);
    }
    const auto report = [name](const std::string& what, double value, const char* unit, const char* wanted = "") {
        Report((std::string(name) + ": " + what).c_str(), value, unit, wanted);
    };
    report("OrderedWork", ordered.time.seconds * 1e3, "ms");
    report("mapped with a thread for each core / OrderedWork", few.time.seconds / ordered.time.seconds, "times");
    report("mapped with 64 threads / OrderedWork", many.time.seconds / ordered.time.seconds, "times");
    report("OrderedWork, longest gap between turns", ordered.gap.seconds * 1e3, "ms", "< 50");
    report("mapped with 64 threads, longest gap between turns", many.gap.seconds * 1e3, "ms");
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    Compare("32,000 calls of a microsecond", 32'000, std::chrono::milliseconds(0));
    Compare("2,000 calls that wait 1 ms", 2'000, std::chrono::milliseconds(1));
    Compare("500 calls that wait 20 ms", 500, std::chrono::milliseconds(20));
    return 0;
}

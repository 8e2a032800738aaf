#ifdef __linux__

#include "tests/faults/FaultPlan.h"

#include <QByteArrayList>

#include <algorithm>
#include <set>

namespace quellbox {

namespace {

using Calls = std::map<QByteArray, int>;
using Trials = std::vector<QByteArray>;

const std::vector<QByteArray> errors{"EIO", "ENOSPC", "EACCES", "EBUSY", "ETIMEDOUT", "ENOTCONN", "ESTALE"};

/// The calls that change something, and with what a client that repeats them by itself finds them done.
const std::map<QByteArray, QByteArray> changes{{"create", "EEXIST"}, {"link", "EEXIST"},  {"rename", "ENOENT"},
                                               {"mkdir", "EEXIST"},  {"rmdir", "ENOENT"}, {"unlink", "ENOENT"},
                                               {"write", ""},        {"setattr", ""},     {"flush", ""},
                                               {"fsync", ""},        {"release", ""}};

int CountOf(const Calls& calls, const QByteArray& kinds) {
    int count = 0;
    for (const QByteArray& kind : kinds.split(',')) {
        const auto found = calls.find(kind);
        count += found == calls.end() ? 0 : found->second;
    }
    return count;
}

int CountOfAll(const Calls& calls) {
    int count = 0;
    for (const auto& [kind, number] : calls) {
        count += number;
    }
    return count;
}

/// Which of `count` calls are taken: all of them, or `most` that are spread evenly, the first and the last among them.
std::vector<QByteArray> Sample(int count, int most) {
    std::set<int> taken;
    for (int step = 0; step < std::min(count, most); ++step) {
        taken.insert(count <= most ? step + 1 : 1 + step * (count - 1) / std::max(1, most - 1));
    }
    std::vector<QByteArray> numbers;
    for (const int number : taken) {
        numbers.push_back(QByteArray::number(number));
    }
    return numbers;
}

/// A single call, and every call of a kind that changes something, fails with one error after the other.
Trials PlanErrors(const Calls& calls) {
    Trials trials;
    size_t next = 0;
    for (const auto& [kind, count] : calls) {
        for (const QByteArray& number : Sample(count, 5)) {
            trials.push_back("fail " + kind + " * call=" + number + " error=" + errors[next++ % errors.size()] + '\n');
        }
    }
    for (const auto& [kind, again] : changes) {
        for (const QByteArray& error : CountOf(calls, kind) > 0 ? errors : Trials()) {
            trials.push_back("fail " + kind + " * call=2 error=" + error + '\n');
            trials.push_back("fail " + kind + " * error=" + error + '\n');
        }
    }
    for (const QByteArray& number : Sample(CountOf(calls, "write"), 4)) {
        trials.push_back("cut write * call=" + number + '\n');
        trials.push_back("cut write * error=ENOTCONN call=" + number + '\n');
    }
    return trials;
}

/// The answer to a call that changes something is lost; or it is lost, and from then on nobody answers.
Trials PlanLostAnswers(const Calls& calls) {
    Trials trials;
    for (const auto& [kind, again] : changes) {
        for (const QByteArray& number : Sample(CountOf(calls, kind), 3)) {
            for (const QByteArray& error :
                 {QByteArray("EIO"), QByteArray("ETIMEDOUT"), QByteArray("ENOTCONN"), again}) {
                const QByteArray rule = "lose " + kind + " * call=" + number + " error=" + error + '\n';
                if (!error.isEmpty()) {
                    trials.push_back(rule);
                }
                if (error == "ETIMEDOUT") {
                    trials.push_back(rule + "fail * * error=ETIMEDOUT then\n");
                }
            }
        }
        if (!again.isEmpty() && CountOf(calls, kind) > 0) {
            trials.push_back("lose " + kind + " * error=EIO\n");
            trials.push_back("lose " + kind + " * error=" + again + '\n');
        }
    }
    return trials;
}

Trials PlanForEach(const QByteArray& before, const std::vector<QByteArray>& numbers, const QByteArray& after = "\n") {
    Trials trials;
    for (const QByteArray& number : numbers) {
        trials.push_back(before + number + after);
    }
    return trials;
}

Trials PlanDeaths(const Calls& calls) {
    const int all = CountOfAll(calls);
    Trials trials = PlanForEach("die * * call=", Sample(all, 6));
    for (const auto& [kind, again] : changes) {
        const Trials more = PlanForEach("die-after " + kind + " * call=", Sample(CountOf(calls, kind), 2));
        trials.insert(trials.end(), more.begin(), more.end());
    }
    return trials;
}

/// From some call on there is no room, or after some bytes.
Trials PlanFullDisk(const Calls& calls) {
    const QByteArray kinds = "create,write,link,rename,mkdir,fsync";
    Trials trials = PlanForEach("fail " + kinds + " * error=ENOSPC from=", Sample(CountOf(calls, kinds), 8));
    if (CountOf(calls, "write") > 0) {
        const Trials bytes = PlanForEach("fill write,create * bytes=", {"0", "1000", "20000", "100000", "320000"});
        trials.insert(trials.end(), bytes.begin(), bytes.end());
        trials.push_back("fail flush,fsync * error=ENOSPC\n");
    }
    return trials;
}

/// From some call on nothing may be changed, or nothing at all may be done; or one thing never may.
Trials PlanRights(const Calls& calls) {
    const QByteArray kinds = "unlink,rename,create,link,setattr,mkdir";
    Trials trials = PlanForEach("fail " + kinds + " * error=EACCES from=", Sample(CountOf(calls, kinds), 6));
    for (const Trials& more :
         {PlanForEach("fail * * error=EACCES from=", Sample(CountOfAll(calls), 8)),
          PlanForEach("fail ", {"unlink", "create", "rename", "link", "setattr", "open", "opendir", "mkdir", "rmdir"},
                      " * error=EACCES\n"),
          PlanForEach("fail ", {"unlink", "create", "rename"}, " * error=EROFS\n")}) {
        trials.insert(trials.end(), more.begin(), more.end());
    }
    return trials;
}

} // namespace

std::vector<FaultKind> PlanFaults(const std::map<QByteArray, int>& calls) {
    const int all = CountOfAll(calls);
    return {{"error", PlanErrors(calls)},
            {"lost answer", PlanLostAnswers(calls)},
            {"hang", PlanForEach("hang * * ms=300 call=", Sample(all, 3))},
            {"killed", PlanDeaths(calls)},
            {"unmounted", PlanForEach("unmount * * call=", Sample(all, 8))},
            {"disk full", PlanFullDisk(calls)},
            {"rights", PlanRights(calls)}};
}

} // namespace quellbox

#endif

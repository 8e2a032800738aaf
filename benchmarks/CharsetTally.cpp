#include "benchmarks/CharsetTally.h"

#include <cstdio>

namespace {

double Percent(int part, int all) {
    return all == 0 ? 0 : 100.0 * part / all;
}

} // namespace

void CharsetTally::Print(const char* title) const {
    std::printf("\n%s\n%-16s %-12s %6s %8s %8s %9s\n", title, "character set", "texts", "count", "before", "guessed",
                "declared");
    CharsetShare sum;
    for (const auto& [key, share] : rows_) {
        if (share.all == 0)
            continue;
        std::printf("%-16s %-12s %6d %7.1f%% %7.1f%%", key.first.constData(), key.second.constData(), share.all,
                    Percent(share.before, share.all), Percent(share.guessed, share.all));
        if (share.declared > 0 || share.apart < share.all)
            std::printf(" %8.1f%%", Percent(share.declared, share.all));
        std::printf("\n");
        sum.all += share.all;
        sum.before += share.before;
        sum.guessed += share.guessed;
    }
    std::printf("%-16s %-12s %6d %7.1f%% %7.1f%%\n", "all", "", sum.all, Percent(sum.before, sum.all),
                Percent(sum.guessed, sum.all));
}

bool CharsetTally::KeepsWestern(int tolerated) const {
    CharsetShare sum;
    for (const auto& [key, share] : rows_) {
        if (key.first != "windows-1252" && key.first != "iso-8859-1")
            continue;
        sum.all += share.all;
        sum.before += share.before;
        sum.guessed += share.guessed;
    }
    return (sum.before - sum.guessed) * tolerated <= sum.all;
}

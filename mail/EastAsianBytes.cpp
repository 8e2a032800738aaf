#include "mail/EastAsianBytes.h"

namespace quellbox {

namespace {

/// What is counted over the pairs, which begin with a byte beyond ASCII.
struct PairCounts {
    int all = 0;
    int secondHigh = 0;   ///< the second byte is in the area that all these character sets use
    int frequentGb = 0;   ///< an ideograph of the first level of GB 2312
    int signGb = 0;       ///< a sign there
    int frequentBig5 = 0; ///< an ideograph of the first level of Big5, or a sign
    bool isBroken = false;
};

PairCounts CountPairs(QByteArrayView bytes) {
    PairCounts counts;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const auto first = static_cast<unsigned char>(bytes[i]);
        if (first < 0x80)
            continue;
        const int second = ++i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0;
        ++counts.all;
        counts.isBroken |= second < 0x40 || (second > 0x7E && second < 0xA1);
        counts.secondHigh += second >= 0xA1 ? 1 : 0;
        counts.frequentGb += first >= 0xB0 && first <= 0xD7 ? 1 : 0;
        counts.signGb += first >= 0xA1 && first <= 0xA3 ? 1 : 0;
        counts.frequentBig5 += first >= 0xA1 && first <= 0xC6 ? 1 : 0;
    }
    return counts;
}

} // namespace

QByteArray GuessEastAsian(QByteArrayView bytes) {
    const PairCounts counts = CountPairs(bytes);
    if (counts.isBroken || counts.all < 2)
        return {};
    // Of twenty pairs one may be rare.
    if (counts.secondHigh == counts.all)
        return counts.frequentGb >= 2 && (counts.frequentGb + counts.signGb) * 20 >= counts.all * 19 ? "gb18030" : "";
    return counts.secondHigh * 3 >= counts.all && counts.frequentBig5 * 20 >= counts.all * 19 ? "big5" : "";
}

} // namespace quellbox

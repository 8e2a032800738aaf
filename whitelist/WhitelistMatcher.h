#pragma once

#include <QString>
#include <QStringList>

#include <array>
#include <span>
#include <vector>

namespace quellbox {

/// Answers whether a sender is tolerated by one snapshot of the whitelist: any entry occurs anywhere in the sender,
/// case counts, and nothing is anchored (on purpose: @example.com also tolerates @example.com.au). An empty entry
/// tolerates everybody, an empty snapshot nobody.
///
/// The entries form an automaton that reads a sender once, so that the time for a sender depends on its length and not
/// on the number of entries. It never changes after it is built and may be asked from several threads.
class WhitelistMatcher {
public:
    explicit WhitelistMatcher(QStringList snapshot);

    bool TolerableSender(const QString& lowerCasedSender) const;

private:
    /// A text that some entry begins with. The nodes that continue it by one character lie side by side, and those of
    /// the first of them follow: the end of an entry, which no other shares, is one run of memory.
    struct Node {
        quint32 firstChild = 0;
        quint32 fallback = 0; ///< node of the longest proper suffix that is a beginning of an entry too
        quint32 childCount = 0;
        char16_t character = 0; ///< the last one of the text
        bool isMatch = false;   ///< the text ends with an entry
    };

    static constexpr quint32 rootNode = 0;

    void BuildTree(std::span<const QString> sortedEntries);
    void LinkFallbacks();

    /// The node that continues `node` by a character; the root when there is none.
    quint32 Child(quint32 node, char16_t character) const;

    /// The node for the longest suffix of what was read that an entry begins with.
    quint32 Next(quint32 node, char16_t character) const;

    std::vector<Node> nodes_;
    std::vector<char16_t> characters_;       ///< by node, as in the node; apart, to be searched fast
    std::array<quint32, 128> asciiOfRoot_{}; ///< children of the root by character; most steps begin there
};

} // namespace quellbox

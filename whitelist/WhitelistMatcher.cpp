#include "whitelist/WhitelistMatcher.h"

#include <algorithm>

namespace quellbox {
namespace {

/// Up to this number of neighbours a look at each is faster than halving.
constexpr quint32 fewChildren = 8;

char16_t CharacterAt(const QString& text, qsizetype index) {
    return text[index].unicode();
}

} // namespace

WhitelistMatcher::WhitelistMatcher(QStringList snapshot) {
    std::sort(snapshot.begin(), snapshot.end());
    BuildTree(std::span<const QString>(snapshot.constData(), static_cast<size_t>(snapshot.size())));
    LinkFallbacks();
}

void WhitelistMatcher::BuildTree(std::span<const QString> sortedEntries) {
    /// The entries that begin with the text of a node; they are neighbours, because the entries are sorted.
    struct Range {
        size_t begin;
        size_t end;
        qsizetype length; ///< of the text of the node
    };
    std::vector<Range> ranges = {{0, sortedEntries.size(), 0}};
    nodes_.emplace_back();
    lastCharacters_.push_back(0);
    for (quint32 node = 0; node < nodes_.size(); ++node) {
        const auto [begin, end, length] = ranges[node];
        nodes_[node].firstChild = static_cast<quint32>(nodes_.size());
        // The shortest of these entries comes first. Where one ends, the longer ones cannot change the answer any more.
        if (begin < end && sortedEntries[begin].size() == length) {
            nodes_[node].isMatch = true;
            continue;
        }
        for (size_t first = begin; first < end;) {
            const char16_t character = CharacterAt(sortedEntries[first], length);
            size_t last = first + 1;
            while (last < end && CharacterAt(sortedEntries[last], length) == character) {
                ++last;
            }
            ranges.push_back({first, last, length + 1});
            nodes_.emplace_back();
            lastCharacters_.push_back(character);
            ++nodes_[node].childCount;
            first = last;
        }
    }
}

void WhitelistMatcher::LinkFallbacks() {
    // Nodes are numbered by the length of their text, so a fallback, being shorter, is complete before it is needed.
    for (quint32 node = 0; node < nodes_.size(); ++node) {
        const Node parent = nodes_[node];
        for (quint32 child = parent.firstChild; child < parent.firstChild + parent.childCount; ++child) {
            if (node == rootNode) {
                if (lastCharacters_[child] < asciiOfRoot_.size()) {
                    asciiOfRoot_[lastCharacters_[child]] = child;
                }
                continue;
            }
            const quint32 fallback = Next(parent.fallback, lastCharacters_[child]);
            nodes_[child].fallback = fallback;
            nodes_[child].isMatch = nodes_[child].isMatch || nodes_[fallback].isMatch;
        }
    }
}

quint32 WhitelistMatcher::Child(quint32 node, char16_t character) const {
    if (node == rootNode && character < asciiOfRoot_.size()) {
        return asciiOfRoot_[character];
    }
    const Node& parent = nodes_[node];
    const auto begin = lastCharacters_.begin() + parent.firstChild;
    const auto end = begin + parent.childCount;
    const auto found =
        parent.childCount <= fewChildren ? std::find(begin, end, character) : std::lower_bound(begin, end, character);
    if (found == end || *found != character) {
        return rootNode;
    }
    return static_cast<quint32>(found - lastCharacters_.begin());
}

quint32 WhitelistMatcher::Next(quint32 node, char16_t character) const {
    quint32 next = Child(node, character);
    while (next == rootNode && node != rootNode) {
        node = nodes_[node].fallback;
        next = Child(node, character);
    }
    return next;
}

bool WhitelistMatcher::TolerableSender(const QString& lowerCasedSender) const {
    quint32 node = rootNode;
    if (nodes_[rootNode].isMatch) {
        return true;
    }
    for (const QChar character : lowerCasedSender) {
        node = Next(node, character.unicode());
        if (nodes_[node].isMatch) {
            return true;
        }
    }
    return false;
}

} // namespace quellbox

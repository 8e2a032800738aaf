#include "whitelist/WhitelistMatcher.h"

#include <algorithm>
#include <iterator>

namespace quellbox {
namespace {

/// Up to this number of neighbours a look at each is faster than halving.
constexpr quint32 fewChildren = 16;

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
    /// A node whose children are still to come, and the entries that begin with its text; they are neighbours, because
    /// the entries are sorted.
    struct Pending {
        quint32 node;
        size_t begin;
        size_t end;
        qsizetype length; ///< of the text of the node
    };
    std::vector<Pending> pending = {{rootNode, 0, sortedEntries.size(), 0}};
    std::vector<Pending> children;
    nodes_.emplace_back();
    while (!pending.empty()) {
        const auto [node, begin, end, length] = pending.back();
        pending.pop_back();
        nodes_[node].firstChild = static_cast<quint32>(nodes_.size());
        // The shortest of these entries comes first. Where one ends, the longer ones cannot change the answer any more.
        if (begin < end && sortedEntries[begin].size() == length) {
            nodes_[node].isMatch = true;
            continue;
        }
        children.clear();
        for (size_t first = begin; first < end;) {
            const char16_t character = CharacterAt(sortedEntries[first], length);
            size_t last = first + 1;
            while (last < end && CharacterAt(sortedEntries[last], length) == character) {
                ++last;
            }
            children.push_back({static_cast<quint32>(nodes_.size()), first, last, length + 1});
            nodes_.emplace_back().character = character;
            first = last;
        }
        nodes_[node].childCount = static_cast<quint32>(children.size());
        pending.insert(pending.end(), children.rbegin(), children.rend());
    }
    characters_.reserve(nodes_.size());
    std::transform(nodes_.begin(), nodes_.end(), std::back_inserter(characters_),
                   [](const Node& node) { return node.character; });
}

void WhitelistMatcher::LinkFallbacks() {
    // In the order of the length of their texts: a fallback, being shorter, is complete before it is needed.
    std::vector<quint32> byLength = {rootNode};
    byLength.reserve(nodes_.size());
    for (size_t next = 0; next < byLength.size(); ++next) {
        const quint32 node = byLength[next];
        const Node parent = nodes_[node];
        for (quint32 child = parent.firstChild; child < parent.firstChild + parent.childCount; ++child) {
            byLength.push_back(child);
            if (node == rootNode) {
                if (characters_[child] < asciiOfRoot_.size()) {
                    asciiOfRoot_[characters_[child]] = child;
                }
                continue;
            }
            const quint32 fallback = Next(parent.fallback, characters_[child]);
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
    if (parent.childCount <= 1) {
        const bool found = parent.childCount == 1 && nodes_[parent.firstChild].character == character;
        return found ? parent.firstChild : rootNode;
    }
    const auto begin = characters_.begin() + parent.firstChild;
    const auto end = begin + parent.childCount;
    // Digits above all follow one another without a gap.
    const quint32 distance = quint32{character} - *begin;
    if (distance < parent.childCount && begin[distance] == character) {
        return parent.firstChild + distance;
    }
    const auto found =
        parent.childCount <= fewChildren ? std::find(begin, end, character) : std::lower_bound(begin, end, character);
    if (found == end || *found != character) {
        return rootNode;
    }
    return static_cast<quint32>(found - characters_.begin());
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

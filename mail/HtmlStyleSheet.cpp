#include "mail/HtmlStyleSheet.h"

#include <algorithm>
#include <cctype>

namespace quellbox {

namespace {

constexpr qsizetype mostRules = 5000;
constexpr int mostClasses = 16;
constexpr qsizetype mostCompounds = 8; // that end in the same part

/// The text without comments, for which each "<!--" counts as well.
QByteArray WithoutCssComments(QByteArrayView css) {
    QByteArray kept;
    while (!css.isEmpty()) {
        const qsizetype begin = css.indexOf("/*");
        kept.append(begin < 0 ? css : css.first(begin));
        const qsizetype end = begin < 0 ? -1 : css.indexOf("*/", begin + 2);
        css = end < 0 ? QByteArrayView() : css.sliced(end + 2);
    }
    return kept.replace("<!--", "").replace("-->", "");
}

bool IsNameCharacter(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return std::isalnum(byte) || c == '-' || c == '_' || byte >= 0x80;
}

/// Where the block that begins at a brace ends, behind its closing brace, with blocks inside of it.
qsizetype BlockEnd(QByteArrayView css, qsizetype brace) {
    int depth = 0;
    for (qsizetype at = brace; at < css.size(); ++at) {
        depth += css[at] == '{' ? 1 : css[at] == '}' ? -1 : 0;
        if (depth == 0) {
            return at + 1;
        }
    }
    return css.size();
}

/// Whether what stands before a block names media without any condition, of which one is a screen.
bool IsForEveryScreen(QByteArrayView head) {
    constexpr qsizetype longest = 200;
    const QByteArray words = head.first(std::min(longest, head.size())).toByteArray().toLower().simplified();
    if (!words.startsWith("@media ")) {
        return false;
    }
    const QList<QByteArray> media = words.sliced(7).split(',');
    return std::any_of(media.begin(), media.end(), [](const QByteArray& medium) {
        const QByteArray name = medium.trimmed();
        return name == "all" || name == "screen" || name == "only screen" || name == "only all";
    });
}

/// A selector without the ancestors that every element of a page has.
QByteArrayView WithoutPage(QByteArrayView selector) {
    for (bool isShorter = true; isShorter;) {
        isShorter = false;
        for (const QByteArrayView page : {QByteArrayView("html "), QByteArrayView("body "), QByteArrayView("* ")}) {
            if (selector.startsWith(page)) {
                selector = selector.sliced(page.size()).trimmed();
                isShorter = true;
            }
        }
    }
    return selector.startsWith("*.") || selector.startsWith("*#") ? selector.sliced(1) : selector;
}

/// The parts of a selector of one element, as "p", ".note" and "#top" of "p.note#top".
QList<QByteArray> PartsOf(QByteArrayView selector) {
    QList<QByteArray> parts;
    for (const char c : selector) {
        if (parts.isEmpty() || c == '.' || c == '#') {
            parts.emplace_back();
        }
        parts.back() += c;
    }
    return parts;
}

/// Whether a selector says nothing of other elements or of states.
bool IsOfOneElement(QByteArrayView selector) {
    return !selector.isEmpty() && std::all_of(selector.begin(), selector.end(),
                                              [](char c) { return IsNameCharacter(c) || c == '.' || c == '#'; });
}

/// Whether a selector is "*", an element, a class, an identifier, or an element with a class.
bool IsSimple(QByteArrayView selector) {
    return selector == "*" || (IsOfOneElement(selector) && selector.count('.') + selector.count('#') <= 1);
}

} // namespace

void HtmlStyleSheet::Add(QByteArrayView css) {
    const QByteArray text = WithoutCssComments(css);
    AddRules(text, 0);
}

void HtmlStyleSheet::AddRules(QByteArrayView all, int depth) {
    qsizetype at = 0;
    while (at < all.size()) {
        const qsizetype brace = all.indexOf('{', at);
        if (brace < 0) {
            return;
        }
        const QByteArrayView selectors = all.sliced(at, brace - at).trimmed();
        if (selectors.startsWith('@')) {
            const qsizetype semicolon = all.sliced(at, brace - at).lastIndexOf(';'); // of @import, say
            at = semicolon < 0 ? AddBlock(all, at, brace, depth) : at + semicolon + 1;
            continue;
        }
        const qsizetype end = all.indexOf('}', brace);
        AddRule(selectors, all.sliced(brace + 1, (end < 0 ? all.size() : end) - brace - 1));
        at = end < 0 ? all.size() : end + 1;
    }
}

/// Adds the rules of a block, if they are for every screen. Returns where it ends.
qsizetype HtmlStyleSheet::AddBlock(QByteArrayView css, qsizetype at, qsizetype brace, int depth) {
    constexpr int deepest = 4;
    const qsizetype end = BlockEnd(css, brace);
    if (depth < deepest && IsForEveryScreen(css.sliced(at, brace - at))) {
        AddRules(css.sliced(brace + 1, std::max<qsizetype>(0, end - brace - 2)), depth + 1);
    }
    return end;
}

void HtmlStyleSheet::AddRule(QByteArrayView selectors, QByteArrayView body) {
    const HtmlDeclarations declared = ReadDeclarations(body);
    if (declared == HtmlDeclarations()) {
        return;
    }
    while (!selectors.isEmpty() && rules_.size() < mostRules) {
        const qsizetype comma = selectors.indexOf(',');
        AddSelector((comma < 0 ? selectors : selectors.first(comma)).trimmed(), declared);
        selectors = comma < 0 ? QByteArrayView() : selectors.sliced(comma + 1);
    }
}

void HtmlStyleSheet::AddSelector(QByteArrayView selector, const HtmlDeclarations& declared) {
    constexpr qsizetype longest = 100;
    selector = WithoutPage(selector);
    if (IsSimple(selector) && selector.size() <= longest) {
        rules_[selector.toByteArray().toLower()].Merge(declared);
        return;
    }
    if (IsOfOneElement(selector) && selector.size() <= longest) {
        AddCompound(PartsOf(selector.toByteArray().toLower()), declared);
        return;
    }
    if (!declared.background) {
        return;
    }
    // It may or may not apply to what its last part names: then nothing is known of the colours there.
    qsizetype begin = selector.size();
    while (begin > 0 &&
           (IsNameCharacter(selector[begin - 1]) || selector[begin - 1] == '.' || selector[begin - 1] == '#')) {
        --begin;
    }
    const QByteArrayView last = selector.sliced(begin);
    if (IsSimple(last) && last.size() <= longest) {
        HtmlDeclarations unknown;
        unknown.background = CssBackground{};
        rules_[last.toByteArray().toLower()].Merge(unknown);
    }
}

void HtmlStyleSheet::AddCompound(QList<QByteArray> parts, const HtmlDeclarations& declared) {
    QList<Compound>& ofLast = compounds_[parts.takeLast()];
    if (ofLast.size() < mostCompounds) {
        ofLast.append({std::move(parts), declared});
    }
}

void HtmlStyleSheet::MergeCompounds(const QList<QByteArray>& parts, HtmlDeclarations& into) const {
    for (const QByteArray& part : parts) {
        for (const Compound& compound : compounds_.value(part)) {
            if (std::all_of(compound.others.begin(), compound.others.end(),
                            [&parts](const QByteArray& other) { return parts.contains(other); })) {
                into.Merge(compound.declared);
            }
        }
    }
}

HtmlDeclarations HtmlStyleSheet::Declared(QByteArrayView element, QByteArrayView classes,
                                          QByteArrayView identifier) const {
    HtmlDeclarations declared;
    if (rules_.isEmpty() && compounds_.isEmpty()) {
        return declared;
    }
    constexpr qsizetype longest = 1000;
    QList<QByteArray> parts{element.toByteArray()};
    declared.Merge(rules_.value("*"));
    declared.Merge(rules_.value(parts.front()));
    if (!classes.isEmpty() && classes.size() <= longest) {
        const QList<QByteArray> names = classes.toByteArray().toLower().simplified().split(' ');
        for (qsizetype i = 0; i < std::min<qsizetype>(names.size(), mostClasses); ++i) {
            parts.append('.' + names[i]);
            declared.Merge(rules_.value(parts.back()));
            declared.Merge(rules_.value(parts.front() + parts.back()));
        }
    }
    if (!identifier.isEmpty() && identifier.size() <= longest) {
        parts.append('#' + identifier.toByteArray().toLower());
        declared.Merge(rules_.value(parts.back()));
        declared.Merge(rules_.value(parts.front() + parts.back()));
    }
    if (!compounds_.isEmpty()) {
        MergeCompounds(parts, declared);
    }
    return declared;
}

} // namespace quellbox

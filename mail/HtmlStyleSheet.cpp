#include "mail/HtmlStyleSheet.h"

#include <algorithm>
#include <cctype>

namespace quellbox {

namespace {

constexpr qsizetype mostRules = 5000;
constexpr int mostClasses = 16;

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

/// Whether a selector is an element, a class, an identifier, or an element with a class.
bool IsSimple(QByteArrayView selector) {
    qsizetype marks = 0;
    for (const char c : selector) {
        marks += c == '.' || c == '#' ? 1 : 0;
        if (!IsNameCharacter(c) && c != '.' && c != '#') {
            return false;
        }
    }
    return !selector.isEmpty() && marks <= 1;
}

} // namespace

void HtmlStyleSheet::Add(QByteArrayView css) {
    const QByteArray text = WithoutCssComments(css);
    const QByteArrayView all(text);
    qsizetype at = 0;
    while (at < all.size()) {
        const qsizetype brace = all.indexOf('{', at);
        if (brace < 0) {
            return;
        }
        const QByteArrayView selectors = all.sliced(at, brace - at).trimmed();
        if (selectors.startsWith('@')) {
            const qsizetype semicolon = all.sliced(at, brace - at).lastIndexOf(';'); // of @import, say
            at = semicolon < 0 ? BlockEnd(all, brace) : at + semicolon + 1;
            continue;
        }
        const qsizetype end = all.indexOf('}', brace);
        AddRule(selectors, all.sliced(brace + 1, (end < 0 ? all.size() : end) - brace - 1));
        at = end < 0 ? all.size() : end + 1;
    }
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
    if (IsSimple(selector) && selector.size() <= longest) {
        rules_[selector.toByteArray().toLower()].Merge(declared);
        return;
    }
    if (!declared.background && !declared.color) {
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

HtmlDeclarations HtmlStyleSheet::Declared(QByteArrayView element, QByteArrayView classes,
                                          QByteArrayView identifier) const {
    HtmlDeclarations declared;
    if (rules_.isEmpty()) {
        return declared;
    }
    constexpr qsizetype longest = 1000;
    declared.Merge(rules_.value(element.toByteArray()));
    if (!classes.isEmpty() && classes.size() <= longest) {
        const QList<QByteArray> names = classes.toByteArray().toLower().simplified().split(' ');
        for (qsizetype i = 0; i < std::min<qsizetype>(names.size(), mostClasses); ++i) {
            declared.Merge(rules_.value('.' + names[i]));
            declared.Merge(rules_.value(element.toByteArray() + '.' + names[i]));
        }
    }
    if (!identifier.isEmpty() && identifier.size() <= longest) {
        declared.Merge(rules_.value('#' + identifier.toByteArray().toLower()));
    }
    return declared;
}

} // namespace quellbox

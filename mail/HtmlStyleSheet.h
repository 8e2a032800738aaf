#pragma once

#include "mail/HtmlStyle.h"

#include <QByteArray>
#include <QHash>

namespace quellbox {

/// The rules of a page whose selectors are one element, one class or one identifier (or an element with a class, as
/// "p.note"). Of rules with other selectors it only counts that a background may come from them. Rules for certain
/// media are passed over. Beyond some thousands further rules are, too.
class HtmlStyleSheet {
public:
    /// Adds the rules of a style element; to be called with the whole of its text.
    void Add(QByteArrayView css);

    /// What the rules declare for an element, the weakest first. `classes` is the value of its attribute.
    HtmlDeclarations Declared(QByteArrayView element, QByteArrayView classes, QByteArrayView identifier) const;

private:
    void AddRule(QByteArrayView selectors, QByteArrayView body);
    void AddSelector(QByteArrayView selector, const HtmlDeclarations& declared);

    QHash<QByteArray, HtmlDeclarations> rules_; // by ".class", "#identifier", "element" or "element.class"
};

} // namespace quellbox

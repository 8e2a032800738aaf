#pragma once

#include "mail/HtmlStyle.h"

#include <QByteArray>
#include <QHash>
#include <QList>

namespace quellbox {

/// The rules of a page whose selectors name one element, by its name, its classes or its identifier, as "p.note.small".
/// Of rules with other selectors it only counts that a background may come from them. Rules for other media than every
/// screen are passed over. Beyond some thousands further rules are, too.
class HtmlStyleSheet {
public:
    /// Adds the rules of a style element; to be called with the whole of its text.
    void Add(QByteArrayView css);

    /// What the rules declare for an element, the weakest first. `classes` is the value of its attribute.
    HtmlDeclarations Declared(QByteArrayView element, QByteArrayView classes, QByteArrayView identifier) const;

private:
    /// A selector of several parts, by its last one.
    struct Compound {
        QList<QByteArray> others;
        HtmlDeclarations declared;
    };

    void AddRules(QByteArrayView all, int depth);
    qsizetype AddBlock(QByteArrayView css, qsizetype at, qsizetype brace, int depth);
    void AddCompound(QList<QByteArray> parts, const HtmlDeclarations& declared);
    void MergeCompounds(const QList<QByteArray>& parts, HtmlDeclarations& into) const;
    void AddRule(QByteArrayView selectors, QByteArrayView body);
    void AddSelector(QByteArrayView selector, const HtmlDeclarations& declared);

    QHash<QByteArray, HtmlDeclarations> rules_; // by "*", ".class", "#identifier", "element" or "element.class"
    QHash<QByteArray, QList<Compound>> compounds_;
};

} // namespace quellbox

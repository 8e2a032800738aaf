#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <utility>
#include <vector>

namespace quellbox {

/// Names, in lower case, and values of the attributes of an element.
using HtmlAttributes = std::vector<std::pair<QByteArrayView, QByteArrayView>>;

/// What is told of a page while it is parsed. All texts are UTF-8 with entities resolved, and pass with the call.
class HtmlSink {
public:
    HtmlSink() = default;
    HtmlSink(const HtmlSink&) = delete;
    HtmlSink& operator=(const HtmlSink&) = delete;
    virtual ~HtmlSink() = default;

    /// An element begins; its name is in lower case. Each one ends, in the reverse order.
    virtual void Begin(QByteArrayView element, const HtmlAttributes& attributes) = 0;
    virtual void End() = 0;

    /// A piece of text, or of what stands in a script or in a style element.
    virtual void Text(QByteArrayView utf8) = 0;

    /// Whether no more is wanted.
    virtual bool IsFull() const = 0;
};

/// Parses a page as browsers do, whatever is wrong with it, without comments. Nothing is fetched, and no entity is
/// defined by the page itself. False when it stopped before the end, because the sink was full or because the work,
/// which grows with the number of tags times the depth in which they stand, went beyond a bound. May be called from
/// several threads at once.
bool ParseHtml(QByteArray utf8, HtmlSink& sink);

} // namespace quellbox

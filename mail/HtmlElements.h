#pragma once

#include <QByteArrayView>

#include <cstdint>

namespace quellbox {

/// What the text of an element is to a reader.
enum class HtmlRole : std::uint8_t {
    Inline, ///< also whatever is not known
    Block,
    Paragraph,
    Heading,
    Quote,
    Preformatted,
    BulletList,
    NumberedList,
    Item,
    Row,
    Cell,
    LineBreak,
    Rule,
    Link,
    Picture,
    Form,
    Control,
    Base,
    Style,
    Ignored ///< scripts, titles and what else is no text
};

/// The role of an element, by its name in lower case.
HtmlRole RoleOfElement(QByteArrayView element);

} // namespace quellbox

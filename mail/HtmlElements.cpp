#include "mail/HtmlElements.h"

#include <string_view>
#include <unordered_map>

namespace quellbox {

HtmlRole RoleOfElement(QByteArrayView element) {
    using Role = HtmlRole;
    static const std::unordered_map<std::string_view, Role> roles{
        {"address", Role::Block},    {"article", Role::Block},
        {"aside", Role::Block},      {"body", Role::Block},
        {"caption", Role::Block},    {"center", Role::Block},
        {"dd", Role::Block},         {"details", Role::Block},
        {"dialog", Role::Block},     {"div", Role::Block},
        {"dl", Role::Block},         {"dt", Role::Block},
        {"fieldset", Role::Block},   {"figcaption", Role::Block},
        {"figure", Role::Block},     {"footer", Role::Block},
        {"header", Role::Block},     {"html", Role::Block},
        {"legend", Role::Block},     {"main", Role::Block},
        {"nav", Role::Block},        {"option", Role::Block},
        {"section", Role::Block},    {"select", Role::Block},
        {"summary", Role::Block},    {"table", Role::Block},
        {"p", Role::Paragraph},      {"h1", Role::Heading},
        {"h2", Role::Heading},       {"h3", Role::Heading},
        {"h4", Role::Heading},       {"h5", Role::Heading},
        {"h6", Role::Heading},       {"blockquote", Role::Quote},
        {"pre", Role::Preformatted}, {"listing", Role::Preformatted},
        {"xmp", Role::Preformatted}, {"plaintext", Role::Preformatted},
        {"ul", Role::BulletList},    {"menu", Role::BulletList},
        {"dir", Role::BulletList},   {"ol", Role::NumberedList},
        {"li", Role::Item},          {"tr", Role::Row},
        {"td", Role::Cell},          {"th", Role::Cell},
        {"br", Role::LineBreak},     {"hr", Role::Rule},
        {"a", Role::Link},           {"area", Role::Link},
        {"img", Role::Picture},      {"form", Role::Form},
        {"input", Role::Control},    {"base", Role::Base},
        {"style", Role::Style},      {"script", Role::Ignored},
        {"title", Role::Ignored},    {"noframes", Role::Ignored},
        {"template", Role::Ignored}, {"iframe", Role::Ignored}};
    const auto found = roles.find(std::string_view(element.data(), static_cast<size_t>(element.size())));
    return found == roles.end() ? Role::Inline : found->second;
}

} // namespace quellbox

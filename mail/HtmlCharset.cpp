#include "mail/HtmlCharset.h"

#include "mail/PartContent.h"

namespace quellbox {

namespace {

/// The character set that a page declares itself at its beginning; empty where it does not.
QByteArray CharsetOfPage(const QByteArray& page) {
    constexpr qsizetype searched = 4096;
    const QByteArray head = page.left(searched).toLower();
    for (qsizetype meta = head.indexOf("<meta"); meta >= 0; meta = head.indexOf("<meta", meta + 1)) {
        const QByteArray tag =
            head.sliced(meta, head.indexOf('>', meta) < 0 ? head.size() - meta : head.indexOf('>', meta) - meta);
        const qsizetype at = tag.indexOf("charset");
        if (at < 0) {
            continue;
        }
        QByteArray name = tag.sliced(at + 7).trimmed();
        if (!name.startsWith('=')) {
            continue;
        }
        name = name.sliced(1).replace('"', ' ').replace('\'', ' ').replace(';', ' ').replace('/', ' ').trimmed();
        name = name.left(name.indexOf(' ') < 0 ? name.size() : name.indexOf(' '));
        // Who could read the declaration has not read that.
        return name.startsWith("utf-16") || name.startsWith("utf-32") ? QByteArray("utf-8") : name;
    }
    return {};
}

} // namespace

QByteArray PageAsUtf8(const QByteArray& page, QByteArrayView charset, const CharsetEvidence& evidence) {
    const QByteArray declared = charset.trimmed().isEmpty() ? CharsetOfPage(page) : charset.toByteArray();
    const QByteArray name = declared.trimmed().toLower();
    const bool isUtf8 = name.isEmpty() || name == "utf-8" || name == "us-ascii";
    if (isUtf8 && !page.startsWith("\xEF\xBB\xBF") && !page.contains('\x1B') && QUtf8StringView(page).isValidUtf8()) {
        return page; // as nearly every page is; a large one is not copied back and forth. ISO 2022 has escapes
    }
    return DecodeText(page, declared, evidence).toUtf8();
}

} // namespace quellbox

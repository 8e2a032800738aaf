#include "mail/HeaderScanner.h"

#include <algorithm>
#include <cstring>

namespace quellbox {

namespace {

/// The index behind the next line end, or -1 when the line is not finished.
qsizetype NextLine(QByteArrayView bytes, qsizetype from) {
    if (from >= bytes.size())
        return -1;
    const void* found = std::memchr(bytes.data() + from, '\n', static_cast<size_t>(bytes.size() - from));
    return found == nullptr ? -1 : static_cast<const char*>(found) - bytes.data() + 1;
}

/// The index behind the field that begins at `from`, its folded lines included; -1 when more bytes are needed.
qsizetype FieldEnd(QByteArrayView bytes, qsizetype from, bool atEnd) {
    for (;;) {
        const qsizetype next = NextLine(bytes, from);
        if (next < 0 || next == bytes.size())
            return atEnd ? bytes.size() : -1;
        if (bytes[next] != ' ' && bytes[next] != '\t')
            return next;
        from = next;
    }
}

/// The length of the field name at the start of `line`, 0 when there is none; `colon` receives the colon's index.
/// 8-bit bytes count as part of a name, as they do for GMime.
qsizetype FieldName(QByteArrayView line, qsizetype& colon) {
    qsizetype length = 0;
    while (length < line.size() && line[length] != ':' && static_cast<unsigned char>(line[length]) > ' ' &&
           line[length] != '\x7F')
        ++length;
    colon = length;
    while (colon < line.size() && (line[colon] == ' ' || line[colon] == '\t'))
        ++colon;
    return colon < line.size() && line[colon] == ':' ? length : 0;
}

/// Letters, digits and hyphens, as in every name in real use. Texts and style sheets that are no mail have lines that
/// the wider syntax of a name would take for a field.
bool IsOrdinaryName(QByteArrayView name) {
    return std::all_of(name.begin(), name.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-';
    });
}

/// The index of the colon where `line` begins with a field of that name, in any case; -1 where it does not.
qsizetype ColonOfField(QByteArrayView line, QByteArrayView lowerCasedName) {
    const auto isSame = [](char lower, char c) { return c == lower || (c >= 'A' && c <= 'Z' && (c | 0x20) == lower); };
    qsizetype colon = lowerCasedName.size();
    // Most lines have another length of the name, and are not compared at all.
    if (line.size() <= colon || (line[colon] != ':' && line[colon] != ' ' && line[colon] != '\t') ||
        !std::equal(lowerCasedName.begin(), lowerCasedName.end(), line.begin(), isSame))
        return -1;
    while (colon < line.size() && (line[colon] == ' ' || line[colon] == '\t'))
        ++colon;
    return colon < line.size() && line[colon] == ':' ? colon : -1;
}

} // namespace

WantedFields::WantedFields(const QByteArrayList& names) {
    for (const QByteArray& name : names) {
        names_.push_back(name.toLower());
        if (!name.isEmpty()) {
            initials_.set(static_cast<unsigned char>(names_.back().front()));
            initials_.set(static_cast<unsigned char>(name.toUpper().front()));
        }
    }
}

HeaderScanner::Result HeaderScanner::SkipPreamble(QByteArrayView bytes, bool atEnd) {
    static constexpr QByteArrayView kByteOrderMark = "\xEF\xBB\xBF";
    qsizetype start = bytes.startsWith(kByteOrderMark) ? kByteOrderMark.size() : 0;
    bool skipped = false;
    while (start < bytes.size()) {
        const qsizetype next = NextLine(bytes, start);
        const QByteArrayView line = bytes.sliced(start, (next < 0 ? bytes.size() : next) - start);
        qsizetype colon = 0;
        const qsizetype length = FieldName(line, colon);
        if (length > 0 && (!skipped || IsOrdinaryName(line.first(length)))) {
            headerStart_ = position_ = start;
            return Result::Complete;
        }
        if (next < 0)
            break;
        if (line == "\n" || line == "\r\n" || line.contains('\0'))
            return Result::NoMessage;
        skipped = skipped || !(line.startsWith("From ") || line.startsWith(">From "));
        start = next;
    }
    return atEnd ? Result::NoMessage : Result::NeedsMore;
}

void HeaderScanner::TakeField(QByteArrayView bytes, qsizetype end) {
    const QByteArrayView line = bytes.sliced(position_, end - position_);
    for (size_t field = 0; field < wanted_.Count(); ++field) {
        const qsizetype colon = ColonOfField(line, wanted_.Name(field));
        if (colon < 0)
            continue;
        if (!Has(field))
            spans_[static_cast<qsizetype>(field)] = {position_ + colon + 1, end};
    }
}

HeaderScanner::Result HeaderScanner::Scan(QByteArrayView bytes, bool atEnd) {
    if (headerStart_ < 0) {
        const Result result = SkipPreamble(bytes, atEnd);
        if (result != Result::Complete)
            return result;
    }
    while (position_ < bytes.size()) {
        const char first = bytes[position_];
        if (first == '\n' || (first == '\r' && position_ + 1 < bytes.size() && bytes[position_ + 1] == '\n'))
            return Result::Complete;
        const qsizetype end = FieldEnd(bytes, position_, atEnd);
        if (end < 0)
            return Result::NeedsMore;
        if (wanted_.MayBeginWith(first))
            TakeField(bytes, end);
        position_ = end;
    }
    return atEnd ? Result::Complete : Result::NeedsMore;
}

QByteArrayView HeaderScanner::Value(size_t field, QByteArrayView bytes) const {
    const Span& span = spans_[static_cast<qsizetype>(field)];
    return span.start < 0 ? QByteArrayView() : bytes.sliced(span.start, span.end - span.start);
}

} // namespace quellbox

#include "mail/HeaderFields.h"

#include "mail/HeaderDecoder.h"
#include "mail/HeaderScanner.h"
#include "mail/LoadError.h"
#include "platform/RuntimeError.h"

#include <algorithm>
#include <array>

namespace quellbox {

namespace {

// Most header blocks fit into the first block; the blocks double, so a long one costs few reads.
constexpr qsizetype kFirstBlock = 4096;

HeaderFields Failed(LoadError error, const QString& text) {
    HeaderFields fields;
    fields.errorCode = static_cast<int>(error);
    fields.errorText = text;
    return fields;
}

HeaderFields Failed(LoadError error) {
    return Failed(error, LoadErrorText(error));
}

HeaderFields Collect(const HeaderScanner& scanner, QByteArrayView bytes) {
    const auto text = [&](WantedField field) { return DecodeHeaderValue(scanner.Value(field, bytes)); };
    HeaderFields fields;
    fields.recipient = text(WantedField::To);
    fields.sender = text(WantedField::From);
    fields.subject = text(WantedField::Subject);
    if (scanner.Has(WantedField::Scl))
        fields.scl = text(WantedField::Scl);
    if (scanner.Has(WantedField::Smsmse))
        fields.smsmse = text(WantedField::Smsmse);
    fields.xSender = text(WantedField::XSender);
    return fields;
}

HeaderFields Finish(HeaderScanner& scanner, QByteArrayView bytes, bool atEnd) {
    if (bytes.isEmpty())
        return Failed(LoadError::Empty);
    switch (scanner.Scan(bytes.first(std::min(bytes.size(), kMaximumHeaderBytes)), atEnd)) {
    case HeaderScanner::Result::Complete:
        return Collect(scanner, bytes);
    case HeaderScanner::Result::NoMessage:
        return Failed(LoadError::NoHeaderField);
    case HeaderScanner::Result::NeedsMore:
        break;
    }
    return Failed(scanner.HeaderStart() < 0 ? LoadError::NoHeaderField : LoadError::HeaderTooLarge);
}

/// Reads on behind the first bytes, in which `scanner` has not found the end of the header block.
HeaderFields ReadOn(InputFile& file, HeaderScanner& scanner, QByteArrayView first) {
    QByteArray bytes(2 * kFirstBlock, Qt::Uninitialized);
    std::copy(first.begin(), first.end(), bytes.begin());
    qsizetype filled = first.size();
    for (;;) {
        const qsizetype count = file.Read(bytes.data() + filled, bytes.size() - filled);
        filled += count;
        const QByteArrayView read = QByteArrayView(bytes).first(filled);
        if (count == 0 || filled >= kMaximumHeaderBytes)
            return Finish(scanner, read, count == 0);
        if (scanner.Scan(read, false) != HeaderScanner::Result::NeedsMore)
            return Finish(scanner, read, false);
        if (filled == bytes.size())
            bytes.resize(std::min(2 * filled, kMaximumHeaderBytes));
    }
}

HeaderFields ReadFields(InputFile& file) {
    // On the stack: memory of this size, taken and given back for each of many files, costs as much as the parsing.
    std::array<char, kFirstBlock> block;
    HeaderScanner scanner;
    const QByteArrayView first(block.data(), file.Read(block.data(), kFirstBlock));
    if (first.isEmpty() || scanner.Scan(first, false) != HeaderScanner::Result::NeedsMore)
        return Finish(scanner, first, first.isEmpty());
    return ReadOn(file, scanner, first);
}

/// Reads a file that `place`, a file system or a folder, opens by its path or name.
template <class Place>
HeaderFields ReadFile(const Place& place, const QString& pathOrName) {
    try {
        const std::unique_ptr<InputFile> file = place.Open(pathOrName);
        return ReadFields(*file);
    } catch (const RuntimeError& error) {
        return Failed(LoadError::Unreadable, error.Text());
    }
}

} // namespace

HeaderFields ReadHeaderFields(const FileSystem& files, const QString& path) {
    return ReadFile(files, path);
}

HeaderFields ReadHeaderFields(const FolderReader& folder, const QString& name) {
    return ReadFile(folder, name);
}

HeaderFields ParseHeaderFields(QByteArrayView bytes) {
    HeaderScanner scanner;
    return Finish(scanner, bytes, bytes.size() <= kMaximumHeaderBytes);
}

} // namespace quellbox

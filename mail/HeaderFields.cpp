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

// The order in which ServerProfile::wanted begins.
enum ListedField : size_t { FieldTo, FieldFrom, FieldSubject, FieldReceived, firstRating };

/// The rating from the first line of its field, if it stands there: filters fold long lists of their tests behind it,
/// which cost more to decode than all the rest of a row. Empty where the whole field has to be looked at.
QString RatingInFirstLine(const RatingField& field, QByteArrayView raw) {
    raw = raw.trimmed();
    const qsizetype fold = raw.indexOf('\n');
    if (fold < 0 || field.form != RatingForm::Number)
        return {};
    const QByteArrayView line = raw.first(fold).trimmed();
    const bool isPrintable = std::all_of(line.begin(), line.end(), [](char c) { return c >= ' ' && c <= '~'; });
    return isPrintable && !line.contains("=?") ? RatingText(field, QString::fromLatin1(line)) : QString();
}

QByteArrayView HeaderBlock(const HeaderScanner& scanner, QByteArrayView bytes) {
    return bytes.sliced(scanner.HeaderStart(), scanner.HeaderEnd() - scanner.HeaderStart());
}

QString RatingOf(const HeaderScanner& scanner, QByteArrayView bytes, const ServerProfile& profile,
                 const CharsetEvidence& evidence) {
    for (size_t rating = 0; rating < profile.ratings.size(); ++rating) {
        if (!scanner.Has(firstRating + rating))
            continue;
        const QByteArrayView raw = scanner.Value(firstRating + rating, bytes);
        QString text = RatingInFirstLine(profile.ratings[rating], raw);
        if (text.isEmpty())
            text = RatingText(profile.ratings[rating], DecodeHeaderValue(raw, evidence));
        if (profile.firstRatingDecides || !text.isEmpty())
            return text;
    }
    return {};
}

/// What the server adds stands above the traces of its delivery. Below the first of them is what the sender wrote.
bool IsOfServer(const HeaderScanner& scanner, size_t field, const ServerProfile& profile) {
    return profile.trustsAnyPlace || !scanner.Has(FieldReceived) || scanner.Start(field) < scanner.Start(FieldReceived);
}

QString SenderOf(const HeaderScanner& scanner, QByteArrayView bytes, const ServerProfile& profile,
                 const CharsetEvidence& evidence) {
    const size_t firstSender = firstRating + profile.ratings.size();
    for (size_t sender = 0; sender < profile.senders.size(); ++sender) {
        const size_t field = firstSender + sender;
        if (scanner.Has(field) && IsOfServer(scanner, field, profile))
            return AddressText(profile.senders[sender], scanner.Value(field, bytes), evidence);
    }
    return {};
}

HeaderFields Collect(const HeaderScanner& scanner, QByteArrayView bytes, const ServerProfile& profile) {
    const CharsetEvidence evidence(HeaderBlock(scanner, bytes));
    const auto text = [&](size_t field) { return DecodeHeaderValue(scanner.Value(field, bytes), evidence); };
    HeaderFields fields;
    fields.recipient = text(FieldTo);
    fields.sender = text(FieldFrom);
    fields.subject = text(FieldSubject);
    fields.rating = RatingOf(scanner, bytes, profile, evidence);
    fields.xSender = SenderOf(scanner, bytes, profile, evidence);
    return fields;
}

LoadError ErrorOf(HeaderScanner::Result result, const HeaderScanner& scanner) {
    return result == HeaderScanner::Result::NoMessage || scanner.HeaderStart() < 0 ? LoadError::NoHeaderField
                                                                                   : LoadError::HeaderTooLarge;
}

HeaderFields Finish(HeaderScanner& scanner, QByteArrayView bytes, bool atEnd, const ServerProfile& profile) {
    if (bytes.isEmpty())
        return Failed(LoadError::Empty);
    const auto result = scanner.Scan(bytes.first(std::min(bytes.size(), kMaximumHeaderBytes)), atEnd);
    return result == HeaderScanner::Result::Complete ? Collect(scanner, bytes, profile)
                                                     : Failed(ErrorOf(result, scanner));
}

FieldValueList FinishValues(HeaderScanner& scanner, QByteArrayView bytes, bool atEnd, const WantedFields& wanted) {
    FieldValueList values(wanted.Count());
    if (scanner.Scan(bytes.first(std::min(bytes.size(), kMaximumHeaderBytes)), atEnd) !=
        HeaderScanner::Result::Complete)
        return values;
    const CharsetEvidence evidence(HeaderBlock(scanner, bytes));
    for (size_t field = 0; field < values.size(); ++field) {
        if (scanner.Has(field))
            values[field] = DecodeHeaderValue(scanner.Value(field, bytes), evidence);
    }
    return values;
}

/// Reads on behind the first bytes, in which `scanner` has not found the end of the header block. `finish` makes the
/// answer of the scanner and all bytes that were read, and is told whether that is the whole file.
template <class Finish>
auto ReadOn(InputFile& file, HeaderScanner& scanner, QByteArrayView first, Finish finish) {
    QByteArray bytes(2 * kFirstBlock, Qt::Uninitialized);
    std::copy(first.begin(), first.end(), bytes.begin());
    qsizetype filled = first.size();
    for (;;) {
        const qsizetype count = file.Read(bytes.data() + filled, bytes.size() - filled);
        filled += count;
        const QByteArrayView read = QByteArrayView(bytes).first(filled);
        if (count == 0 || filled >= kMaximumHeaderBytes)
            return finish(scanner, read, count == 0);
        if (scanner.Scan(read, false) != HeaderScanner::Result::NeedsMore)
            return finish(scanner, read, false);
        if (filled == bytes.size())
            bytes.resize(std::min(2 * filled, kMaximumHeaderBytes));
    }
}

template <class Finish>
auto ReadFields(InputFile& file, const WantedFields& wanted, Finish finish) {
    // On the stack: memory of this size, taken and given back for each of many files, costs as much as the parsing.
    std::array<char, kFirstBlock> block;
    HeaderScanner scanner(wanted);
    const QByteArrayView first(block.data(), file.Read(block.data(), kFirstBlock));
    if (first.isEmpty() || scanner.Scan(first, false) != HeaderScanner::Result::NeedsMore)
        return finish(scanner, first, first.isEmpty());
    return ReadOn(file, scanner, first, finish);
}

HeaderFields ReadFrom(InputFile& file, const ServerProfile& profile) {
    return ReadFields(file, profile.wanted, [&](HeaderScanner& scanner, QByteArrayView bytes, bool atEnd) {
        return Finish(scanner, bytes, atEnd, profile);
    });
}

/// Reads a file that `place`, a file system or a folder, opens by its path or name.
template <class Place>
HeaderFields ReadFile(const Place& place, const QString& pathOrName, const ServerProfile& profile) {
    try {
        std::unique_ptr<InputFile> file = place.Open(pathOrName);
        if (profile.packing == Packing::Never)
            return ReadFrom(*file, profile);
        UnpackedFile unpacked(std::move(file), pathOrName);
        HeaderFields fields = ReadFrom(unpacked, profile);
        fields.isPacked = unpacked.IsPacked();
        return fields;
    } catch (const PackedFileError& error) {
        return Failed(error.Error());
    } catch (const RuntimeError& error) {
        return Failed(LoadError::Unreadable, error.Text());
    }
}

} // namespace

HeaderFields ReadHeaderFields(const FileSystem& files, const QString& path, const ServerProfile& profile) {
    return ReadFile(files, path, profile);
}

HeaderFields ReadHeaderFields(const FolderReader& folder, const QString& name, const ServerProfile& profile) {
    return ReadFile(folder, name, profile);
}

HeaderFields ParseHeaderFields(QByteArrayView bytes, const ServerProfile& profile) {
    HeaderScanner scanner(profile.wanted);
    return Finish(scanner, bytes, bytes.size() <= kMaximumHeaderBytes, profile);
}

FieldValueList FieldValues(QByteArrayView bytes, const WantedFields& wanted) {
    HeaderScanner scanner(wanted);
    return FinishValues(scanner, bytes, bytes.size() <= kMaximumHeaderBytes, wanted);
}

FieldValueList ReadFieldValues(const FolderReader& folder, const QString& name, const WantedFields& wanted) {
    UnpackedFile file(folder.Open(name), name);
    return ReadFields(file, wanted, [&](HeaderScanner& scanner, QByteArrayView bytes, bool atEnd) {
        return FinishValues(scanner, bytes, atEnd, wanted);
    });
}

} // namespace quellbox

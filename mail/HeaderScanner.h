#pragma once

#include <QByteArray>

#include <array>

namespace quellbox {

/// The fields that a list row needs, in the order of HeaderScanner::Value().
enum class WantedField { To, From, Subject, Scl, Smsmse, XSender };
inline constexpr int kWantedFieldCount = 6;

/// Header blocks beyond this many bytes are refused: no mail system lets such a message through.
inline constexpr qsizetype kMaximumHeaderBytes = qsizetype{1} << 20;

/// Finds the wanted fields in the header block of a message (RFC 5322), whose bytes may arrive piece by piece. It is
/// lenient like GMime's parser and finds the same fields: line ends are CRLF or LF, a name may be followed by spaces,
/// a line that is no field is skipped. A UTF-8 byte order mark and an mbox "From " line may come first. Where GMime
/// gives up, at a first line that is no field, this goes on to the first field with an ordinary name, unless a blank
/// line or a NUL byte comes before it. Of several fields of one name the first counts.
class HeaderScanner {
public:
    enum class Result {
        NeedsMore, ///< the blank line has not been seen
        Complete,
        NoMessage, ///< the header block holds no field
    };

    /// Scans on from where the last call stopped. `bytes` are all bytes of the message so far, its start included;
    /// `atEnd` says that no more will come. The end of the message also ends the header block.
    Result Scan(QByteArrayView bytes, bool atEnd);

    /// Where the first field begins, and where the blank line after the last one begins, both in bytes.
    qsizetype HeaderStart() const { return headerStart_; }
    qsizetype HeaderEnd() const { return position_; }

    bool Has(WantedField field) const { return spans_[static_cast<size_t>(field)].start >= 0; }

    /// The raw value in `bytes`, the same as given to Scan(): what follows the colon, folds and line end included.
    QByteArrayView Value(WantedField field, QByteArrayView bytes) const;

private:
    struct Span {
        qsizetype start = -1;
        qsizetype end = -1;
    };

    Result SkipPreamble(QByteArrayView bytes, bool atEnd);
    void TakeField(QByteArrayView bytes, qsizetype end);

    std::array<Span, kWantedFieldCount> spans_{};
    qsizetype headerStart_ = -1; ///< -1 until the first field was seen
    qsizetype position_ = 0;     ///< start of the first line not yet dealt with
};

} // namespace quellbox

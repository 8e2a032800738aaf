#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QVarLengthArray>

#include <bitset>
#include <vector>

namespace quellbox {

/// The names of fields that are to be found.
class WantedFields {
public:
    explicit WantedFields(const QByteArrayList& names = {});

    size_t Count() const { return names_.size(); }

    /// In lower case.
    const QByteArray& Name(size_t field) const { return names_[field]; }

    /// Whether a name may begin with that byte: most lines need no closer look.
    bool MayBeginWith(char first) const { return initials_[static_cast<unsigned char>(first)]; }

private:
    std::vector<QByteArray> names_;
    std::bitset<256> initials_; // in both cases
};

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

    /// `wanted` has to outlive this object.
    explicit HeaderScanner(const WantedFields& wanted)
        : wanted_(wanted), spans_(static_cast<qsizetype>(wanted.Count())) {}
    explicit HeaderScanner(WantedFields&&) = delete;

    /// Scans on from where the last call stopped. `bytes` are all bytes of the message so far, its start included;
    /// `atEnd` says that no more will come. The end of the message also ends the header block.
    Result Scan(QByteArrayView bytes, bool atEnd);

    /// Where the first field begins, and where the blank line after the last one begins, both in bytes.
    qsizetype HeaderStart() const { return headerStart_; }
    qsizetype HeaderEnd() const { return position_; }

    bool Has(size_t field) const { return Start(field) >= 0; }

    /// Where the value begins, in bytes; -1 where there is none.
    qsizetype Start(size_t field) const { return spans_[static_cast<qsizetype>(field)].start; }

    /// The raw value in `bytes`, the same as given to Scan(): what follows the colon, folds and line end included.
    QByteArrayView Value(size_t field, QByteArrayView bytes) const;

private:
    struct Span {
        qsizetype start = -1;
        qsizetype end = -1;
    };

    Result SkipPreamble(QByteArrayView bytes, bool atEnd);
    void TakeField(QByteArrayView bytes, qsizetype end);

    const WantedFields& wanted_;
    QVarLengthArray<Span, 16> spans_; // as the names in wanted_
    qsizetype headerStart_ = -1;      ///< -1 until the first field was seen
    qsizetype position_ = 0;          ///< start of the first line not yet dealt with
};

} // namespace quellbox

#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QString>

#include <optional>

namespace quellbox {

/// Whether nothing else has to be known of undeclared text: it is UTF-8, and holds no escape sequence.
bool SpeaksForItself(QByteArrayView bytes);

/// What a message tells about the character sets of those of its bytes that lack a declaration of their own: the ones
/// that it declares elsewhere, else a guess. It looks for nothing before bytes need it, which are neither UTF-8 nor
/// plain ASCII; everything else costs no more than without it. For one thread.
class CharsetEvidence {
public:
    /// Nothing is known: bytes have to speak for themselves.
    CharsetEvidence() = default;

    /// The header block of the message, which has to outlive this object. What its Content-Type field declares
    /// counts first, and then what encoded words do, in their order.
    explicit CharsetEvidence(QByteArrayView headerBlock) : block_(headerBlock) {}

    /// Another declaration, of a part of the message. The ones of the header block come first.
    void Declare(QByteArrayView charset);

    /// Undeclared text of a header field. Guesses look at the header block as a whole, because one field is too short,
    /// and at some of its lines, because not all may be in one character set. Every field is decoded alike, whichever
    /// of them are asked for.
    QString DecodeValue(QByteArrayView bytes) const;

    /// Undeclared text of a part, from which alone the character set is guessed where none is declared.
    QString DecodeText(QByteArrayView bytes) const;

    /// The character sets that the header block and the parts declare, in lower case, each once.
    const QByteArrayList& Declared() const;

private:
    std::optional<QString> DecodeAsDeclared(QByteArrayView bytes) const;
    const QByteArrayList& GuessesOfBlock() const;

    QByteArrayView block_;
    QByteArrayList ofParts_;
    mutable std::optional<QByteArrayList> declared_; ///< when it was looked for
    mutable std::optional<QByteArrayList> guesses_;  ///< when they were made
};

} // namespace quellbox

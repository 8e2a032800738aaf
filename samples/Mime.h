#pragma once

#include <QByteArray>
#include <QList>

namespace quellbox::samples {

enum class TransferEncoding { EightBit, QuotedPrintable, Base64 };

/// A message or a part of one: complete header lines, and the body. Lines end in CRLF.
struct Entity {
    QByteArray header;
    QByteArray body;

    QByteArray Bytes() const { return header + "\r\n" + body; }
};

/// An RFC 2047 encoded word; "Q" where it stays within the 75 characters allowed and `preferQ` asks for it, else "B".
QByteArray EncodedWord(const QByteArray& charset, const QByteArray& bytes, bool preferQ);

/// Base64 in lines of 76 characters.
QByteArray Base64Lines(const QByteArray& bytes);

QByteArray QuotedPrintable(const QByteArray& bytes);

/// A text part. `subtype` is as in "plain".
Entity TextEntity(const QByteArray& subtype, const QByteArray& charset, const QByteArray& bytes,
                  TransferEncoding encoding);

/// How the name of an attachment is written.
enum class NameForm { Plain, Extended, Continued, EncodedWord };

/// An attachment in Base64; `name` is UTF-8 (ASCII for NameForm::Plain).
Entity AttachmentEntity(const QByteArray& type, const QByteArray& name, NameForm form, const QByteArray& bytes);

/// An attached message.
Entity MessageEntity(const Entity& message);

/// Several parts, as in multipart/`subtype`. An unclosed one lacks its last boundary line.
Entity MultipartEntity(const QByteArray& subtype, const QByteArray& boundary, const QList<Entity>& parts,
                       bool closed = true);

} // namespace quellbox::samples

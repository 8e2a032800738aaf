#include "samples/Mime.h"

namespace quellbox::samples {

namespace {

constexpr qsizetype encodedWordLimit = 75;
constexpr qsizetype base64LineBytes = 57;
constexpr qsizetype quotedLineLimit = 76;
constexpr qsizetype continuedNameLimit = 40;

bool IsPrintable(char character) {
    return character >= ' ' && character <= '~';
}

bool IsAlphanumeric(char character) {
    return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
           (character >= 'a' && character <= 'z');
}

QByteArray Hex(char character) {
    return QByteArray(1, character).toHex().toUpper();
}

QByteArray NameParameter(const QByteArray& name, NameForm form) {
    switch (form) {
    case NameForm::Plain:
        return "filename=\"" + name + "\"";
    case NameForm::EncodedWord:
        return "filename=\"" + EncodedWord("utf-8", name, false) + "\"";
    case NameForm::Extended:
        return "filename*=utf-8''" + name.toPercentEncoding();
    case NameForm::Continued:
        break;
    }
    const QByteArray encoded = "utf-8''" + name.toPercentEncoding();
    QByteArray result;
    qsizetype start = 0;
    for (int section = 0; start < encoded.size(); ++section) {
        qsizetype length = qMin(continuedNameLimit, encoded.size() - start);
        const qsizetype percent = encoded.lastIndexOf('%', start + length - 1);
        if (percent > start && percent + 3 > start + length && start + length < encoded.size()) {
            length = percent - start;
        }
        result += (section == 0 ? "" : ";\r\n\t") + QByteArray("filename*") + QByteArray::number(section) +
                  "*=" + encoded.mid(start, length);
        start += length;
    }
    return result;
}

} // namespace

QByteArray EncodedWord(const QByteArray& charset, const QByteArray& bytes, bool preferQ) {
    const QByteArray start = QByteArray("=?") + charset + '?';
    if (preferQ) {
        QByteArray word = start + "Q?";
        for (const char character : bytes) {
            if (character == ' ') {
                word += '_';
            } else if (IsAlphanumeric(character)) {
                word += character;
            } else {
                word += '=' + Hex(character);
            }
        }
        word += "?=";
        if (word.size() <= encodedWordLimit) {
            return word;
        }
    }
    return start + "B?" + bytes.toBase64() + "?=";
}

QByteArray Base64Lines(const QByteArray& bytes) {
    QByteArray lines;
    lines.reserve(bytes.size() * 3 / 2);
    for (qsizetype start = 0; start < bytes.size(); start += base64LineBytes) {
        lines +=
            QByteArray::fromRawData(bytes.constData() + start, qMin(base64LineBytes, bytes.size() - start)).toBase64();
        lines += "\r\n";
    }
    return lines;
}

QByteArray QuotedPrintable(const QByteArray& bytes) {
    QByteArray result;
    result.reserve(bytes.size() * 5 / 4);
    qsizetype lineLength = 0;
    for (qsizetype index = 0; index < bytes.size(); ++index) {
        const char character = bytes[index];
        if (character == '\r' && index + 1 < bytes.size() && bytes[index + 1] == '\n') {
            result += "\r\n";
            lineLength = 0;
            ++index;
            continue;
        }
        const bool endsLine = index + 1 == bytes.size() || bytes[index + 1] == '\r';
        const bool literal = IsPrintable(character) && character != '=' && !(character == ' ' && endsLine);
        const QByteArray piece = literal ? QByteArray(1, character) : '=' + Hex(character);
        if (lineLength + piece.size() >= quotedLineLimit) {
            result += "=\r\n";
            lineLength = 0;
        }
        result += piece;
        lineLength += piece.size();
    }
    return result;
}

Entity TextEntity(const QByteArray& subtype, const QByteArray& charset, const QByteArray& bytes,
                  TransferEncoding encoding) {
    Entity entity;
    entity.header = QByteArray("Content-Type: text/") + subtype + "; charset=\"" + charset + "\"\r\n";
    switch (encoding) {
    case TransferEncoding::EightBit:
        entity.header += "Content-Transfer-Encoding: 8bit\r\n";
        entity.body = bytes;
        break;
    case TransferEncoding::QuotedPrintable:
        entity.header += "Content-Transfer-Encoding: quoted-printable\r\n";
        entity.body = QuotedPrintable(bytes);
        break;
    case TransferEncoding::Base64:
        entity.header += "Content-Transfer-Encoding: base64\r\n";
        entity.body = Base64Lines(bytes);
        break;
    }
    return entity;
}

Entity AttachmentEntity(const QByteArray& type, const QByteArray& name, NameForm form, const QByteArray& bytes) {
    return {QByteArray("Content-Type: ") + type +
                "\r\nContent-Transfer-Encoding: base64\r\nContent-Disposition: attachment;\r\n\t" +
                NameParameter(name, form) + "\r\n",
            Base64Lines(bytes)};
}

Entity MessageEntity(const Entity& message) {
    return {"Content-Type: message/rfc822\r\nContent-Disposition: attachment\r\n", message.Bytes()};
}

Entity MultipartEntity(const QByteArray& subtype, const QByteArray& boundary, const QList<Entity>& parts, bool closed) {
    Entity entity;
    entity.header = QByteArray("Content-Type: multipart/") + subtype + ";\r\n\tboundary=\"" + boundary + "\"\r\n";
    entity.body = "This is a message in several parts in MIME format.\r\n";
    for (const Entity& part : parts) {
        entity.body += "\r\n--" + boundary + "\r\n" + part.Bytes();
    }
    if (closed) {
        entity.body += "\r\n--" + boundary + "--\r\n";
    }
    return entity;
}

} // namespace quellbox::samples

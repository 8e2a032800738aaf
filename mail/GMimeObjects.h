#pragma once

#include "mail/CharsetEvidence.h"
#include "mail/LoadError.h"

#include <QByteArray>
#include <QString>

#include <gmime/gmime.h>

#include <memory>

namespace quellbox {

struct GMimeUnref {
    void operator()(void* object) const { g_object_unref(object); }
};

/// An object of GMime that is given back with its last owner.
template <typename T>
using GMimePtr = std::unique_ptr<T, GMimeUnref>;

/// A message that GMime has parsed.
struct OpenedMessage {
    GMimePtr<GMimeMessage> message;
    /// What its header block tells about character sets: the list, which reads nothing else, must show the same fields.
    CharsetEvidence ofHeader;
};

/// Has GMime parse the bytes of a message, which have to outlive what is opened. What a message is, the scanner of
/// header fields decides (see HeaderScanner), so that the list and all who take messages apart agree on it.
LoadError OpenMessage(const QByteArray& bytes, OpenedMessage& opened);

/// What a part of text declares itself; null when it does not, or is no text.
const char* DeclaredCharset(GMimeObject* part);

/// Notes what the parts declare. As deep as leaves are collected (kMaximumDepth), and no deeper.
void DeclareParts(GMimeObject* part, CharsetEvidence& evidence, int depth = 1);

/// The file name that a part declares, decoded but not cleansed; empty where it declares none. One in raw bytes that
/// are not UTF-8 is decoded by the evidence.
QString DeclaredFileName(GMimeObject* part, const CharsetEvidence& evidence);

/// The content of a part without its transfer encoding.
QByteArray PartBytes(GMimePart* part);

} // namespace quellbox

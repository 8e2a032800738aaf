#pragma once

#include "samples/Mime.h"
#include "samples/Random.h"

namespace quellbox::samples {

/// A message as a spam filter archives it, of about `size` bytes: spam mostly, some orders and letters, in the
/// structures and encodings that real mail has.
QByteArray MakeMessage(Random& random, qsizetype size);

/// The header of such a message: the envelope and the rating that the mail server added, then the sender's own fields.
/// `ownFields` are the lines that describe the content.
QByteArray MakeHeader(Random& random, const QByteArray& ownFields);

/// Bytes that look like those of an image or an archive.
QByteArray RandomBytes(Random& random, qsizetype size);

} // namespace quellbox::samples

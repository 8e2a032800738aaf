#pragma once

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

/// Has GMime parse the bytes of a message. What a message is, the scanner of header fields decides (see
/// HeaderScanner), so that the list and all who take messages apart agree on it. `message` is set when there is no
/// error, and keeps no pointer to `bytes` beyond its own copy of them.
LoadError OpenMessage(const QByteArray& bytes, GMimePtr<GMimeMessage>& message);

/// The file name that a part declares, decoded but not cleansed; empty where it declares none.
QString DeclaredFileName(GMimeObject* part);

/// The content of a part without its transfer encoding.
QByteArray PartBytes(GMimePart* part);

} // namespace quellbox

#include "mail/LoadError.h"

#include <QCoreApplication>

namespace quellbox {

QString LoadErrorText(LoadError error) {
    const auto text = [](const char* source) { return QCoreApplication::translate("quellbox", source); };
    switch (error) {
    case LoadError::None:
        return {};
    case LoadError::Unreadable:
        return text(QT_TRANSLATE_NOOP("quellbox", "The file cannot be read"));
    case LoadError::Empty:
        return text(QT_TRANSLATE_NOOP("quellbox", "The file is empty"));
    case LoadError::NoHeaderField:
        return text(QT_TRANSLATE_NOOP("quellbox", "Not a mail message: no header field found"));
    case LoadError::HeaderTooLarge:
        return text(QT_TRANSLATE_NOOP("quellbox", "The header of the message is too large"));
    case LoadError::TooManyFields:
        return text(QT_TRANSLATE_NOOP("quellbox", "The message has too many header fields"));
    case LoadError::TooManyParts:
        return text(QT_TRANSLATE_NOOP("quellbox", "The message has too many parts"));
    case LoadError::TooDeep:
        return text(QT_TRANSLATE_NOOP("quellbox", "The parts of the message are nested too deeply"));
    case LoadError::Damaged:
        return text(QT_TRANSLATE_NOOP("quellbox", "The packed file is damaged"));
    case LoadError::UnpackedTooLarge:
        return text(QT_TRANSLATE_NOOP("quellbox", "Unpacked, the message would be too large"));
    }
    return {};
}

} // namespace quellbox

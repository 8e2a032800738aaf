#include "console/InputNames.h"

#include "console/Aside.h"
#include "platform/Console.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>

namespace quellbox {

namespace {

/// Everything that comes on the standard input; nothing when it cannot be read to its end.
std::optional<QByteArray> ReadInput() {
    QFile input;
    if (!input.open(stdin, QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    const QByteArray bytes = input.readAll();
    return input.error() == QFileDevice::NoError ? std::optional(bytes) : std::nullopt;
}

} // namespace

QStringList InputNames(Session& session, char end) {
    const std::optional<QByteArray> bytes = CallAside(session, ReadInput);
    if (!bytes) {
        throw CommandError(ExitCode::SomeFailed,
                           QCoreApplication::translate("quellbox", "The names cannot be read from the input."));
    }
    QStringList names;
    for (const QByteArray& line : bytes->split(end)) {
        const QByteArray name = end == '\n' ? NameOfLine(line) : line;
        if (!name.isEmpty()) {
            names.append(NameFromBytes(name));
        }
    }
    return names;
}

} // namespace quellbox

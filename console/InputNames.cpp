#include "console/InputNames.h"

#include "platform/Console.h"

#include <QFile>

#include <cstdio>

namespace quellbox {

QStringList InputNames(char end) {
    QFile input;
    QStringList names;
    if (!input.open(stdin, QIODevice::ReadOnly)) {
        return names;
    }
    for (QByteArray name : input.readAll().split(end)) {
        if (end == '\n') {
            name = NameOfLine(name);
        }
        if (!name.isEmpty()) {
            names.append(NameFromBytes(name));
        }
    }
    return names;
}

} // namespace quellbox

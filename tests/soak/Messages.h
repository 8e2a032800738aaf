#pragma once

#include <QByteArray>
#include <QString>

namespace quellbox::soak {

/// The bytes of the message with this number, the same every time; from half a kilobyte to some forty.
QByteArray MessageOf(int number);

/// The name of its file.
QString NameOf(int number);

/// The number of the message whose file has that name; -1 when it is the name of none.
int NumberOf(const QString& name);

/// Whether the sender of that message is one of those that ToleratedSender() stands for: one of ten is.
bool IsOfToleratedSender(int number);

/// An entry of the whitelist.
QString ToleratedSender();

} // namespace quellbox::soak

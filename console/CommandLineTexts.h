#pragma once

#include "console/Command.h"

#include <QCommandLineParser>
#include <QString>

namespace quellbox {

/// Writes a line to the standard error output, of which it gives no orders to a terminal.
void PrintConsoleError(const QString& text);

/// Adds all options of a command, those that every command has included.
void AddOptions(const Command& command, QCommandLineParser& parser);

/// What the program and its commands say of themselves.
QString HelpOfProgram();
QString HelpOfCommand(const Command& command, const QCommandLineParser& parser);

} // namespace quellbox

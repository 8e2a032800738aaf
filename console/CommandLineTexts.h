#pragma once

#include "console/Command.h"

#include <QCommandLineParser>
#include <QString>

namespace quellbox {

/// Adds all options of a command, those that every command has included.
void AddOptions(const Command& command, QCommandLineParser& parser);

/// What the program and its commands say of themselves.
QString HelpOfProgram();
QString HelpOfCommand(const Command& command, const QCommandLineParser& parser);

} // namespace quellbox

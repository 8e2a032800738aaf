#include "console/CommandLineTexts.h"

#include "console/TableWriter.h"
#include "history/HistoryTexts.h"

#include "mail/DisplayText.h"
#include "platform/Console.h"

#include <QCoreApplication>

#include <algorithm>

namespace quellbox {

namespace {

QString ExitCodes() {
    return Tr(QT_TRANSLATE_NOOP("quellbox",
                                "Exit codes: 0 done, 1 some messages failed, 2 wrong usage, 3 the archive or "
                                "the pickup directory cannot be reached, 4 interrupted.")) +
           QLatin1Char('\n');
}

} // namespace

void PrintConsoleError(const QString& text) {
    WriteError("quellboxctl: " + CleanseForDisplay(text).toUtf8() + '\n');
}

void AddOptions(const Command& command, QCommandLineParser& parser) {
    command.addOptions(parser);
    AddFormOptions(parser);
    parser.addOptions(
        {{QStringLiteral("archive"),
          Tr(QT_TRANSLATE_NOOP("quellbox", "The archive, instead of the one in the settings.")), QStringLiteral("DIR")},
         {QStringLiteral("pickup"),
          Tr(QT_TRANSLATE_NOOP("quellbox", "The pickup directory, instead of the one in the settings.")),
          QStringLiteral("DIR")},
         {QStringLiteral("program"),
          Tr(QT_TRANSLATE_NOOP("quellbox", "The program whose settings and history are used (%1)."))
              .arg(QStringLiteral("quellbox")),
          QStringLiteral("NAME"), QStringLiteral("quellbox")},
         {{QStringLiteral("h"), QStringLiteral("help")}, Tr(QT_TRANSLATE_NOOP("quellbox", "Print this help."))}});
}

QString HelpOfProgram() {
    QString help =
        Tr(QT_TRANSLATE_NOOP("quellbox", "Usage: %1")).arg(QStringLiteral("quellboxctl COMMAND [options]\n"));
    help += Tr(QT_TRANSLATE_NOOP("quellbox", "Looks through the archive of a mail server's spam filter, and delivers "
                                             "what is no spam, without a window.")) +
            QStringLiteral("\n\n");
    size_t width = 0;
    for (const Command& command : Commands()) {
        width = std::max(width, qstrlen(command.name));
    }
    for (const Command& command : Commands()) {
        help += QStringLiteral("  ") +
                QString::fromLatin1(command.name).leftJustified(static_cast<qsizetype>(width) + 2) +
                Tr(command.summary) + QLatin1Char('\n');
    }
    help +=
        QLatin1Char('\n') +
        Tr(QT_TRANSLATE_NOOP("quellbox", "quellboxctl COMMAND --help tells more of a command, quellboxctl --version "
                                         "the version.")) +
        QLatin1Char('\n');
    return help + ExitCodes();
}

QString HelpOfCommand(const Command& command, const QCommandLineParser& parser) {
    QString usage = QStringLiteral("quellboxctl ") + QLatin1String(command.name) + QStringLiteral(" [options]");
    if (*command.arguments != '\0') {
        usage += QLatin1Char(' ') + QLatin1String(command.arguments);
    }
    // What the parser writes itself begins with the path of the program.
    const QString options = parser.helpText().section(QStringLiteral("\n\n"), 1);
    return Tr(QT_TRANSLATE_NOOP("quellbox", "Usage: %1")).arg(usage) + QLatin1Char('\n') + Tr(command.summary) +
           QStringLiteral("\n\n") + options + QLatin1Char('\n') +
           Tr(QT_TRANSLATE_NOOP("quellbox", "Example: %1")).arg(QLatin1String(command.example)) + QLatin1Char('\n') +
           ExitCodes();
}

} // namespace quellbox

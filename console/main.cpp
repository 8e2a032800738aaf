#include "console/Command.h"
#include "console/CommandLineTexts.h"
#include "platform/ShareFileSystem.h"
#include "platform/Shell.h"
#include "settings/Translation.h"

#include <QCoreApplication>
#include <QLocale>

#include <chrono>
#include <cstdlib>
#include <exception>
#include <optional>

using namespace quellbox;

namespace {

// A share that never answers must not keep the process alive for ever: not at all long for what is only read, and
// longer for a message that is being moved or written.
constexpr std::chrono::seconds goodbye{1};
constexpr std::chrono::seconds goodbyeToChanges{60};

/// How a command ended.
struct CommandEnd {
    ExitCode code = ExitCode::Done;
    bool madeChanges = false;
};

/// Whoever asks for no more than a text.
ExitCode Answer(const QString& text) {
    return WriteOutput(text.toUtf8()) || IsOutputClosed() ? ExitCode::Done : ExitCode::SomeFailed;
}

ExitCode Fail(const QString& text) {
    PrintConsoleError(text);
    return ExitCode::WrongUsage;
}

/// What libraries and the log have to say, as the program says everything. Details are left to whoever debugs it.
void PrintLog(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
    if (type != QtDebugMsg && type != QtInfoMsg) {
        PrintConsoleError(text);
    }
}

/// Where the settings and the history of that program are. Throws UsageError.
ProgramInfo ProgramOf(const QString& name) {
    const bool isPath = name.contains(QLatin1Char('/')) || name.contains(QLatin1Char('\\'));
    if (name.isEmpty() || isPath || name.startsWith(QLatin1Char('.'))) {
        throw UsageError(
            QCoreApplication::translate("quellbox", "--program: \"%1\" is no name of a program.").arg(name));
    }
    return MakeProgramInfo(QCoreApplication::applicationDirPath() + QLatin1Char('/') + name);
}

/// The text of an option; nothing where it is not there.
std::optional<QString> Given(const QCommandLineParser& parser, const QString& option) {
    return parser.isSet(option) ? std::optional(parser.value(option)) : std::nullopt;
}

/// What a command that threw something ends with.
ExitCode CodeOf(const std::exception_ptr& thrown) {
    try {
        std::rethrow_exception(thrown);
    } catch (const CommandError& error) {
        if (!error.Text().isEmpty()) {
            PrintConsoleError(error.Text());
        }
        return error.Code();
    } catch (...) {
        PrintConsoleError(TextOf(thrown));
        return ExitCode::SomeFailed;
    }
}

CommandEnd RunCommand(const Command& command, const QCommandLineParser& parser, const ConsolePorts& ports) {
    CommandEnd end;
    try {
        Session session(ports, Given(parser, QStringLiteral("archive")), Given(parser, QStringLiteral("pickup")));
        try {
            end.code = command.run(session, parser);
        } catch (...) {
            end.code = CodeOf(std::current_exception());
        }
        end.madeChanges = session.MakesChanges();
        end.code = end.code == ExitCode::Done && session.HasOutputFailed() ? ExitCode::SomeFailed : end.code;
    } catch (...) {
        end.code = CodeOf(std::current_exception());
    }
    end.code = ports.interrupts.Came() ? ExitCode::Interrupted : end.code;
    return end;
}

ExitCode Run(const Command& command, const QCommandLineParser& parser) {
    ProgramInfo program;
    try {
        program = ProgramOf(parser.value(QStringLiteral("program")));
    } catch (const UsageError& error) {
        return Fail(error.Text());
    }
    Interrupts interrupts;
    const std::unique_ptr<Volumes> volumes = MakeVolumes();
    const std::unique_ptr<FileSystem> files = MakeFileSystem(*volumes);
    const std::unique_ptr<SettingsStore> store = OpenSettingsStore(program.ExecutableName);
    const std::unique_ptr<Clock> clock = MakeClock();
    const std::unique_ptr<PasswordStore> passwords = MakePasswordStore();
    ThreadWorkPool pool; // ends before the file system that its threads use
    const CommandEnd end = RunCommand(
        command, parser, {*files, *store, *clock, pool, *passwords, interrupts, program, MakeShell()->UserName()});
    if (!pool.WaitForDone(end.madeChanges ? goodbyeToChanges : goodbye)) {
        std::_Exit(static_cast<int>(end.code));
    }
    return end.code;
}

/// Answers what needs no settings and no archive; then the answer is the exit code.
ExitCode Start(const QStringList& arguments) {
    const QString first = arguments.value(0);
    if (first == QLatin1String("--version") || first == QLatin1String("-v")) {
        return Answer(QStringLiteral("quellboxctl " QUELLBOX_VERSION "\n"));
    }
    if (first == QLatin1String("--help") || first == QLatin1String("-h")) {
        return Answer(HelpOfProgram());
    }
    const Command* command = FindCommand(first);
    if (command == nullptr) {
        return Fail(
            first.isEmpty()
                ? QCoreApplication::translate("quellbox", "A command is missing. See quellboxctl --help.")
                : QCoreApplication::translate("quellbox", "\"%1\" is no command. See quellboxctl --help.").arg(first));
    }
    QCommandLineParser parser;
    AddOptions(*command, parser);
    if (!parser.parse(arguments)) {
        return Fail(parser.errorText());
    }
    if (parser.isSet(QStringLiteral("help"))) {
        return Answer(HelpOfCommand(*command, parser));
    }
    return Run(*command, parser);
}

} // namespace

int main(int argc, char** argv) {
    PrepareStreams();
    qInstallMessageHandler(PrintLog);
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Quellbox")); // under which passwords are kept
    QCoreApplication::setApplicationVersion(QStringLiteral(QUELLBOX_VERSION));
    InstallTranslation(application, QLocale::system().uiLanguages());
    return static_cast<int>(Start(ArgumentTexts(argc, argv)));
}

#include "console/Command.h"
#include "console/CommandLineTexts.h"
#include "platform/Console.h"
#include "platform/ShareFileSystem.h"
#include "platform/Shell.h"
#include "settings/Translation.h"

#include <QCoreApplication>
#include <QLocale>

#include <chrono>
#include <cstdlib>

using namespace quellbox;

namespace {

// A share that never answers must not keep the process alive for ever; what is being moved or written gets longer.
constexpr std::chrono::seconds goodbye{60};

ExitCode Fail(const QString& text) {
    WriteError("quellboxctl: " + text.toUtf8() + '\n');
    return ExitCode::WrongUsage;
}

/// What needs neither settings nor archive.
ExitCode Answer(const QString& text) {
    return WriteOutput(text.toUtf8()) || IsOutputClosed() ? ExitCode::Done : ExitCode::SomeFailed;
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

ExitCode RunCommand(const Command& command, const QCommandLineParser& parser, const ConsolePorts& ports) {
    Session session(ports, parser.value(QStringLiteral("archive")), parser.value(QStringLiteral("pickup")));
    ExitCode code = ExitCode::Done;
    try {
        code = command.run(session, parser);
    } catch (const CommandError& error) {
        if (!error.Text().isEmpty()) {
            session.Tell(error.Text());
        }
        code = error.Code();
    } catch (const RuntimeError& error) {
        session.Tell(error.Text());
        code = ExitCode::SomeFailed;
    }
    if (session.IsInterrupted()) {
        return ExitCode::Interrupted;
    }
    return code == ExitCode::Done && session.HasOutputFailed() ? ExitCode::SomeFailed : code;
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
    const ExitCode code = RunCommand(
        command, parser, {*files, *store, *clock, pool, *passwords, interrupts, program, MakeShell()->UserName()});
    if (!pool.WaitForDone(goodbye)) {
        std::_Exit(static_cast<int>(code));
    }
    return code;
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
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Quellbox")); // under which passwords are kept
    QCoreApplication::setApplicationVersion(QStringLiteral(QUELLBOX_VERSION));
    InstallTranslation(application, QLocale::system().uiLanguages());
    return static_cast<int>(Start(ArgumentTexts(argc, argv)));
}

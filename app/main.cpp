#include "app/CommandLine.h"
#include "app/ContrastStyle.h"
#include "app/TrayIcon.h"
#include "app/frmMain.h"
#include "archive/ArchiveArgument.h"
#include "platform/ShareFileSystem.h"
#include "settings/Translation.h"
#include "settings/frmMessageBox.h"

#include <QApplication>
#include <QDir>
#include <QLocale>
#include <QStyle>

#include <chrono>
#include <cstdio>
#include <cstdlib>

using namespace quellbox;

namespace {

// A share that never answers must not keep the process alive for ever: not at all long for what is only read, and
// longer for a message that is being moved or written.
constexpr std::chrono::seconds goodbye{3};
constexpr std::chrono::seconds goodbyeToChanges{60};

void PrintList(const MessageListModel& model) {
    for (int row = 0; row < model.Count(); ++row) {
        QStringList cells;
        for (const int column : {ColumnDate, ColumnTo, ColumnFrom, ColumnSubject, ColumnSize, ColumnScl}) {
            cells.append(model.Row(row).Cell(column));
        }
        std::printf("%s\n", cells.join(QLatin1Char('\t')).toUtf8().constData());
    }
}

// Whoever started the program from the desktop does not see the standard error output.
void ShowArgumentError(const QString& error, bool withBox) {
    PrintError(error);
    if (withBox) {
        ShowMessageBox(QMessageBox::Critical, {QStringLiteral("msgError"), QStringLiteral("Quellbox"), error}, nullptr);
    }
}

/// Prints and saves what the command line asks for after the first refresh. Returns the exit code.
int Report(frmMain& window, const CommandLine& commandLine) {
    int exitCode = 0;
    if (window.Outcome() != RefreshOutcome::Completed) {
        exitCode = 1;
        if (window.Outcome() != RefreshOutcome::TooMany) { // which is told already
            PrintError(window.Panels().Info().text);
        }
    } else if (commandLine.PrintsList()) {
        PrintList(window.Messages());
    }
    const QString file = commandLine.Picture();
    if (!file.isEmpty() && !window.grab().save(file)) {
        std::fprintf(stderr, "Cannot write %s\n", qPrintable(file));
        exitCode = 1;
    }
    return exitCode;
}

} // namespace

int main(int argc, char** argv) {
    const std::unique_ptr<QApplication> application = MakeApplication(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Quellbox"));
    QCoreApplication::setApplicationVersion(QStringLiteral(QUELLBOX_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("quellbox"));
    if (QApplication::style()->name() == QLatin1String("fusion")) {
        QApplication::setStyle(new ContrastStyle); // which the application frees
    }
    InstallTranslation(*application, QLocale::system().uiLanguages());
    CommandLine commandLine;
    commandLine.Process(*application);
    const bool quits = commandLine.Quits();

    const std::unique_ptr<Volumes> volumes = MakeVolumes();
    const std::unique_ptr<FileSystem> files = MakeFileSystem(*volumes);
    const ArchiveArgument archive = ReadArchiveArgument(commandLine.Archives(), *files, QDir::currentPath());
    if (!archive.Error.isEmpty()) {
        ShowArgumentError(archive.Error, !quits);
        return 2;
    }
    const ProgramInfo program = MakeProgramInfo(QCoreApplication::applicationFilePath());
    const std::unique_ptr<SettingsStore> store = OpenSettingsStore(program.ExecutableName);
    const std::unique_ptr<Clock> clock = MakeClock();
    const std::unique_ptr<Shell> shell = MakeShell();
    const std::unique_ptr<PasswordStore> passwords = MakePasswordStore();
    ThreadWorkPool pool; // ends before the file system that its threads use

    SystemTrayIcon tray;
    MainPorts ports{*files, *store, *clock, *shell, pool, *volumes, *passwords, program, &tray};
    ports.historyFile = program.HistoryFile;
    if (quits) {
        ports.reportError = PrintError; // nobody would answer a box
        ports.savesSettings = false;    // the place of the window may be none of a real screen
    }
    frmMain window(ports, archive.Folder);
    if (quits) {
        const auto report = [&window, &commandLine] {
            const int exitCode = Report(window, commandLine);
            window.close();
            QCoreApplication::exit(exitCode);
        };
        // The picture shows the first message selected, which happens right after the refresh.
        QObject::connect(&window, &frmMain::Refreshed, &window,
                         [&window, report] { QTimer::singleShot(200, &window, report); });
    }
    if (!quits || !commandLine.Picture().isEmpty()) {
        window.show();
    }
    const int exitCode = QApplication::exec();
    // Everything that is to be saved has been.
    if (!pool.WaitForDone(window.Jobs().LeftChangesUnderWay() ? goodbyeToChanges : goodbye)) {
        std::_Exit(exitCode);
    }
    return exitCode;
}

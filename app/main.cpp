#include "app/ContrastStyle.h"
#include "app/Translation.h"
#include "app/TrayIcon.h"
#include "app/frmMain.h"
#include "archive/ArchiveArgument.h"
#include "platform/ShareFileSystem.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QLocale>
#include <QMessageBox>
#include <QStyle>
#include <QThreadPool>

#include <cstdio>
#include <cstdlib>

using namespace quellbox;

namespace {

// More threads than any reader count, so that those who wait for a share never hold up the listing.
constexpr int mostThreads = 72;

constexpr int longestGoodbyeMs = 3000;

void PrintList(const MessageListModel& model) {
    for (int row = 0; row < model.Count(); ++row) {
        QStringList cells;
        for (const int column : {ColumnDate, ColumnTo, ColumnFrom, ColumnSubject, ColumnSize, ColumnScl}) {
            cells.append(model.Row(row).cells[static_cast<size_t>(column)]);
        }
        std::printf("%s\n", cells.join(QLatin1Char('\t')).toUtf8().constData());
    }
}

// Whoever started the program from the desktop does not see the standard error output.
void ShowArgumentError(const QString& error, bool withBox) {
    std::fprintf(stderr, "quellbox: %s\n", qPrintable(error));
    if (withBox) {
        QMessageBox box(QMessageBox::Critical, QStringLiteral("Quellbox"), error, QMessageBox::Ok);
        box.setObjectName(QStringLiteral("msgError"));
        box.setTextFormat(Qt::PlainText);
        box.exec();
    }
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Quellbox"));
    QCoreApplication::setApplicationVersion(QStringLiteral(QUELLBOX_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("quellbox"));
    if (QApplication::style()->name() == QLatin1String("fusion")) {
        QApplication::setStyle(new ContrastStyle); // which the application frees
    }
    InstallTranslation(application, QLocale::system().uiLanguages());

    QCommandLineParser parser;
    parser.setApplicationDescription(QCoreApplication::translate(
        "quellbox", "Look through the archive of a mail server's spam filter, and deliver what is no spam."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption printList(
        QStringLiteral("print-list"),
        QCoreApplication::translate("quellbox", "Print the list after the first refresh, and quit."));
    const QCommandLineOption screenshot(
        QStringLiteral("screenshot"),
        QCoreApplication::translate("quellbox", "Save a picture of the window after the first refresh, and quit."),
        QStringLiteral("file"));
    parser.addOptions({printList, screenshot});
    parser.addPositionalArgument(
        QStringLiteral("directory"),
        QCoreApplication::translate("quellbox", "The archive to show in this session, instead of the one in the "
                                                "settings, which stay as they are."),
        QCoreApplication::translate("quellbox", "[directory]"));
    parser.process(application);
    const bool quits = parser.isSet(printList) || parser.isSet(screenshot);

    const std::unique_ptr<Volumes> volumes = MakeVolumes();
    const std::unique_ptr<FileSystem> files = MakeFileSystem(*volumes);
    const ArchiveArgument archive = ReadArchiveArgument(parser.positionalArguments(), *files, QDir::currentPath());
    if (!archive.Error.isEmpty()) {
        ShowArgumentError(archive.Error, !quits);
        return 2;
    }
    const ProgramInfo program = MakeProgramInfo(QCoreApplication::applicationFilePath());
    const std::unique_ptr<SettingsStore> store = OpenSettingsStore(program.ExecutableName);
    const std::unique_ptr<Clock> clock = MakeClock();
    const std::unique_ptr<Shell> shell = MakeShell();
    QThreadPool pool; // ends before the file system that its readers use
    pool.setMaxThreadCount(mostThreads);

    SystemTrayIcon tray;
    frmMain window({*files, *store, *clock, *shell, pool, *volumes, program, &tray}, archive.Folder);
    int exitCode = 0;
    if (quits) {
        const auto report = [&] {
            if (parser.isSet(printList)) {
                PrintList(window.Messages());
            }
            const QString file = parser.value(screenshot);
            if (!file.isEmpty() && !window.grab().save(file)) {
                std::fprintf(stderr, "Cannot write %s\n", qPrintable(file));
                exitCode = 1;
            }
            window.close();
        };
        // The picture shows the first message selected, which happens right after the refresh.
        QObject::connect(&window, &frmMain::Refreshed, &window, [&] { QTimer::singleShot(200, &window, report); });
    }
    window.show();
    const int result = QApplication::exec();
    // A share that never answers must not keep the process alive; everything that is to be saved has been.
    if (!pool.waitForDone(longestGoodbyeMs)) {
        std::_Exit(result != 0 ? result : exitCode);
    }
    return result != 0 ? result : exitCode;
}

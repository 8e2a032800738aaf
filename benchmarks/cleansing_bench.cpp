// What removing every message of a full archive costs, against calls that do nothing but remove the same names.
#include "benchmarks/Bench.h"
#include "benchmarks/ProgramWindow.h"
#include "dialogs/CleansingTask.h"
#include "platform/LocalFileSystem.h"
#include "tests/support/FileNames.h"

#include <QApplication>
#include <QDialog>
#include <QEventLoop>
#include <QFile>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

#include <array>
#include <ctime>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace quellbox;
using namespace quellbox::bench;

namespace {

constexpr int fileCount = 32766;
constexpr int rounds = 3;

/// Fills the folder with messages of 2 KiB that were written ten days ago.
void Fill(const QString& folder) {
    const QByteArray bytes = "Subject: old\r\n\r\n" + QByteArray(2032, 'x');
    const time_t written = ::time(nullptr) - time_t{10} * 86400;
    const std::array<timespec, 2> times{timespec{written, 0}, timespec{written, 0}};
    for (int number = 0; number < fileCount; ++number) {
        const QByteArray path = QFile::encodeName(folder) + "m" + QByteArray::number(number) + ".EML";
        const int file = ::open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
        Require(file >= 0 && ::write(file, bytes.constData(), static_cast<size_t>(bytes.size())) == bytes.size() &&
                    ::futimens(file, times.data()) == 0,
                "a message cannot be written");
        ::close(file);
    }
}

/// Removes the files in the order in which the run meets them.
double TimeBareUnlink(const FileSystem& files, const QString& folder) {
    std::vector<QByteArray> paths;
    for (const QString& name : FileNames(files, folder)) {
        paths.push_back(QFile::encodeName(folder + name));
    }
    return Time([&paths] {
        for (const QByteArray& path : paths) {
            Require(::unlink(path.constData()) == 0, "a file cannot be removed");
        }
    });
}

double TimeRun(FileSystem& files, const QString& folder, qint16 days) {
    ThreadWorkPool pool;
    CleansingTask task(files, pool);
    CleansingResult result;
    int shown = 0;
    QEventLoop loop;
    QObject::connect(&task, &CleansingTask::Removing, [&shown] { ++shown; });
    QObject::connect(&task, &CleansingTask::Ended, [&](const CleansingResult& ended) {
        result = ended;
        loop.quit();
    });
    const double seconds = Time([&] {
        task.Start(folder, days, QDate::currentDate());
        loop.exec();
    });
    Require(result.count == fileCount && result.failures.empty(), "not every file was removed");
    Require(shown == (fileCount + 24) / 25, "the progress was not shown every 25 files");
    return seconds;
}

/// From OK in the dialog to the end of the command, the refresh of the emptied archive included.
double TimeWindow(FileSystem& files, const QString& folder) {
    ProgramWindow window(files, folder);
    auto confirmed = std::chrono::steady_clock::now();
    QTimer::singleShot(0, &window.Form(), [&confirmed] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        Require(dialog != nullptr, "the dialog was not shown");
        dialog->findChild<QAbstractButton*>(QStringLiteral("optDays7"))->click();
        confirmed = std::chrono::steady_clock::now();
        dialog->findChild<QPushButton*>(QStringLiteral("btnOK"))->click();
    });
    auto* cleanse = window.Form().findChild<QAction*>(QStringLiteral("mnuToolsCleansing"));
    window.UntilItHasEnded([cleanse] { cleanse->trigger(); });
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - confirmed).count();
    Require(window.Form().Panels().Info().text == QStringLiteral("%1 Messages removed !").arg(fileCount),
            "the window does not say what was removed");
    return seconds;
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    const QTemporaryDir place(FolderArgument(argc, argv, 1) + QStringLiteral("cleansing-XXXXXX"));
    const QString folder = place.path() + QLatin1Char('/');
    const std::unique_ptr<FileSystem> files = MakeLocalFileSystem();
    Best bare;
    Best all;
    Best old;
    Best whole;
    for (int round = 0; round < rounds; ++round) {
        const auto measure = [&](Best& best, auto work) {
            Fill(folder);
            best.Add(work());
            Require(FileNames(*files, folder).isEmpty(), "files are left");
        };
        measure(bare, [&] { return TimeBareUnlink(*files, folder); });
        measure(all, [&] { return TimeRun(*files, folder, 0); });
        measure(old, [&] { return TimeRun(*files, folder, 7); });
        measure(whole, [&] { return TimeWindow(*files, folder); });
    }
    Report("cleansing, files", fileCount, "");
    Report("cleansing: bare unlink", bare.seconds * 1e3, "ms");
    Report("cleansing: every message / bare unlink", all.seconds / bare.seconds, "times", "<= 1.5");
    Report("cleansing: all but one week / bare unlink", old.seconds / bare.seconds, "times", "<= 1.5");
    Report("cleansing: the same in the window / bare unlink", whole.seconds / bare.seconds, "times", "<= 1.5");
    return 0;
}

#include "benchmarks/ProgramWindow.h"

#include "benchmarks/Bench.h"
#include "benchmarks/TurnWatch.h"
#include "mail/HeaderFields.h"
#include "tests/support/FileNames.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QSet>
#include <QTimer>

namespace quellbox::bench {

ProgramWindow::ProgramWindow(FileSystem& files, const QString& archive, const QString& pickup)
    : files_(files), program_(MakeProgramInfo(archive + QStringLiteral("quellbox"))) {
    store_.SetValue(QStringLiteral("Settings"), QStringLiteral("ArchiveDir"), archive);
    store_.SetValue(QStringLiteral("Settings"), QStringLiteral("PickupDir"), pickup);
    form_ =
        std::make_unique<frmMain>(MainPorts{files, store_, *clock_, *shell_, pool_, *volumes_, passwords_, program_});
    Require(form_->State().ArchiveDir == archive, "the window has another archive");
    StopTimer();
    form_->show();
    QCoreApplication::processEvents();
}

void ProgramWindow::StopTimer() {
    form_->findChild<QTimer*>(QStringLiteral("tmrRefresh"))->stop();
}

void ProgramWindow::Refresh() {
    UntilItHasEnded([this] { form_->mnuAcRefresh_Click(); });
}

void ProgramWindow::RefreshIncrementally() {
    UntilItHasEnded([this] { form_->RefreshArchive(true); });
}

void ProgramWindow::UntilItHasEnded(const std::function<void()>& begin) {
    QEventLoop loop;
    QObject::connect(&form_->Jobs(), &WindowJobs::JobEnded, &loop, &QEventLoop::quit);
    begin();
    while (!form_->Jobs().IsIdle()) {
        loop.exec();
    }
    StopTimer();
}

ProgramWindow::Emptying ProgramWindow::EmptyList(const char* command) {
    const auto* list = form_->findChild<QWidget*>(QStringLiteral("lvwMessages"));
    Command("mnuEditSelectAll").trigger();
    Require(form_->State().SelectedCount == form_->Messages().Count(), "not every row is selected");
    QAction& wanted = Command(command);
    const TurnWatch watch;
    Emptying result;
    result.seconds = Time([&] { UntilItHasEnded([&wanted] { wanted.trigger(); }); });
    Require(form_->Messages().Count() == 0 && list->isEnabled(), "the list is not empty");
    // The last gap ends with the next turn.
    WaitUntil([&watch, turns = watch.Turns()] { return watch.Turns() > turns; });
    result.longestGapMs = watch.LongestMs();
    return result;
}

QAction& ProgramWindow::Command(const char* name) {
    auto* command = form_->findChild<QAction*>(QLatin1String(name));
    Require(command != nullptr && command->isEnabled(), "a command is missing or disabled");
    return *command;
}

void ProgramWindow::WaitUntil(const std::function<bool()>& holds) {
    constexpr std::chrono::minutes longest(10);
    QEventLoop loop;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &loop, [&] {
        if (holds()) {
            loop.quit();
        }
    });
    look.start(1);
    QTimer::singleShot(longest, &loop, [] { Require(false, "the window does not become idle"); });
    loop.exec();
}

void ProgramWindow::RequireWholeList() {
    constexpr int looksAt = 97; // every so many rows
    const MessageListModel& model = form_->Messages();
    const QString archive = form_->State().ArchiveDir;
    const QStringList names = FileNames(files_, archive);
    QSet<QString> missing(names.begin(), names.end());
    Require(model.Count() == names.size(), "the list has not one row for each file");
    for (int row = 0; row < model.Count(); ++row) {
        const MessageRow& shown = model.Row(row);
        Require(missing.remove(shown.Key()), "a row belongs to no file, or a file has two rows");
        Require(row == 0 || model.Row(row - 1).Cell(ColumnDate) >= shown.Cell(ColumnDate), "the list is not sorted");
        if (row % looksAt == 0) {
            const QByteArray bytes = ReadWhole(files_, archive + shown.Key());
            const HeaderFields fields = ParseHeaderFields(bytes);
            Require(shown.Cell(ColumnTo) == fields.recipient && shown.Cell(ColumnFrom) == fields.sender &&
                        shown.Cell(ColumnSubject) == (fields.errorCode == 0 ? fields.subject : fields.errorText) &&
                        shown.Cell(ColumnSize) == QString::number(bytes.size()),
                    "a row shows something else than its file says");
        }
    }
}

} // namespace quellbox::bench

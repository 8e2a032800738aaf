#include "benchmarks/ProgramWindow.h"

#include "benchmarks/Bench.h"
#include "mail/HeaderFields.h"
#include "tests/support/FileNames.h"

#include <QCoreApplication>
#include <QSet>

namespace quellbox::bench {

ProgramWindow::ProgramWindow(FileSystem& files, const QString& archive)
    : files_(files), program_(MakeProgramInfo(archive + QStringLiteral("quellbox"))) {
    pool_.setMaxThreadCount(72); // as the program does
    store_.SetValue(QStringLiteral("Settings"), QStringLiteral("ArchiveDir"), archive);
    store_.SetValue(QStringLiteral("Settings"), QStringLiteral("PickupDir"), archive);
    form_ = std::make_unique<frmMain>(MainPorts{files, store_, clock_, shell_, pool_, volumes_, program_});
    Require(form_->State().ArchiveDir == archive, "the window has another archive");
    StopTimer();
    form_->show();
    QCoreApplication::processEvents();
}

void ProgramWindow::StopTimer() {
    form_->findChild<QTimer*>(QStringLiteral("tmrRefresh"))->stop();
}

void ProgramWindow::Refresh() {
    form_->mnuAcRefresh_Click();
    StopTimer();
}

void ProgramWindow::RefreshIncrementally() {
    form_->RefreshArchive(true);
    StopTimer();
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
        Require(missing.remove(shown.key), "a row belongs to no file, or a file has two rows");
        Require(row == 0 || model.Row(row - 1).cells[ColumnDate] >= shown.cells[ColumnDate], "the list is not sorted");
        if (row % looksAt == 0) {
            const QByteArray bytes = ReadWhole(files_, archive + shown.key);
            const HeaderFields fields = ParseHeaderFields(bytes);
            Require(shown.cells[ColumnTo] == fields.recipient && shown.cells[ColumnFrom] == fields.sender &&
                        shown.cells[ColumnSubject] == (fields.errorCode == 0 ? fields.subject : fields.errorText) &&
                        shown.cells[ColumnSize] == QString::number(bytes.size()),
                    "a row shows something else than its file says");
        }
    }
}

} // namespace quellbox::bench

#include "app/ExportDesk.h"

#include "app/ExportFile.h"
#include "app/WindowJobs.h"
#include "archive/RefreshTimer.h"
#include "mail/DisplayText.h"
#include "messages/ListTable.h"

#include <QDir>

#include <memory>

namespace quellbox {

namespace {

/// The same rows until nobody is interested any more. What is thrown then ends the writing: there is no file, and one
/// that was there before stays.
NextRow WhileWanted(NextRow next, const std::weak_ptr<const bool>& interest) {
    return [next = std::move(next), interest](QStringList& cells) {
        if (interest.expired()) {
            throw RuntimeError(QStringLiteral("stopped"));
        }
        return next(cells);
    };
}

WindowJobs::Error Try(const std::function<void()>& write) {
    try {
        write();
        return std::nullopt;
    } catch (const RuntimeError& error) {
        return error.Text();
    }
}

} // namespace

ExportDesk::ExportDesk(const WindowParts& parts) : parts_(parts) {}

void ExportDesk::mnuFileExport_Click() {
    const QString file = AskFile();
    if (!file.isEmpty() && parts_.jobs.EndRefresh()) {
        const int count = parts_.model.Count();
        Write(file, ListTableColumns(parts_.model.RatesByNumber()), CellsOf(CopyOfRows(parts_.model)),
              [this, file, count] { TellWritten(file, count); });
    }
}

QString ExportDesk::AskFile() {
    const RefreshTimer::Hold rest(parts_.timer);
    const QString day = parts_.ports.clock.Now().date().toString(Qt::ISODate);
    return AskExportFile(&parts_.window, tr("Messages of %1").arg(day));
}

void ExportDesk::Write(const QString& file, const TableColumns& columns, const NextRow& rows,
                       const std::function<void()>& written) {
    // The end of the job takes the interest away, also where the user has stopped it or closes the window.
    const auto interest = std::make_shared<const bool>(true);
    const auto write = [file, columns, next = WhileWanted(rows, interest)] {
        WriteTable(file, columns, next, ExistingFile::Replace); // the user was asked
    };
    WriteBeside(write, [written, interest] { written(); });
}

void ExportDesk::Write(const QString& file, const std::function<QByteArray()>& make,
                       const std::function<void()>& written) {
    const auto write = [file, make] {
        WholeFile whole(file, ExistingFile::Replace); // the user was asked
        whole.Write(make());
        whole.Commit();
    };
    WriteBeside(write, written);
}

void ExportDesk::WriteBeside(const std::function<void()>& write, const std::function<void()>& written) {
    const auto tryTo = [write] { return Try(write); };
    parts_.jobs.Call(WindowJobs::Effect::Changes, tryTo, [this, written](const WindowJobs::Error& error) {
        if (error) {
            parts_.errors.Show(*error);
        } else {
            written();
        }
    });
}

void ExportDesk::TellWritten(const QString& file, int count) {
    const QString name = CleanseForDisplay(QDir::toNativeSeparators(file));
    parts_.panels.SetInfo(count == 1 ? tr("One message written to %1").arg(name)
                                     : tr("%n messages written to %1", nullptr, count).arg(name));
}

} // namespace quellbox

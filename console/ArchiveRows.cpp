#include "console/ArchiveRows.h"

#include "archive/ArchiveScan.h"
#include "console/Aside.h"
#include "console/Progress.h"
#include "platform/EntryNames.h"
#include "settings/ChosenProfile.h"

#include <QCoreApplication>

#include <exception>

namespace quellbox {

namespace {

/// One message that was named.
struct Named {
    std::optional<MessageRow> row;
    std::optional<FileFailure> failure;
};

std::shared_ptr<const FolderReader> OpenArchive(Session& session) {
    RequireArchive(session);
    try {
        return CallAside(session, [&files = session.Ports().files, archive = session.Archive()] {
            return std::shared_ptr<const FolderReader>(files.ReadFolder(archive));
        });
    } catch (const FileError& error) {
        throw UnreachableError(UnreadableArchive(error.Text()));
    }
}

Named ReadNamed(const FolderReader& folder, const Folder& archive, const QString& name, const ServerProfile& profile) {
    try {
        const std::optional<FileStatus> status = folder.Status(name);
        if (!status) {
            return {std::nullopt,
                    FileFailure(archive.PathOf(name),
                                QCoreApplication::translate("quellbox", "There is no such message."))};
        }
        return {ReadMessageRow(folder, {name, *status}, false, profile).row, std::nullopt};
    } catch (const FileError& error) {
        return {std::nullopt, FileFailure(error)};
    }
}

} // namespace

void ForEachRow(Session& session, const MessageChoice& choice, const std::function<bool(const ReadRow& row)>& take) {
    session.RequireArchiveSetUp();
    ArchiveScan scan(session.Ports().files, session.Ports().pool);
    ScanRequest request{session.Archive(), &ChosenProfile(session.State())};
    request.wants = [choice, today = session.Ports().clock.Now().date()](const FileEntry& file) {
        return choice.WantsFile(file, today);
    };
    ScanResult result;
    Progress progress;
    std::exception_ptr failure; // which must not pass through the event loop
    qint64 count = 0;
    const auto takeRow = [&](const ReadRow& row) {
        progress.Show(++count);
        try {
            if (choice.WantsRow(row.row) && !take(row)) {
                scan.Cancel();
            }
        } catch (...) {
            failure = std::current_exception();
            scan.Cancel();
        }
    };
    session.Await(
        [&](const std::function<void()>& done) {
            QObject::connect(&scan, &ArchiveScan::Listed, &session,
                             [&progress](qint64 files) { progress.SetMaximum(files); });
            QObject::connect(&scan, &ArchiveScan::Ended, &session, [&result, done](const ScanResult& ended) {
                result = ended;
                done();
            });
            scan.Start(request, takeRow);
        },
        [&scan] { scan.Cancel(); });
    if (failure) {
        std::rethrow_exception(failure);
    }
    if (!result.reason.isEmpty()) {
        throw UnreachableError(result.reason);
    }
}

std::vector<MessageRow> RowsOf(Session& session, const MessageChoice& choice) {
    std::vector<MessageRow> rows;
    ForEachRow(session, choice, [&rows](const ReadRow& row) {
        rows.push_back(row.row);
        return true;
    });
    return rows;
}

NamedRows RowsOf(Session& session, const QStringList& names) {
    for (const QString& name : names) {
        RequireName(session, name);
    }
    const std::shared_ptr<const FolderReader> folder = OpenArchive(session);
    NamedRows found;
    std::optional<OrderedWork<Named>> reading;
    session.Await(
        [&](const std::function<void()>& done) {
            reading.emplace(
                session.Ports().pool, static_cast<size_t>(names.size()),
                [folder, names, archive = session.Archive(), &profile = ChosenProfile(session.State())](size_t item) {
                    return ReadNamed(*folder, archive, names[static_cast<qsizetype>(item)], profile);
                },
                [&found](size_t, Named named) {
                    if (named.row) {
                        found.rows.push_back(std::move(*named.row));
                    } else {
                        found.failures.push_back(std::move(*named.failure));
                    }
                },
                [done](SeriesEnd) { done(); });
            reading->Start();
        },
        [&reading] { reading->GiveUp(); });
    return found;
}

void RequireArchive(Session& session) {
    session.RequireArchiveSetUp();
    const bool exists = CallAside(session, [&files = session.Ports().files, archive = session.Archive()] {
        return files.FolderExists(archive);
    });
    FolderState state;
    state.exists = exists;
    if (const std::optional<ListingRefusal> refusal = ListingCheck().Refusal(session.Archive(), state)) {
        throw UnreachableError(refusal->reason);
    }
}

void RequireName(Session& session, const QString& name) {
    const Folder archive = session.Archive();
    for (const QString& folder : ChosenProfile(session.State()).places.folders) {
        if (name.startsWith(folder + SeparatorOf(archive)) && IsFileName(name.mid(folder.size() + 1))) {
            return;
        }
    }
    if (!ChosenProfile(session.State()).places.folders.isEmpty() || !IsFileName(name)) {
        throw UsageError(QCoreApplication::translate("quellbox", "\"%1\" is no name of a message.").arg(name));
    }
}

} // namespace quellbox

#include "archive/ArchiveScan.h"
#include "console/ArchiveRows.h"
#include "console/Command.h"
#include "console/ListWriter.h"
#include "settings/ChosenProfile.h"

#include <QCoreApplication>
#include <QHash>
#include <QSet>
#include <QTimer>

#include <algorithm>
#include <chrono>

namespace quellbox {

namespace {

constexpr int longestPause = 86'400;

/// Files that are known already; their names would take many times that memory.
using KnownFiles = QSet<size_t>;

size_t KnownAs(const QString& name) {
    return qHash(name, size_t{0});
}

/// What the archive holds now. Throws UnreachableError.
std::shared_ptr<const CompactListing> ListFiles(Session& session) {
    session.RequireArchiveSetUp();
    ArchiveScan scan(session.Ports().files, session.Ports().pool);
    ScanRequest request{session.Archive(), &ChosenProfile(session.State())};
    request.reads = false;
    ScanResult result;
    session.Await(
        [&](const std::function<void()>& done) {
            QObject::connect(&scan, &ArchiveScan::Ended, &session, [&result, done](const ScanResult& ended) {
                result = ended;
                done();
            });
            scan.Start(request);
        },
        [&scan] { scan.Cancel(); });
    if (!result.reason.isEmpty()) {
        throw UnreachableError(result.reason);
    }
    return result.outcome == ScanOutcome::Completed ? scan.Files() : nullptr;
}

void Pause(Session& session, int seconds) {
    QTimer timer;
    timer.setSingleShot(true);
    session.Await([&](const std::function<void()>& done) {
        QObject::connect(&timer, &QTimer::timeout, &timer, done);
        timer.start(std::chrono::seconds(seconds));
    });
}

/// Follows an archive.
class Watch {
public:
    Watch(Session& session, MessageChoice choice, ListWriter& writer)
        : session_(session), choice_(std::move(choice)), writer_(writer) {}

    /// Takes what is there for known. Throws UnreachableError.
    void Begin() { Take(ListFiles(session_)); }

    /// Prints what has come since. What keeps the archive from being listed is told once.
    void Look() {
        try {
            PrintNew(ListFiles(session_));
            isTold_ = false;
        } catch (const UnreachableError& error) {
            if (!std::exchange(isTold_, true)) {
                session_.Tell(error.Text());
            }
        }
    }

private:
    void Take(const std::shared_ptr<const CompactListing>& files) {
        if (!files) {
            return;
        }
        known_.clear();
        for (size_t file = 0; file < files->Count(); ++file) {
            known_.insert(KnownAs(files->NameAt(file)));
        }
    }

    void PrintNew(const std::shared_ptr<const CompactListing>& files) {
        QSet<QString> added;
        for (size_t file = 0; files && file < files->Count(); ++file) {
            const QString name = files->NameAt(file);
            if (!known_.contains(KnownAs(name))) {
                added.insert(name);
            }
        }
        Take(files);
        if (added.isEmpty()) {
            return;
        }
        MessageChoice choice;
        choice.alsoWants = [added](const FileEntry& file) { return added.contains(file.name); };
        ForEachRow(session_, choice, [this](const ReadRow& row) {
            Print(row);
            return !session_.HasOutputEnded();
        });
        writer_.Flush();
    }

    // A message that is still being written is new again at the next look, until its file stays as it is.
    void Print(const ReadRow& row) {
        const QString name = row.row.Key();
        const auto before = unread_.constFind(name);
        const bool isSame = before != unread_.constEnd() && before.value() == row.status;
        if (!row.loaded && !isSame) {
            unread_.insert(name, row.status);
            known_.remove(KnownAs(name));
            return;
        }
        unread_.remove(name);
        const FileEntry file{name, row.status};
        if (choice_.WantsFile(file, session_.Ports().clock.Now().date()) && choice_.WantsRow(row.row)) {
            writer_.Add(row.row);
        }
    }

    Session& session_;
    const MessageChoice choice_;
    ListWriter& writer_;
    KnownFiles known_;
    QHash<QString, FileStatus> unread_;
    bool isTold_ = false;
};

} // namespace

void AddWatchOptions(QCommandLineParser& parser) {
    AddChoiceOptions(parser);
    parser.addOption({QStringLiteral("interval"),
                      QCoreApplication::translate("quellbox", "Look every so many seconds; without it as often as the "
                                                              "settings say."),
                      QStringLiteral("SECONDS")});
    AddListFormOptions(parser);
}

ExitCode RunWatch(Session& session, const QCommandLineParser& parser) {
    RequireArguments(parser, 0, 0);
    const QString option = QStringLiteral("interval");
    const int pause = parser.isSet(option) ? ReadNumber(parser, option, 1, longestPause)
                                           : std::clamp<int>(session.State().RefreshInterval, 1, longestPause);
    ListWriter writer(session, parser);
    Watch watch(session, ReadChoice(session, parser), writer);
    watch.Begin();
    while (!session.IsInterrupted() && !session.HasOutputEnded()) {
        Pause(session, pause);
        watch.Look();
    }
    return ExitCode::Done;
}

} // namespace quellbox

// What deleting every message of a full archive costs when the messages are kept, and what putting them back costs,
// against calls that do nothing but rename the same files, and against deleting them for good.
#include "benchmarks/Bench.h"
#include "messages/DisposalTask.h"
#include "messages/PutBackTask.h"
#include "platform/LocalFileSystem.h"
#include "tests/support/FileNames.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QEventLoop>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>
#include <fcntl.h>
#include <numeric>
#include <utility>

using namespace quellbox;
using namespace quellbox::bench;

namespace {

constexpr int fileCount = 32000;
constexpr int rounds = 3;

QString Name(int number) {
    return QStringLiteral("m%1.EML").arg(number);
}

void Fill(const Folder& folder) {
    const QByteArray bytes = "Subject: old\r\n\r\n" + QByteArray(2032, 'x');
    for (int number = 0; number < fileCount; ++number) {
        QFile file(folder.PathOf(Name(number)));
        Require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(), "a message cannot be written");
    }
}

/// Renames the messages into a folder, one after the other and without replacing any.
double TimeBareRename(const Folder& from, const Folder& to) {
    std::vector<std::pair<QByteArray, QByteArray>> paths;
    for (int number = 0; number < fileCount; ++number) {
        paths.emplace_back(QFile::encodeName(from.PathOf(Name(number))), QFile::encodeName(to.PathOf(Name(number))));
    }
    return Time([&paths] {
        for (const auto& [source, target] : paths) {
            const int result =
                ::renameat2(AT_FDCWD, source.constData(), AT_FDCWD, target.constData(), RENAME_NOREPLACE);
            Require(result == 0, "a file cannot be renamed");
        }
    });
}

double TimeDelete(FileSystem& files, const Folder& archive, const std::shared_ptr<KeptFolder>& kept) {
    ThreadWorkPool pool;
    MessageListModel model;
    std::vector<MessageRow> rows;
    for (int number = 0; number < fileCount; ++number) {
        rows.emplace_back(Name(number), 0, 0, MessageTexts());
    }
    model.Append(std::move(rows));
    std::vector<int> all(fileCount);
    std::iota(all.begin(), all.end(), 0);
    DisposalTask task(files, pool, model);
    QEventLoop loop;
    DisposalResult result;
    QObject::connect(&task, &DisposalTask::Ended, [&](const DisposalResult& ended) {
        result = ended;
        loop.quit();
    });
    const double seconds = Time([&] {
        task.Start(Action::remove, {archive, archive}, all, kept);
        loop.exec();
    });
    Require(result.rowsGone == fileCount && result.failures.empty(), "not every message was deleted");
    return seconds;
}

double TimePutBack(FileSystem& files, const Folder& archive, const KeptFolder& kept) {
    ThreadWorkPool pool;
    PutBackTask task(files, pool);
    std::vector<PutBack> items;
    for (int number = 0; number < fileCount; ++number) {
        items.push_back({kept.PathOf(Name(number)), archive.PathOf(Name(number))});
    }
    QEventLoop loop;
    int done = 0;
    QObject::connect(&task, &PutBackTask::Ended, [&](const PutBackResult& result) {
        for (const PutBackFate& fate : result.fates) {
            done += fate.isDone ? 1 : 0;
        }
        loop.quit();
    });
    const double seconds = Time([&] {
        task.Start(std::move(items), {kept.Path()});
        loop.exec();
    });
    Require(done == fileCount, "not every message was put back");
    return seconds;
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QTemporaryDir place(FolderArgument(argc, argv, 1) + QStringLiteral("keep-XXXXXX"));
    const Folder archive(place.path());
    Best bare;
    Best gone;
    Best kept;
    Best back;
    Best backLater;
    for (int round = 0; round < rounds; ++round) {
        const std::unique_ptr<FileSystem> files = MakeLocalFileSystem();
        Fill(archive);
        const Folder other(archive.PathOf(QStringLiteral("other")));
        files->MakeFolder(other);
        bare.Add(TimeBareRename(archive, other));
        bare.Add(TimeBareRename(other, archive));
        Require(FileNames(*files, archive).size() == fileCount, "the archive is not full"); // as a refresh lists it
        const auto folder = std::make_shared<KeptFolder>(*files, archive, 30, QDateTime::currentDateTime());
        kept.Add(TimeDelete(*files, archive, folder));
        Require(FileNames(*files, folder->Path()).size() == fileCount, "not every message is kept");
        back.Add(TimePutBack(*files, archive, *folder));
        const auto again = std::make_shared<KeptFolder>(*files, archive, 30, QDateTime::currentDateTime());
        Require(FileNames(*files, archive).size() == fileCount, "the archive is not full again");
        kept.Add(TimeDelete(*files, archive, again));
        const std::unique_ptr<FileSystem> later = MakeLocalFileSystem(); // as after a new start of the program
        backLater.Add(TimePutBack(*later, archive, *again));
        Require(FileNames(*files, archive).size() == fileCount, "the archive is not full again");
        gone.Add(TimeDelete(*files, archive, nullptr));
        Require(FileNames(*files, archive).isEmpty(), "messages are left");
    }
    Report("deleting, messages", fileCount, "");
    Report("bare rename", bare.seconds * 1e3, "ms");
    Report("deleting for good", gone.seconds * 1e3, "ms");
    Report("deleting what is kept", kept.seconds * 1e3, "ms");
    Report("deleting what is kept / bare rename", kept.seconds / bare.seconds, "times", "<= 1.5");
    Report("putting back / bare rename", back.seconds / bare.seconds, "times", "<= 1.5");
    Report("putting back / deleting what is kept", back.seconds / kept.seconds, "times", "<= 1");
    Report("the same after a new start", backLater.seconds / kept.seconds, "times", "<= 1");
    Report("deleting what is kept / deleting for good", kept.seconds / gone.seconds, "times");
    return 0;
}

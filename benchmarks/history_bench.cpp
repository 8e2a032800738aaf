// What the history costs: writing down an action on a full archive, and looking up 100,000 entries.
#include "benchmarks/Bench.h"
#include "benchmarks/TurnWatch.h"
#include "history/frmHistory.h"
#include "messages/DisposalTask.h"
#include "platform/Clock.h"
#include "platform/LocalFileSystem.h"

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QLineEdit>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>

#include <numeric>

using namespace quellbox;
using namespace quellbox::bench;

namespace {

constexpr int entries = 100'000;
constexpr int ofOneAction = 1000;
constexpr int fullArchive = 32'000;

HandledMessage Message(int number) {
    const QString text = QString::number(number);
    MessageTexts texts;
    texts.to = QStringLiteral("office%1@example.com").arg(number % 50);
    texts.from = QStringLiteral("Sender Number %1 <sender%1@example.org>").arg(text);
    texts.subject = QStringLiteral("What nobody wants to miss, number %1").arg(text);
    texts.scl = QStringLiteral("7 53.21");
    texts.tag = QStringLiteral("bounce-%1@example.org").arg(text);
    return {
        MessageRow(QStringLiteral("{8A1C2C3E-%1}.EML").arg(number, 8, 10, QLatin1Char('0')), 2000 + number, 0, texts),
        std::nullopt};
}

void Act(Journal& journal, int first, int count) {
    QStringList names;
    std::vector<HandledMessage> messages;
    for (int number = first; number < first + count; ++number) {
        messages.push_back(Message(number));
        names.append(messages.back().message.Key());
    }
    const auto record = journal.Begin({HistoryAction::Delete, QStringLiteral("/archive/")});
    record->Announce(names);
    record->AwaitAnnounced();
    for (HandledMessage& message : messages) {
        record->Take(std::move(message));
    }
}

/// Runs events until the window shows what its filter lets through.
void WaitForLines(const frmHistory& window, int count) {
    while (window.Model().IsAsking() || window.Model().rowCount() != count || window.Model().Line(0) == nullptr) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

double TimeOpening(Journal& journal, double& gapMs) {
    const TurnWatch watch;
    const double seconds = Time([&journal] {
        frmHistory window(journal, nullptr);
        window.show();
        WaitForLines(window, entries);
    });
    gapMs = watch.LongestMs();
    return seconds;
}

double ScrollGapMs(frmHistory& window) {
    auto& list = *window.findChild<QTreeView*>(QStringLiteral("lvwHistory"));
    QScrollBar& bar = *list.verticalScrollBar();
    const TurnWatch watch;
    constexpr int steps = 300;
    for (int step = 0; step <= steps; ++step) {
        bar.setValue(static_cast<int>(static_cast<qint64>(bar.maximum()) * step / steps));
        const int turns = watch.Turns();
        while (watch.Turns() < turns + 2) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }
    return watch.LongestMs();
}

double NarrowGapMs(frmHistory& window) {
    auto& find = *window.findChild<QLineEdit*>(QStringLiteral("txtFind"));
    const TurnWatch watch;
    for (const char character : {'n', 'u', 'm', 'b', 'e', 'r', ' ', '9', '9', '9', '9', '9'}) {
        QTest::keyClick(&find, character);
        const int turns = watch.Turns();
        while (watch.Turns() < turns + 5) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }
    WaitForLines(window, 1);
    return watch.LongestMs();
}

/// Waits until everything is written, and returns how many entries there are.
size_t CountWritten(Journal& journal) {
    QEventLoop written;
    size_t entriesThere = 0;
    journal.AskFor(
        Journal::Question::Reads, &written, [](JournalDatabase& database) { return database.Find({}).size(); },
        [&](size_t count) {
            entriesThere = count;
            written.quit();
        });
    written.exec();
    return entriesThere;
}

/// Writes files with the names of messages, and lists them.
void Fill(const QString& folder, MessageListModel& model) {
    std::vector<MessageRow> rows;
    for (int number = 0; number < fullArchive; ++number) {
        HandledMessage message = Message(number);
        QFile file(folder + message.message.Key());
        Require(file.open(QIODevice::WriteOnly) && file.write("Subject: x\n\nx\n") > 0, "a message cannot be written");
        rows.push_back(std::move(message.message));
    }
    model.Clear();
    model.Append(std::move(rows));
}

/// The time from the beginning to the end of the action that the user sees. Afterwards everything is written.
double TimeDeleting(FileSystem& files, Journal* journal, const QString& archive) {
    ThreadWorkPool pool;
    MessageListModel model;
    Fill(archive, model);
    std::vector<int> rows(fullArchive);
    std::iota(rows.begin(), rows.end(), 0);
    DisposalTask task(files, pool, model);
    QEventLoop ended;
    QObject::connect(&task, &DisposalTask::Ended, &ended, &QEventLoop::quit);
    const double seconds = Time([&] {
        task.Start(Action::remove, {archive, archive}, rows, nullptr,
                   journal == nullptr ? nullptr : journal->Begin({HistoryAction::Delete, archive}));
        ended.exec();
    });
    Require(QDir(archive).isEmpty(), "a message was not deleted");
    return seconds;
}

void MeasureDeleting() {
    const QTemporaryDir folder;
    const QString archive = folder.filePath(QStringLiteral("archive/"));
    QDir().mkpath(archive);
    const std::unique_ptr<Clock> clock = MakeClock();
    const std::unique_ptr<FileSystem> files = MakeLocalFileSystem();
    Best with;
    Best without;
    for (int round = 0; round < 20; ++round) {
        without.Add(TimeDeleting(*files, nullptr, archive));
        ThreadWorkPool pool;
        {
            Journal journal(pool, *clock, {folder.filePath(QStringLiteral("history.sqlite"))});
            CountWritten(journal); // the program opens it when it starts, and not with the first action
            with.Add(TimeDeleting(*files, &journal, archive));
        }
        pool.WaitForDone();
    }
    Report("deleting 32,000, without a history", without.seconds * 1e3, "ms");
    Report("deleting 32,000, with a history", with.seconds * 1e3, "ms");
    Report("with / without", with.seconds / without.seconds, "", "<= 1.1");
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    MeasureDeleting();
    const QTemporaryDir folder;
    const std::unique_ptr<Clock> clock = MakeClock();
    ThreadWorkPool pool;
    {
        Journal journal(pool, *clock, {folder.filePath(QStringLiteral("history.sqlite"))});
        const double seconds = Time([&] {
            for (int first = 0; first < entries; first += ofOneAction) {
                Act(journal, first, ofOneAction);
            }
            Require(CountWritten(journal) == entries, "entries are missing");
        });
        Report("writing down 100,000 messages", seconds * 1e3, "ms");
    }
    pool.WaitForDone();
    Journal journal(pool, *clock, {folder.filePath(QStringLiteral("history.sqlite"))});
    Best opening;
    Best openingGap;
    for (int round = 0; round < 5; ++round) {
        double gapMs = 0;
        opening.Add(TimeOpening(journal, gapMs));
        openingGap.Add(gapMs / 1e3);
    }
    Report("opening 100,000 entries", opening.seconds * 1e3, "ms", "< 100");
    Report("longest gap between turns, opening", openingGap.seconds * 1e3, "ms", "< 100");
    Best scrolling;
    Best narrowing;
    for (int round = 0; round < 3; ++round) {
        frmHistory window(journal, nullptr);
        window.show();
        WaitForLines(window, entries);
        scrolling.Add(ScrollGapMs(window) / 1e3);
        narrowing.Add(NarrowGapMs(window) / 1e3);
    }
    Report("longest gap between turns, scrolling", scrolling.seconds * 1e3, "ms", "< 50");
    Report("longest gap between turns, narrowing", narrowing.seconds * 1e3, "ms", "< 50");
    return 0;
}

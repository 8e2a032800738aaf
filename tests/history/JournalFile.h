#pragma once

#include "history/Journal.h"
#include "tests/support/FixedClock.h"
#include "tests/support/RunUntil.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <optional>

namespace quellbox {

inline const QString theArchive = QStringLiteral("/archive/");
inline const QString thePickup = QStringLiteral("/pickup/");

inline HandledMessage Handled(const QString& file, const QString& subject = {}) {
    MessageTexts texts;
    texts.subject = subject;
    texts.tag = QStringLiteral("sender@example.com");
    return {MessageRow(file, 1000, 0, texts), std::nullopt};
}

inline HandledMessage FailedMessage(const QString& file, const QString& reason) {
    HandledMessage handled = Handled(file);
    handled.failure = FileFailure(theArchive + file, reason);
    return handled;
}

/// A journal in a real file of a folder of its own.
class JournalTest : public testing::Test {
protected:
    QString File() const { return place_.filePath(QStringLiteral("quellbox/history.sqlite")); }

    void Open() {
        journal_.emplace(*pool_, clock_, Journal::Place{File(), QStringLiteral("Jo"), QStringLiteral("pc")});
        QObject::connect(&*journal_, &Journal::Troubled, [this](const QString& text) { told_.append(text); });
    }

    /// Ends the journal as the end of the program does.
    void Close() {
        journal_.reset();
        pool_->WaitForDone();
    }

    template <class Ask>
    auto Answer(Ask ask) {
        std::optional<std::invoke_result_t<Ask, JournalDatabase&>> answer;
        journal_->AskFor(Journal::Question::Reads, &*journal_, ask,
                         [&answer](auto given) { answer = std::move(given); });
        EXPECT_TRUE(RunUntil([&answer] { return answer.has_value(); }));
        return answer.value_or(std::invoke_result_t<Ask, JournalDatabase&>());
    }

    std::vector<HistoryLine> Lines(const HistoryFilter& filter = {}) {
        return Answer([filter](JournalDatabase& database) { return database.Lines(database.Find(filter)); });
    }

    QStringList Files(const HistoryFilter& filter = {}) {
        QStringList files;
        for (const HistoryLine& line : Lines(filter)) {
            files.append(line.entry.file);
        }
        return files;
    }

    /// An action that is written down from its beginning to its end.
    void Act(HistoryAction action, const QStringList& files, const QString& kept = {}) {
        const auto record = journal_->Begin({action, theArchive, thePickup, kept});
        record->Announce(files);
        record->AwaitAnnounced();
        for (const QString& file : files) {
            record->Take(Handled(file));
        }
    }

    QTemporaryDir folder_;
    QDir place_{folder_.path()};
    FixedClock clock_{QDateTime(QDate(2026, 11, 22), QTime(12, 0))};
    std::unique_ptr<ThreadWorkPool> pool_ = std::make_unique<ThreadWorkPool>();
    std::optional<Journal> journal_;
    QStringList told_;
};

} // namespace quellbox

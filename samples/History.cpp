#include "samples/History.h"

#include "archive/MessageHeaders.h"
#include "history/JournalDatabase.h"
#include "mail/HeaderFields.h"
#include "samples/Archive.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include <array>

namespace quellbox::samples {

namespace {

struct SampleAction {
    HistoryAction action;
    int messages;
};

// A working day: a few letters are found, the rest goes.
constexpr std::array day{
    SampleAction{HistoryAction::AutoTolerate, 2}, SampleAction{HistoryAction::Unblock, 1},
    SampleAction{HistoryAction::Delete, 14},      SampleAction{HistoryAction::Tolerate, 1},
    SampleAction{HistoryAction::Delete, 9},       SampleAction{HistoryAction::Unblock, 2},
};

HistoryEntry EntryOf(const SampleFile& sample) {
    MessageTexts texts;
    FillTexts(texts, ParseHeaderFields(sample.bytes));
    HistoryEntry entry;
    entry.file = sample.name;
    entry.sender = texts.tag;
    entry.from = texts.from;
    entry.to = texts.to;
    entry.subject = texts.subject;
    entry.rating = texts.scl;
    entry.size = sample.bytes.size();
    return entry;
}

} // namespace

void WriteSampleHistory(const HistoryPlan& plan) {
    QDir().mkpath(QFileInfo(plan.file).absolutePath());
    JournalDatabase database(plan.file);
    database.BeginTransaction();
    qint64 message = plan.first;
    const QDateTime now = QDateTime::currentDateTime();
    for (qint64 ago = plan.days; ago > 0; --ago) {
        QDateTime time(now.date().addDays(-ago), QTime(8, 30));
        for (const SampleAction& action : day) {
            time = time.addSecs(47 * 60);
            const HistoryActionFacts facts{action.action, time.toMSecsSinceEpoch(), QStringLiteral("postmaster"),
                                           QStringLiteral("mx1"), plan.archive};
            const qint64 number = database.AddAction(facts, {});
            for (int count = 0; count < action.messages; ++count) {
                database.AddEntry(number, EntryOf(MakeSampleFile(plan.seed, message++, plan.days)));
            }
            database.EndAction(number);
        }
    }
    database.Commit();
}

} // namespace quellbox::samples

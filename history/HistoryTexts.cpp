#include "history/HistoryTexts.h"

#include "delivery/ReleaseWay.h"
#include "mail/DisplayText.h"
#include "messages/FormatSize.h"
#include "messages/FormatTime.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>

namespace quellbox {

namespace {

// Without an envelope sender, as in bulk mode, the one of the header says more than nothing.
QString SenderOf(const HistoryLine& line) {
    const HistoryEntry& entry = line.entry;
    if (!entry.sender.isEmpty() || !entry.from.isEmpty()) {
        return entry.sender.isEmpty() ? entry.from : entry.sender;
    }
    return IsOfMessage(line.facts.action) ? QString() : entry.detail;
}

} // namespace

QString Tr(const char* text) {
    return QCoreApplication::translate("quellbox", text);
}

bool IsOfMessage(HistoryAction action) {
    return action != HistoryAction::WhitelistAdd && action != HistoryAction::WhitelistRemove;
}

QString NameOf(HistoryAction action) {
    switch (action) {
    case HistoryAction::Unblock:
        return Tr(QT_TRANSLATE_NOOP("quellbox", "Unblock"));
    case HistoryAction::Delete:
        return Tr(QT_TRANSLATE_NOOP("quellbox", "Delete"));
    case HistoryAction::Tolerate:
        return Tr(QT_TRANSLATE_NOOP("quellbox", "Tolerate"));
    case HistoryAction::AutoTolerate:
        return Tr(QT_TRANSLATE_NOOP("quellbox", "Automatic toleration"));
    case HistoryAction::Cleanse:
        return Tr(QT_TRANSLATE_NOOP("quellbox", "Cleansing"));
    case HistoryAction::WhitelistAdd:
        return Tr(QT_TRANSLATE_NOOP("quellbox", "Added to whitelist"));
    case HistoryAction::WhitelistRemove:
        return Tr(QT_TRANSLATE_NOOP("quellbox", "Removed from whitelist"));
    case HistoryAction::PickupTest:
        return Tr(QT_TRANSLATE_NOOP("quellbox", "Pickup test"));
    case HistoryAction::Undo:
        return Tr(QT_TRANSLATE_NOOP("quellbox", "Undo"));
    }
    return {}; // of a later version
}

QString NameOf(HistoryResult result) {
    switch (result) {
    case HistoryResult::Done:
        return Tr(QT_TRANSLATE_NOOP("quellbox", "Done"));
    case HistoryResult::Failed:
        return Tr(QT_TRANSLATE_NOOP("quellbox", "Failed"));
    case HistoryResult::Undone:
        return Tr(QT_TRANSLATE_NOOP("quellbox", "Undone"));
    }
    return {};
}

QString KeyOf(HistoryAction action) {
    switch (action) {
    case HistoryAction::Unblock:
        return QStringLiteral("unblock");
    case HistoryAction::Delete:
        return QStringLiteral("delete");
    case HistoryAction::Tolerate:
        return QStringLiteral("tolerate");
    case HistoryAction::AutoTolerate:
        return QStringLiteral("deliver-tolerated");
    case HistoryAction::Cleanse:
        return QStringLiteral("cleanse");
    case HistoryAction::WhitelistAdd:
        return QStringLiteral("whitelist-add");
    case HistoryAction::WhitelistRemove:
        return QStringLiteral("whitelist-remove");
    case HistoryAction::PickupTest:
        return QStringLiteral("pickup-test");
    case HistoryAction::Undo:
        return QStringLiteral("undo");
    }
    return {}; // of a later version
}

QString KeyOf(HistoryResult result) {
    switch (result) {
    case HistoryResult::Done:
        return QStringLiteral("done");
    case HistoryResult::Failed:
        return QStringLiteral("failed");
    case HistoryResult::Undone:
        return QStringLiteral("undone");
    }
    return {};
}

const std::vector<HistoryAction>& HistoryActions() {
    static const std::vector<HistoryAction> all{
        HistoryAction::Unblock,         HistoryAction::Delete,     HistoryAction::Tolerate,
        HistoryAction::AutoTolerate,    HistoryAction::Cleanse,    HistoryAction::WhitelistAdd,
        HistoryAction::WhitelistRemove, HistoryAction::PickupTest, HistoryAction::Undo,
    };
    return all;
}

const std::vector<HistoryResult>& HistoryResults() {
    static const std::vector<HistoryResult> all{HistoryResult::Done, HistoryResult::Failed, HistoryResult::Undone};
    return all;
}

bool CanBeUndone(const HistoryLine& line) {
    if (line.entry.result != HistoryResult::Done || line.entry.isFinal) {
        return false;
    }
    switch (line.facts.action) {
    case HistoryAction::Unblock:
    case HistoryAction::Tolerate:
    case HistoryAction::AutoTolerate:
        return true;
    case HistoryAction::Delete:
    case HistoryAction::Cleanse:
        return !line.facts.kept.isEmpty();
    default:
        return false;
    }
}

QString HeaderOf(HistoryColumn column) {
    switch (column) {
    case HistoryTime:
        return Tr(QT_TRANSLATE_NOOP("quellbox", "Time"));
    case HistoryActionName:
        return Tr(QT_TRANSLATE_NOOP("quellbox", "Action"));
    case HistorySender:
        return Tr(QT_TRANSLATE_NOOP("quellbox", "Sender"));
    case HistoryTo:
        return Tr(QT_TRANSLATE_NOOP("quellbox", "To"));
    case HistorySubjectText:
        return Tr(QT_TRANSLATE_NOOP("quellbox", "Subject"));
    case HistoryScl:
        return Tr(QT_TRANSLATE_NOOP("quellbox", "SCL%"));
    case HistoryResultName:
        return Tr(QT_TRANSLATE_NOOP("quellbox", "Result"));
    case HistoryColumnCount:
        break;
    }
    return {};
}

QString TimeOf(const HistoryLine& line) {
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(line.facts.timeMs);
    QString text;
    AppendTime(line.facts.timeMs / 1000 + time.offsetFromUtc(), text);
    return text;
}

QString CellOf(const HistoryLine& line, int column) {
    const HistoryEntry& entry = line.entry;
    switch (column) {
    case HistoryTime:
        return TimeOf(line);
    case HistoryActionName:
        return NameOf(line.facts.action);
    case HistorySender:
        return CleanseForDisplay(ShownText(SenderOf(line)));
    case HistoryTo:
        return CleanseForDisplay(ShownText(entry.to));
    case HistorySubjectText:
        return CleanseForDisplay(ShownText(entry.subject.isEmpty() ? entry.file : entry.subject));
    case HistoryScl:
        return CleanseForDisplay(ShownText(entry.rating));
    case HistoryResultName:
        return NameOf(entry.result);
    default:
        return {};
    }
}

HistoryDetails DetailsOf(const HistoryLine& line, const QLocale& locale) {
    const HistoryActionFacts& facts = line.facts;
    const HistoryEntry& entry = line.entry;
    HistoryDetails details;
    const auto add = [&details](const char* name, const QString& value) {
        if (!value.isEmpty()) {
            details.emplace_back(Tr(name), CleanseForDisplay(value));
        }
    };
    add(QT_TRANSLATE_NOOP("quellbox", "Time"), TimeOf(line));
    add(QT_TRANSLATE_NOOP("quellbox", "Action"), NameOf(facts.action));
    add(QT_TRANSLATE_NOOP("quellbox", "Result"), NameOf(entry.result));
    add(QT_TRANSLATE_NOOP("quellbox", "Reason"), entry.reason);
    add(IsOfMessage(facts.action) ? QT_TRANSLATE_NOOP("quellbox", "Answer of the mail server")
                                  : QT_TRANSLATE_NOOP("quellbox", "Whitelist entry"),
        entry.detail);
    add(QT_TRANSLATE_NOOP("quellbox", "Subject"), entry.subject);
    add(QT_TRANSLATE_NOOP("quellbox", "From"), entry.from);
    add(QT_TRANSLATE_NOOP("quellbox", "To"), entry.to);
    add(QT_TRANSLATE_NOOP("quellbox", "Sender"), entry.sender);
    add(QT_TRANSLATE_NOOP("quellbox", "Size"), entry.size < 0 ? QString() : FormatSize(entry.size, locale));
    add(QT_TRANSLATE_NOOP("quellbox", "SCL%"), entry.rating);
    add(QT_TRANSLATE_NOOP("quellbox", "File"), entry.file);
    add(QT_TRANSLATE_NOOP("quellbox", "Archive"), facts.archive);
    add(IsReleaseTarget(facts.pickup) ? QT_TRANSLATE_NOOP("quellbox", "Delivered by")
                                      : QT_TRANSLATE_NOOP("quellbox", "Pickup directory"),
        facts.pickup);
    add(QT_TRANSLATE_NOOP("quellbox", "Kept in"), facts.kept);
    add(QT_TRANSLATE_NOOP("quellbox", "Account"), facts.account);
    add(QT_TRANSLATE_NOOP("quellbox", "Computer"), facts.computer);
    return details;
}

} // namespace quellbox

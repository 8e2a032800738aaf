#pragma once

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace quellbox {

/// What was done. The numbers are stored, and so never change.
enum class HistoryAction {
    Unblock = 1,
    Delete = 2,
    Tolerate = 3,     ///< by the user, who put the sender on the whitelist
    AutoTolerate = 4, ///< by a refresh
    Cleanse = 5,
    WhitelistAdd = 6,
    WhitelistRemove = 7,
    PickupTest = 8,
    Undo = 9,
};

/// What became of it. The numbers are stored, and so never change.
enum class HistoryResult {
    Done = 0,
    Failed = 1,
    Undone = 2, ///< it was done, and taken back later
};

/// One action, which may have dealt with many messages.
struct HistoryActionFacts {
    HistoryAction action = HistoryAction::Unblock;
    qint64 timeMs = 0; ///< since 1970-01-01 UTC
    QString account{};
    QString computer{};
    QString archive{}; ///< folder, with a separator at its end
    QString pickup{};  ///< the same, or as ReleaseWay::Target()
    QString kept{};    ///< folder in which deleted messages are kept; empty when they are gone for good
    qint64 undoes = 0; ///< number of the action that this one takes back, else 0
    QString detail{};  ///< entries that the action has added to the whitelist, one in a line
};

/// What is known of one message that was dealt with, or of one entry of the whitelist.
struct HistoryEntry {
    QString file; ///< name in the archive
    QString sender;
    QString from;
    QString to;
    QString subject;
    qint64 size = -1; ///< bytes; -1 when unknown
    QString rating;
    HistoryResult result = HistoryResult::Done;
    QString reason;       ///< of a failure, in the system's words
    QString detail;       ///< entry of the whitelist, or what a mail server has answered
    bool isFinal = false; ///< it can never be taken back, by its nature or as an attempt has shown
};

/// One line of the history: an entry with the action that it belongs to.
struct HistoryLine {
    qint64 id = 0;
    qint64 actionId = 0;
    HistoryActionFacts facts;
    HistoryEntry entry;
};

/// Which lines are wanted.
struct HistoryFilter {
    QString text; ///< is somewhere in sender, From, To, Subject, file name, reason or detail; case does not matter
    std::optional<HistoryAction> action;
    std::optional<HistoryResult> result;

    bool operator==(const HistoryFilter&) const = default;
};

/// Somebody whose messages the user has unblocked.
struct UnblockedSender {
    QString sender;    ///< envelope sender in lower case
    qint64 count = 0;  ///< messages that were unblocked, and not put back
    qint64 lastMs = 0; ///< when the last one was, since 1970-01-01 UTC

    bool operator==(const UnblockedSender&) const = default;
};

/// An action that was begun by a program that ended before it could write down all of its results.
struct InterruptedAction {
    qint64 id = 0;
    HistoryActionFacts facts;
    QStringList files; ///< names of those that may have been dealt with
};

} // namespace quellbox

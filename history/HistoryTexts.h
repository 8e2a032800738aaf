#pragma once

#include "history/HistoryTypes.h"

#include <QLocale>
#include <QString>

#include <utility>
#include <vector>

namespace quellbox {

/// A text of the history in the user's language.
QString Tr(const char* text);

/// Whether an action deals with messages, and not with entries of the whitelist.
bool IsOfMessage(HistoryAction action);

/// What the user reads of an action or a result.
QString NameOf(HistoryAction action);
QString NameOf(HistoryResult result);

/// The same for programs: never changed, and never translated.
QString KeyOf(HistoryAction action);
QString KeyOf(HistoryResult result);

/// All of them, in the order in which they are offered.
const std::vector<HistoryAction>& HistoryActions();
const std::vector<HistoryResult>& HistoryResults();

/// Whether an entry can be taken back, as far as the history knows.
bool CanBeUndone(const HistoryLine& line);

/// The columns of the list of the history.
enum HistoryColumn {
    HistoryTime,
    HistoryActionName,
    HistorySender,
    HistoryTo,
    HistorySubjectText,
    HistoryScl,
    HistoryResultName,
    HistoryColumnCount
};

QString HeaderOf(HistoryColumn column);

/// The time of the action, as the list of messages has times.
QString TimeOf(const HistoryLine& line);

/// What a column shows; as long as it is, a widget gets no more of it than it can lay out.
QString CellOf(const HistoryLine& line, int column);

/// Names and values, in the order in which they are shown.
using HistoryDetails = std::vector<std::pair<QString, QString>>;

/// Everything that is known of a line; what is not known is left out.
HistoryDetails DetailsOf(const HistoryLine& line, const QLocale& locale);

} // namespace quellbox

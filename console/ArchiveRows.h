#pragma once

#include "archive/MessageReading.h"
#include "console/Choices.h"
#include "console/Progress.h"
#include "console/Session.h"

#include <functional>
#include <vector>

namespace quellbox {

/// Reads the messages of the archive that are wanted, in order of arrival, and hands over the row of each; false ends
/// that. Rows of messages that cannot be read say why, and are handed over as far as they are wanted all the same.
/// Throws UnreachableError when there is no such archive, and CommandError when the user ends it, since what has been
/// handed over is not all then. `progress` shows how far it is.
void ForEachRow(Session& session, const MessageChoice& choice, const std::function<bool(const ReadRow& row)>& take,
                Progress&& progress = Progress());

/// The same, all at once.
std::vector<MessageRow> RowsOf(Session& session, const MessageChoice& choice);

/// What has been found of messages that were named.
struct NamedRows {
    std::vector<MessageRow> rows;
    std::vector<FileFailure> failures;
};

/// The rows of the messages with these names, in their order; of what is no message of the archive there is a failure.
/// A name may have the form in which it was printed. Throws UsageError for what cannot be a name, UnreachableError, and
/// CommandError when the user ends it.
NamedRows RowsOf(Session& session, const QStringList& names);

/// Throws UnreachableError when there is no such archive.
void RequireArchive(Session& session);

/// Makes sure that a text can be the name of a message in the archive: a path is none. Throws UsageError.
void RequireName(Session& session, const QString& name);

} // namespace quellbox

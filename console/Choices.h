#pragma once

#include "console/Session.h"
#include "messages/MessageRow.h"
#include "platform/FolderListing.h"
#include "whitelist/WhitelistMatcher.h"

#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QDate>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace quellbox {

/// A text that is to be in a field of the list, as Find looks for it.
struct FieldMatch {
    enum class Field { Cell, Sender, Name };

    Field field = Field::Cell;
    int column = 0; ///< of a cell
    QString text;
};

/// Which messages of an archive are wanted.
struct MessageChoice {
    QString days; ///< as IsRecentFile() takes it; empty lets every day pass
    std::vector<FieldMatch> matches;
    std::optional<double> leastScl;
    std::optional<double> mostScl;
    std::shared_ptr<const WhitelistMatcher> tolerated;      ///< null where it does not matter
    std::function<bool(const FileEntry& file)> alsoWants{}; ///< of a command that knows more of the files

    /// Whether nothing was chosen, so that every message is wanted.
    bool IsEmpty() const;

    /// What can be said of a file before it is opened.
    bool WantsFile(const FileEntry& file, QDate today) const;

    /// What its row says. Where that says something else than a number of the spam confidence, no limit holds.
    bool WantsRow(const MessageRow& row) const;
};

/// The names of the fields that a text can be looked for in.
QStringList MatchFields();

/// Adds the options that choose messages.
void AddChoiceOptions(QCommandLineParser& parser);

/// The option of the calendar days alone, and what it says; empty when it is not there.
QCommandLineOption DaysOption();
std::optional<QString> ReadDays(const QCommandLineParser& parser);

/// What those options say. Throws UsageError.
MessageChoice ReadChoice(Session& session, const QCommandLineParser& parser);

/// A whole number that an option gives. Throws UsageError, which names the option, when it is none between the limits.
int ReadNumber(const QCommandLineParser& parser, const QString& option, int least, int most);

/// Throws UsageError when there are less or more arguments besides options.
void RequireArguments(const QCommandLineParser& parser, int least, int most);

} // namespace quellbox

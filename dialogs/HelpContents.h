#pragma once

#include <QHash>
#include <QString>

#include <vector>

namespace quellbox {

/// One line of the help's table of contents.
struct HelpEntry {
    QString title;
    QString topic; ///< file name of the topic
    int level = 0; ///< 0 at the top; an entry belongs to the last one before it with a lower level

    bool operator==(const HelpEntry&) const = default;
};

/// Reads a table of contents in the form that the compiler of Windows help files takes (.hhc). What is no entry is
/// skipped.
std::vector<HelpEntry> ReadHelpContents(const QString& hhc);

/// What the project file of the help (.hhp) says.
struct HelpProject {
    QString defaultTopic;         ///< file name
    QHash<int, QString> contexts; ///< file name of a topic by its context id
    std::vector<QString> files;   ///< every topic
};

/// Reads a project file. An alias without a number, or a number without an alias, is no context.
HelpProject ReadHelpProject(const QString& hhp);

/// The topic about a window by its object name; empty for a window that has none of its own.
QString HelpTopicOfForm(const QString& formName);

} // namespace quellbox

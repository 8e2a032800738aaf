#include "dialogs/HelpContents.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>

namespace quellbox {

namespace {

QString Plain(QString text) {
    return text.replace(QLatin1String("&quot;"), QLatin1String("\""))
        .replace(QLatin1String("&lt;"), QLatin1String("<"))
        .replace(QLatin1String("&gt;"), QLatin1String(">"))
        .replace(QLatin1String("&amp;"), QLatin1String("&"));
}

/// "#define NAME 7" gives {"NAME", 7}; anything else an empty name.
std::pair<QString, int> ReadDefine(const QString& line) {
    static const QRegularExpression define(QStringLiteral("^#define\\s+(\\w+)\\s+(\\d+)"));
    const QRegularExpressionMatch found = define.match(line);
    return {found.captured(1), found.captured(2).toInt()};
}

} // namespace

std::vector<HelpEntry> ReadHelpContents(const QString& hhc) {
    static const QRegularExpression piece(QStringLiteral("<ul>|</ul>|<object[^>]*sitemap[^>]*>|</object>|"
                                                         "<param\\s+name=\"(\\w+)\"\\s+value=\"([^\"]*)\""),
                                          QRegularExpression::CaseInsensitiveOption);
    std::vector<HelpEntry> entries;
    HelpEntry entry;
    int depth = -1;
    for (auto found = piece.globalMatch(hhc); found.hasNext();) {
        const QRegularExpressionMatch match = found.next();
        const QString text = match.captured(0).toLower();
        if (text == QLatin1String("<ul>")) {
            ++depth;
        } else if (text == QLatin1String("</ul>")) {
            --depth;
        } else if (text.startsWith(QLatin1String("<object"))) {
            entry = {{}, {}, std::max(depth, 0)};
        } else if (text == QLatin1String("</object>")) {
            if (!entry.title.isEmpty() && !entry.topic.isEmpty()) {
                entries.push_back(entry);
            }
            entry = {};
        } else if (match.captured(1).toLower() == QLatin1String("name")) {
            entry.title = Plain(match.captured(2));
        } else if (match.captured(1).toLower() == QLatin1String("local")) {
            entry.topic = match.captured(2);
        }
    }
    return entries;
}

HelpProject ReadHelpProject(const QString& hhp) {
    HelpProject project;
    QHash<QString, QString> aliases;
    QHash<QString, int> numbers;
    QString section;
    for (QString line : hhp.split(QLatin1Char('\n'))) {
        line = line.trimmed();
        const QString value = line.section(QLatin1Char('='), 1).trimmed();
        if (line.startsWith(QLatin1Char('['))) {
            section = line.toUpper();
        } else if (section == QLatin1String("[FILES]") && !line.isEmpty()) {
            project.files.push_back(line);
        } else if (section == QLatin1String("[ALIAS]") && !value.isEmpty()) {
            aliases.insert(line.section(QLatin1Char('='), 0, 0).trimmed(), value);
        } else if (section == QLatin1String("[MAP]")) {
            const auto [name, number] = ReadDefine(line);
            numbers.insert(name, number);
        } else if (line.startsWith(QLatin1String("Default topic="), Qt::CaseInsensitive)) {
            project.defaultTopic = value;
        }
    }
    for (auto alias = aliases.cbegin(); alias != aliases.cend(); ++alias) {
        if (numbers.contains(alias.key())) {
            project.contexts.insert(numbers[alias.key()], alias.value());
        }
    }
    return project;
}

QString HelpTopicOfForm(const QString& formName) {
    static const QHash<QString, QString> topics = {
        {QStringLiteral("frmMain"), QStringLiteral("list.html")},
        {QStringLiteral("frmView"), QStringLiteral("contents.html")},
        {QStringLiteral("frmTolerate"), QStringLiteral("whitelist.html")},
        {QStringLiteral("frmFind"), QStringLiteral("find.html")},
        {QStringLiteral("frmCleansing"), QStringLiteral("cleansing.html")},
        {QStringLiteral("frmOptions"), QStringLiteral("options.html")},
        {QStringLiteral("frmOwnServer"), QStringLiteral("server-own.html")},
        {QStringLiteral("frmFolders"), QStringLiteral("folders.html")},
        {QStringLiteral("frmFailures"), QStringLiteral("failures.html")},
        {QStringLiteral("frmHistory"), QStringLiteral("history.html")},
        {QStringLiteral("frmOverview"), QStringLiteral("overview.html")},
        {QStringLiteral("frmAbout"), QStringLiteral("about.html")},
    };
    return topics.value(formName);
}

} // namespace quellbox

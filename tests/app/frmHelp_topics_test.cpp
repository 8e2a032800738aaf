#include "app/HelpBrowser.h"
#include "dialogs/HelpContents.h"
#include "tests/support/MainWindowFixture.h"

#include <QDir>
#include <QMenuBar>

#include <set>

namespace quellbox {
namespace {

QStringList Captures(const QString& html, const char* pattern) {
    QStringList found;
    const QRegularExpression expression(QLatin1String(pattern), QRegularExpression::DotMatchesEverythingOption);
    for (auto match = expression.globalMatch(html); match.hasNext();) {
        found += match.next().captured(1);
    }
    return found;
}

QString WithoutTags(QString html) {
    return html.remove(QRegularExpression(QStringLiteral("<[^>]*>")))
        .replace(QLatin1String("&gt;"), QLatin1String(">"))
        .replace(QLatin1String("&amp;"), QLatin1String("&"))
        .simplified();
}

class HelpTopics : public MainWindowTest {
protected:
    HelpTopics() {
        for (const QString& file : QDir(QStringLiteral(":/help")).entryList({QStringLiteral("*.html")})) {
            topics.insert(file, ReadHelpFile(file));
        }
        contents = ReadHelpContents(ReadHelpFile(QStringLiteral("Quellbox.hhc")));
        project = ReadHelpProject(ReadHelpFile(QStringLiteral("Quellbox.hhp")));
    }

    /// The commands of every menu by their path, as in "File > Folder > Archive...".
    void AddCommands(const QMenu& menu, const QString& path, QHash<QString, QAction*>& commands) const {
        for (QAction* entry : menu.actions()) {
            const QString whole = path + QStringLiteral(" > ") + entry->text().remove(QLatin1Char('&'));
            commands.insert(whole, entry);
            if (entry->menu() != nullptr) {
                AddCommands(*entry->menu(), whole, commands);
            }
        }
    }

    QHash<QString, QAction*> Commands() {
        Open();
        QHash<QString, QAction*> commands;
        for (const char* name :
             {"mnuFile", "mnuEdit", "mnuView", "mnuActions", "mnuTools", "mnuHelp", "mnuMessage", "mnuTray"}) {
            const auto* menu = Find<QMenu>(name);
            AddCommands(*menu, menu->title().remove(QLatin1Char('&')), commands);
        }
        return commands;
    }

    QHash<QString, QString> topics; ///< text by file name
    std::vector<HelpEntry> contents;
    HelpProject project;
};

TEST_F(HelpTopics, TheContentsHaveEveryTopicOnceUnderItsTitle) {
    ASSERT_GE(topics.size(), 13);
    std::set<QString> seen;
    for (const HelpEntry& entry : contents) {
        ASSERT_TRUE(topics.contains(entry.topic)) << entry.topic.toStdString();
        EXPECT_TRUE(seen.insert(entry.topic).second) << entry.topic.toStdString();
        EXPECT_EQ(Captures(topics[entry.topic], "<title>(.*?)</title>"), QStringList({entry.title}));
        EXPECT_EQ(Captures(topics[entry.topic], "<h1>(.*?)</h1>"), QStringList({entry.title}));
    }
    EXPECT_EQ(seen.size(), static_cast<size_t>(topics.size()));
}

TEST_F(HelpTopics, TheCompilerGetsEveryTopic) {
    EXPECT_EQ(project.defaultTopic, QStringLiteral("start.html"));
    EXPECT_EQ(project.contexts.value(1), QStringLiteral("suggestions.html"));
    const std::set<QString> files(project.files.begin(), project.files.end());
    EXPECT_EQ(files.size(), static_cast<size_t>(topics.size()) + 1); // the style sheet
    EXPECT_TRUE(files.contains(QStringLiteral("help.css")));
    for (auto topic = topics.cbegin(); topic != topics.cend(); ++topic) {
        EXPECT_TRUE(files.contains(topic.key())) << topic.key().toStdString();
        EXPECT_TRUE(topic.value().contains(QStringLiteral("href=\"help.css\"")));
    }
}

TEST_F(HelpTopics, EveryLinkLeadsToATopicAndToAnAnchorInIt) {
    int links = 0;
    for (auto topic = topics.cbegin(); topic != topics.cend(); ++topic) {
        for (const QString& link : Captures(topic.value(), "<a href=\"([^\"]*)\"")) {
            const QString file = link.section(QLatin1Char('#'), 0, 0);
            const QString anchor = link.section(QLatin1Char('#'), 1);
            const QString target = topics.value(file.isEmpty() ? topic.key() : file);
            EXPECT_FALSE(target.isEmpty()) << topic.key().toStdString() << ": " << link.toStdString();
            EXPECT_TRUE(anchor.isEmpty() || target.contains(QStringLiteral("id=\"%1\"").arg(anchor)))
                << topic.key().toStdString() << ": " << link.toStdString();
            ++links;
        }
    }
    EXPECT_GT(links, 20);
}

TEST_F(HelpTopics, OldViewersCanReadThem) {
    for (auto topic = topics.cbegin(); topic != topics.cend(); ++topic) {
        for (const QChar character : topic.value()) {
            EXPECT_LT(character.unicode(), 128) << topic.key().toStdString();
        }
        EXPECT_FALSE(topic.value().contains(QStringLiteral("<script")));
        EXPECT_FALSE(topic.value().contains(QStringLiteral("http-equiv=\"refresh\"")));
    }
}

TEST_F(HelpTopics, EveryCommandThatTheyNameIsInAMenu) {
    const QHash<QString, QAction*> commands = Commands();
    int named = 0;
    for (auto topic = topics.cbegin(); topic != topics.cend(); ++topic) {
        for (const QString& command : Captures(topic.value(), "<span class=\"cmd\">(.*?)</span>")) {
            EXPECT_TRUE(commands.contains(WithoutTags(command)))
                << topic.key().toStdString() << ": " << command.toStdString();
            ++named;
        }
    }
    EXPECT_GT(named, 30);
}

TEST_F(HelpTopics, EveryButtonThatTheyNameIsOnAToolbar) {
    Open();
    QStringList tips;
    for (const char* bar : {"tlbMessages", "tlbContents"}) {
        for (const QAction* button : Find<QToolBar>(bar)->actions()) {
            tips += button->toolTip();
        }
    }
    int named = 0;
    for (auto topic = topics.cbegin(); topic != topics.cend(); ++topic) {
        for (const QString& tip : Captures(topic.value(), "<span class=\"tip\">(.*?)</span>")) {
            EXPECT_TRUE(tips.contains(WithoutTags(tip))) << topic.key().toStdString() << ": " << tip.toStdString();
            ++named;
        }
    }
    EXPECT_GE(named, 5);
}

TEST_F(HelpTopics, TheKeysBesideACommandAreItsShortcut) {
    const QHash<QString, QAction*> commands = Commands();
    const QRegularExpression beside(
        QStringLiteral("<span class=\"cmd\">([^<]*)</span>(?:\\s*\\(|</td><td>)<kbd>([^<]*)</kbd>"));
    for (auto topic = topics.cbegin(); topic != topics.cend(); ++topic) {
        for (auto match = beside.globalMatch(topic.value()); match.hasNext();) {
            const QRegularExpressionMatch pair = match.next();
            const QAction* command = commands.value(WithoutTags(pair.captured(1)));
            ASSERT_NE(command, nullptr) << pair.captured(1).toStdString();
            EXPECT_EQ(command->shortcut().toString(QKeySequence::PortableText).toStdString(),
                      pair.captured(2).toStdString());
        }
    }
}

TEST_F(HelpTopics, TheTopicOfTheKeysHasEveryShortcut) {
    const QHash<QString, QAction*> commands = Commands();
    QStringList wanted;
    for (auto command = commands.cbegin(); command != commands.cend(); ++command) {
        if (!command.value()->shortcut().isEmpty()) {
            wanted +=
                command.value()->shortcut().toString(QKeySequence::PortableText) + QLatin1Char(' ') + command.key();
        }
    }
    QStringList listed;
    const QRegularExpression line(
        QStringLiteral("<tr><td><kbd>([^<]*)</kbd></td><td><span class=\"cmd\">([^<]*)</span></td></tr>"));
    for (auto match = line.globalMatch(topics.value(QStringLiteral("keys.html"))); match.hasNext();) {
        const QRegularExpressionMatch pair = match.next();
        listed += pair.captured(1) + QLatin1Char(' ') + WithoutTags(pair.captured(2));
    }
    wanted.sort();
    listed.sort();
    EXPECT_EQ(listed, wanted);
}

TEST_F(HelpTopics, EveryWindowWithATopicHasOneThatExists) {
    for (const char* form : {"frmMain", "frmView", "frmTolerate", "frmFind", "frmCleansing", "frmOptions",
                             "frmOwnServer", "frmFolders", "frmAbout"}) {
        EXPECT_TRUE(topics.contains(HelpTopicOfForm(QLatin1String(form)))) << form;
    }
}

} // namespace
} // namespace quellbox

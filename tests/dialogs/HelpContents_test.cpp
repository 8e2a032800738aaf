#include "dialogs/HelpContents.h"

#include <gtest/gtest.h>

using namespace quellbox;

namespace {

QString Entry(const char* name, const char* local) {
    return QStringLiteral("<LI><OBJECT type=\"text/sitemap\">\n<param name=\"Name\" value=\"%1\">\n"
                          "<param name=\"Local\" value=\"%2\">\n</OBJECT>\n")
        .arg(QLatin1String(name), QLatin1String(local));
}

} // namespace

TEST(HelpContents, ReadsTitlesTopicsAndLevels) {
    const QString hhc = QStringLiteral("<HTML><BODY><UL>") + Entry("One", "one.html") + QStringLiteral("<ul>") +
                        Entry("One &amp; a half", "half.html") + QStringLiteral("</ul>") + Entry("Two", "two.html") +
                        QStringLiteral("</UL></BODY></HTML>");
    const std::vector<HelpEntry> wanted = {
        {QStringLiteral("One"), QStringLiteral("one.html"), 0},
        {QStringLiteral("One & a half"), QStringLiteral("half.html"), 1},
        {QStringLiteral("Two"), QStringLiteral("two.html"), 0},
    };
    EXPECT_EQ(ReadHelpContents(hhc), wanted);
}

TEST(HelpContents, SkipsWhatIsNoEntry) {
    const QString hhc =
        QStringLiteral("<object type=\"text/site properties\"><param name=\"Window Styles\" value=\"1\">"
                       "</object><ul>") +
        Entry("No topic", "") + Entry("", "untitled.html") + Entry("Whole", "whole.html");
    const std::vector<HelpEntry> wanted = {{QStringLiteral("Whole"), QStringLiteral("whole.html"), 0}};
    EXPECT_EQ(ReadHelpContents(hhc), wanted);
    EXPECT_TRUE(ReadHelpContents({}).empty());
}

TEST(HelpContents, ReadsTheProject) {
    const HelpProject project =
        ReadHelpProject(QStringLiteral("[OPTIONS]\r\nDefault topic = not so\r\n"
                                       "Default topic=first.html\r\n\r\n[FILES]\r\nfirst.html\r\n"
                                       "second.html\r\n\r\n[ALIAS]\r\nIDH_SECOND=second.html\r\n"
                                       "IDH_UNNUMBERED=first.html\r\n\r\n[MAP]\r\n"
                                       "#define IDH_SECOND 1\r\n#define IDH_OTHER 2\r\n"));
    EXPECT_EQ(project.defaultTopic, QStringLiteral("first.html"));
    EXPECT_EQ(project.files, std::vector<QString>({QStringLiteral("first.html"), QStringLiteral("second.html")}));
    const QHash<int, QString> contexts = {{1, QStringLiteral("second.html")}};
    EXPECT_EQ(project.contexts, contexts);
}

TEST(HelpContents, EveryFormHasItsTopicAndAnUnknownOneHasNone) {
    EXPECT_EQ(HelpTopicOfForm(QStringLiteral("frmMain")), QStringLiteral("list.html"));
    EXPECT_EQ(HelpTopicOfForm(QStringLiteral("frmOptions")), QStringLiteral("options.html"));
    EXPECT_TRUE(HelpTopicOfForm(QStringLiteral("msgError")).isEmpty());
    EXPECT_TRUE(HelpTopicOfForm({}).isEmpty());
}

#pragma once

#include <QTextBrowser>

namespace quellbox {

/// A view of help topics that can load nothing but what is compiled into the program.
class HelpBrowser : public QTextBrowser {
    Q_OBJECT

public:
    using QTextBrowser::QTextBrowser;

    QVariant loadResource(int type, const QUrl& name) override;
};

/// Where a topic is within the program. `topic` may end with "#" and an anchor.
QUrl HelpTopicUrl(const QString& topic);

/// The text of a file of the help; null when there is none.
QString ReadHelpFile(const QString& name);

} // namespace quellbox

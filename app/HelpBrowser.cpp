#include "app/HelpBrowser.h"

#include <QFile>

namespace quellbox {

namespace {

constexpr QLatin1String folder(":/help/");

} // namespace

QVariant HelpBrowser::loadResource(int type, const QUrl& name) {
    // Not source(), which is still the topic before.
    const QUrl whole = HelpTopicUrl({}).resolved(name);
    if (whole.scheme() != QLatin1String("qrc") || !(QLatin1Char(':') + whole.path()).startsWith(folder)) {
        return {};
    }
    return QTextBrowser::loadResource(type, whole);
}

QUrl HelpTopicUrl(const QString& topic) {
    QUrl url(QStringLiteral("qrc:/help/") + topic.section(QLatin1Char('#'), 0, 0));
    if (topic.contains(QLatin1Char('#'))) {
        url.setFragment(topic.section(QLatin1Char('#'), 1));
    }
    return url;
}

QString ReadHelpFile(const QString& name) {
    QFile file(folder + name);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace quellbox

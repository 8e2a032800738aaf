#include "tests/servers/BlockedMessages.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace quellbox::servers {

namespace {

using namespace Qt::StringLiterals;

QStringList Texts(const QJsonArray& values) {
    QStringList texts;
    for (const QJsonValue& value : values) {
        texts += value.toString();
    }
    return texts;
}

BlockedFolder FolderOf(const QJsonObject& chain) {
    const QStringList sendmail = Texts(chain[u"command"_s].toArray());
    BlockedFolder folder{chain[u"profile"_s].toString(),
                         chain[u"archive"_s].toString(),
                         chain[u"host"_s].toString(),
                         chain[u"port"_s].toInt(),
                         sendmail.join(u' ') + u" -f SENDER -- RECIPIENT..."_s,
                         {}};
    const QJsonObject files = chain[u"files"_s].toObject();
    for (auto file = files.begin(); file != files.end(); ++file) {
        const QJsonObject message = file.value().toObject();
        folder.messages.insert(file.key(), {message[u"rating"_s].toString(), message[u"sender"_s].toString(),
                                            message[u"way"_s].toString()});
    }
    return folder;
}

} // namespace

BlockedFolder ReadBlockedFolder(const QString& chain) {
    QFile file(qEnvironmentVariable("QUELLBOX_MAIL_EXPECTATIONS"));
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QJsonArray chains = QJsonDocument::fromJson(file.readAll()).object()[u"chains"_s].toArray();
    for (const QJsonValue& value : chains) {
        const QJsonObject found = value.toObject();
        if (found[u"name"_s].toString() == chain) {
            return FolderOf(found);
        }
    }
    return {};
}

} // namespace quellbox::servers

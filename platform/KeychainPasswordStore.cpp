#ifndef _WIN32

#include "platform/PasswordStore.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QMap>
#include <QObject>

#include <qt6keychain/keychain.h>

#include <utility>

namespace quellbox {

namespace {

const QString serviceName = QStringLiteral("Quellbox");

using SecretAttributes = QMap<QString, QString>;

QString LockedText() {
    return QCoreApplication::translate("quellbox", "The password store is locked.");
}

/// What the user reads of an error; the library's own words are those of whoever keeps the passwords.
QString KeychainErrorText(const QKeychain::Job& job) {
    switch (job.error()) {
    case QKeychain::AccessDeniedByUser:
        return QCoreApplication::translate("quellbox", "The password store was not opened, because that was refused.");
    case QKeychain::AccessDenied:
        return LockedText();
    default:
        break;
    }
    // With these words the bus tells that it knows nobody of the name.
    if (job.error() == QKeychain::NoBackendAvailable ||
        job.errorString().contains(QLatin1String("org.freedesktop.secrets"))) {
        return QCoreApplication::translate("quellbox", "There is no password store. GNOME Keyring and KWallet are "
                                                       "programs for that. The system says: %1")
            .arg(job.errorString());
    }
    return QCoreApplication::translate("quellbox", "The password store cannot be used: %1").arg(job.errorString());
}

PasswordAnswer AnswerOf(const QKeychain::Job& job) {
    PasswordAnswer answer;
    // That nothing is there is an answer to who asks, and what was wanted by who removes it.
    if (job.error() != QKeychain::NoError && job.error() != QKeychain::EntryNotFound) {
        answer.error = KeychainErrorText(job);
    } else if (const auto* reading = qobject_cast<const QKeychain::ReadPasswordJob*>(&job);
               reading != nullptr && job.error() == QKeychain::NoError) {
        answer.password = reading->textData();
    }
    return answer;
}

/// Where the user did not open a locked collection, the library says of a password in there that there is none, or that
/// it has been removed. So the service is asked, which finds without opening what is there (Secret Service API Draft,
/// "Service.SearchItems"); where KWallet or nobody answers to its name, the library is right.
void TellUnlessLocked(const QString& account, QObject& context, const PasswordStore::Take& take) {
    QDBusMessage question = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.secrets"), QStringLiteral("/org/freedesktop/secrets"),
        QStringLiteral("org.freedesktop.Secret.Service"), QStringLiteral("SearchItems"));
    question << QVariant::fromValue(
        SecretAttributes{{QStringLiteral("user"), account}, {QStringLiteral("server"), serviceName}});
    question.setAutoStartService(false);
    auto* watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), &context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &context, [take](QDBusPendingCallWatcher* ended) {
        ended->deleteLater();
        const QDBusPendingReply<QList<QDBusObjectPath>, QList<QDBusObjectPath>> reply = *ended;
        const bool isLocked = reply.isValid() && !reply.argumentAt<1>().isEmpty();
        take(isLocked ? PasswordAnswer{{}, LockedText()} : PasswordAnswer());
    });
}

/// The store that QtKeychain finds on the desktop.
class KeychainPasswordStore : public PasswordStore {
public:
    void Read(const QString& account, QObject& context, Take take) override {
        Start(new QKeychain::ReadPasswordJob(serviceName), account, context, std::move(take));
    }

    void Write(const QString& account, const QString& password, QObject& context, Take take) override {
        auto* job = new QKeychain::WritePasswordJob(serviceName);
        job->setTextData(password);
        Start(job, account, context, std::move(take));
    }

    void Remove(const QString& account, QObject& context, Take take) override {
        Start(new QKeychain::DeletePasswordJob(serviceName), account, context, std::move(take));
    }

private:
    /// A job deletes itself at its end. Nobody else may: who keeps the passwords answers to the job in any case.
    static void Start(QKeychain::Job* job, const QString& account, QObject& context, Take take) {
        job->setKey(account);
        job->setInsecureFallback(false);
        QObject::connect(
            job, &QKeychain::Job::finished, &context,
            [&context, take = std::move(take)](const QKeychain::Job* ended) { Tell(*ended, context, take); });
        job->start();
    }

    static void Tell(const QKeychain::Job& job, QObject& context, const Take& take) {
        const PasswordAnswer answer = AnswerOf(job);
        const bool hasWritten = qobject_cast<const QKeychain::WritePasswordJob*>(&job) != nullptr;
        if (answer.error.isEmpty() && !answer.password && !hasWritten) {
            TellUnlessLocked(job.key(), context, take);
            return;
        }
        // The next job waits until all who listen to this one have heard of its end; who is told may open a dialog.
        QMetaObject::invokeMethod(
            &context, [take, answer] { take(answer); }, Qt::QueuedConnection);
    }
};

} // namespace

std::unique_ptr<PasswordStore> MakePasswordStore() {
    qDBusRegisterMetaType<SecretAttributes>();
    return std::make_unique<KeychainPasswordStore>();
}

} // namespace quellbox

#endif

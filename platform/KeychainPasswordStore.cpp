#ifndef _WIN32

#include "platform/PasswordStore.h"

#include <QCoreApplication>
#include <QObject>

#include <qt6keychain/keychain.h>

#include <utility>

namespace quellbox {

namespace {

const QString serviceName = QStringLiteral("Quellbox");

QString NoStoreText() {
    return QCoreApplication::translate("quellbox",
                                       "There is no password store. GNOME Keyring and KWallet are programs for that.");
}

/// What the user reads of an error; the library's own words are those of whoever keeps the passwords.
QString KeychainErrorText(const QKeychain::Job& job) {
    switch (job.error()) {
    case QKeychain::AccessDeniedByUser:
        return QCoreApplication::translate("quellbox", "The password store was not opened, because that was refused.");
    case QKeychain::AccessDenied:
        return QCoreApplication::translate("quellbox", "The password store is locked.");
    case QKeychain::NoBackendAvailable:
        return NoStoreText();
    default:
        break;
    }
    // The name of the error when nobody on the bus answers (D-Bus specification, "Message Bus Messages").
    if (job.errorString().contains(QLatin1String("org.freedesktop.DBus.Error.ServiceUnknown"))) {
        return NoStoreText();
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
        // The next job waits until this signal has been heard by all, so whoever is told may open a dialog only later.
        QObject::connect(job, &QKeychain::Job::finished, &context,
                         [&context, take = std::move(take)](const QKeychain::Job* ended) {
                             const auto tell = [take, answer = AnswerOf(*ended)] { take(answer); };
                             QMetaObject::invokeMethod(&context, tell, Qt::QueuedConnection);
                         });
        job->start();
    }
};

} // namespace

std::unique_ptr<PasswordStore> MakePasswordStore() {
    return std::make_unique<KeychainPasswordStore>();
}

} // namespace quellbox

#endif

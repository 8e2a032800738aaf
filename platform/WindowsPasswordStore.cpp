#ifdef _WIN32

#include "platform/PasswordStore.h"
#include "platform/WideText.h"

#include <QCoreApplication>
#include <QObject>

#include <windows.h>

#include <wincred.h>

#include <utility>

namespace quellbox {

namespace {

// CRED_MAX_CREDENTIAL_BLOB_SIZE since Windows 7; in bytes.
constexpr qsizetype longestSecret = 5 * 512;

struct FreeCredential {
    void operator()(CREDENTIALW* credential) const { CredFree(credential); }
};
using Credential = std::unique_ptr<CREDENTIALW, FreeCredential>;

/// The name of what is kept for an account, which the list of credentials in the control panel shows.
QString CredentialName(const QString& account) {
    return QLatin1String("Quellbox/") + account;
}

/// The answer to a call that has failed with this code of the system.
PasswordAnswer AnswerToFailure(DWORD code) {
    PasswordAnswer answer;
    if (code != ERROR_NOT_FOUND) {
        answer.error = QCoreApplication::translate("quellbox", "The password store cannot be used: %1")
                           .arg(qt_error_string(static_cast<int>(code)));
    }
    return answer;
}

PasswordAnswer ReadCredential(const QString& account) {
    CREDENTIALW* found = nullptr;
    if (CredReadW(Wide(CredentialName(account)), CRED_TYPE_GENERIC, 0, &found) == FALSE) {
        return AnswerToFailure(GetLastError());
    }
    const Credential credential(found);
    PasswordAnswer answer;
    answer.password =
        FromWide(reinterpret_cast<const wchar_t*>(credential->CredentialBlob), // which the system has aligned
                 credential->CredentialBlobSize / sizeof(wchar_t));
    return answer;
}

/// Such a credential stays on this computer, where other settings of the user may go from one to the other.
PasswordAnswer WriteCredential(const QString& account, const QString& password) {
    QString name = CredentialName(account);
    QString secret = password;
    const qsizetype size = secret.size() * static_cast<qsizetype>(sizeof(wchar_t));
    if (size > longestSecret) {
        // The system itself would speak of bad data from a stub.
        return AnswerToFailure(ERROR_PASSWORD_RESTRICTION);
    }
    CREDENTIALW credential{};
    credential.Type = CRED_TYPE_GENERIC;
    credential.TargetName = reinterpret_cast<wchar_t*>(name.data());
    credential.CredentialBlobSize = static_cast<DWORD>(size);
    credential.CredentialBlob = reinterpret_cast<BYTE*>(secret.data());
    credential.Persist = CRED_PERSIST_LOCAL_MACHINE;
    return CredWriteW(&credential, 0) == FALSE ? AnswerToFailure(GetLastError()) : PasswordAnswer();
}

PasswordAnswer RemoveCredential(const QString& account) {
    return CredDeleteW(Wide(CredentialName(account)), CRED_TYPE_GENERIC, 0) == FALSE ? AnswerToFailure(GetLastError())
                                                                                     : PasswordAnswer();
}

/// The credentials of the user. The system has them at hand, so that no call of it takes long.
class CredentialStore : public PasswordStore {
public:
    void Read(const QString& account, QObject& context, Take take) override {
        Tell(ReadCredential(account), context, std::move(take));
    }

    void Write(const QString& account, const QString& password, QObject& context, Take take) override {
        Tell(WriteCredential(account, password), context, std::move(take));
    }

    void Remove(const QString& account, QObject& context, Take take) override {
        Tell(RemoveCredential(account), context, std::move(take));
    }

private:
    static void Tell(PasswordAnswer answer, QObject& context, Take take) {
        QMetaObject::invokeMethod(
            &context, [take = std::move(take), answer = std::move(answer)] { take(answer); }, Qt::QueuedConnection);
    }
};

} // namespace

std::unique_ptr<PasswordStore> MakePasswordStore() {
    return std::make_unique<CredentialStore>();
}

} // namespace quellbox

#endif

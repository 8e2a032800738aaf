#pragma once

#include <QString>

#include <functional>
#include <memory>
#include <optional>

class QObject;

namespace quellbox {

/// What has become of a call of the password store.
struct PasswordAnswer {
    std::optional<QString> password{}; ///< what was asked for; empty when the store has none for that account
    QString error{};                   ///< what went wrong, for the user to read; empty when nothing did
};

/// The port to the place where the desktop keeps the passwords of its user, encrypted: a secret service or KWallet, on
/// Windows the credential store. Where there is none, nothing is kept anywhere else.
///
/// An account is a text such as "smtp:user@host:port", and not empty; the same account of another program is another
/// one. Accounts that differ in case only are the same on Windows. A password holds no NUL (RFC 4616, section 2), and
/// on Windows no more than 1280 characters.
///
/// Everything happens on the thread of the application object, and calls are dealt with in their order. An answer comes
/// once, later than the call returns, and never when `context` has died meanwhile; what was to be stored is stored all
/// the same. An answer may take as long as the user is asked for the master password.
class PasswordStore {
public:
    using Take = std::function<void(const PasswordAnswer& answer)>;

    virtual ~PasswordStore() = default;

    /// An account without a password is no error.
    virtual void Read(const QString& account, QObject& context, Take take) = 0;

    /// Replaces the password that the account may have.
    virtual void Write(const QString& account, const QString& password, QObject& context, Take take) = 0;

    /// Having nothing to remove is no error.
    virtual void Remove(const QString& account, QObject& context, Take take) = 0;
};

/// The store of the desktop on which the program runs.
std::unique_ptr<PasswordStore> MakePasswordStore();

} // namespace quellbox

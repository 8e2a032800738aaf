#pragma once

#include "platform/PasswordStore.h"

#include <QStringList>

#include <deque>
#include <functional>
#include <map>

namespace quellbox {

/// Passwords in memory, which can be locked, missing and slow.
class MemoryPasswordStore : public PasswordStore {
public:
    /// Why a call fails.
    enum class Fault {
        None,
        Locked,  ///< the store has not been opened
        Refused, ///< the user has not wanted to open it
        Missing  ///< there is no store
    };

    /// What becomes of the calls that are dealt with from now on.
    void SetFault(Fault fault) { fault_ = fault; }

    /// What the user reads of a fault.
    static QString ErrorOf(Fault fault);

    /// Lets calls wait from now on, until Release().
    void Hold() { isHeld_ = true; }

    /// Deals with the calls that wait, and with later ones at once.
    void Release();

    /// How many calls wait.
    size_t WaitingCount() const { return waiting_.size(); }

    /// What is kept for an account, past all faults.
    std::optional<QString> Kept(const QString& account) const;
    void Keep(const QString& account, const QString& password) { passwords_[account] = password; }

    /// Every call so far, as in "read smtp:joe@mail.example:587". No password is in there.
    const QStringList& Calls() const { return calls_; }

    void Read(const QString& account, QObject& context, Take take) override;
    void Write(const QString& account, const QString& password, QObject& context, Take take) override;
    void Remove(const QString& account, QObject& context, Take take) override;

private:
    void Deal(const QString& call, QObject& context, Take take, std::function<PasswordAnswer()> act);

    std::map<QString, QString> passwords_;
    std::deque<std::function<void()>> waiting_;
    QStringList calls_;
    Fault fault_ = Fault::None;
    bool isHeld_ = false;
};

} // namespace quellbox

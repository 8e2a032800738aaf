#include "tests/support/MemoryPasswordStore.h"

#include <QObject>
#include <QPointer>

#include <utility>

namespace quellbox {

QString MemoryPasswordStore::ErrorOf(Fault fault) {
    switch (fault) {
    case Fault::Locked:
        return QStringLiteral("The password store is locked.");
    case Fault::Refused:
        return QStringLiteral("The password store was not opened, because that was refused.");
    case Fault::Missing:
        return QStringLiteral("There is no password store.");
    case Fault::None:
        break;
    }
    return {};
}

void MemoryPasswordStore::Release() {
    isHeld_ = false;
    for (const auto& deal : std::exchange(waiting_, {})) {
        deal();
    }
}

std::optional<QString> MemoryPasswordStore::Kept(const QString& account) const {
    const auto found = passwords_.find(account);
    return found == passwords_.end() ? std::nullopt : std::optional(found->second);
}

void MemoryPasswordStore::Read(const QString& account, QObject& context, Take take) {
    Deal(QStringLiteral("read ") + account, context, std::move(take),
         [this, account] { return PasswordAnswer{Kept(account)}; });
}

void MemoryPasswordStore::Write(const QString& account, const QString& password, QObject& context, Take take) {
    Deal(QStringLiteral("write ") + account, context, std::move(take), [this, account, password] {
        Keep(account, password);
        return PasswordAnswer();
    });
}

void MemoryPasswordStore::Remove(const QString& account, QObject& context, Take take) {
    Deal(QStringLiteral("remove ") + account, context, std::move(take), [this, account] {
        passwords_.erase(account);
        return PasswordAnswer();
    });
}

void MemoryPasswordStore::Deal(const QString& call, QObject& context, Take take, std::function<PasswordAnswer()> act) {
    calls_ += call;
    waiting_.emplace_back([this, who = QPointer<QObject>(&context), take = std::move(take), act = std::move(act)] {
        PasswordAnswer answer = fault_ == Fault::None ? act() : PasswordAnswer{{}, ErrorOf(fault_)};
        if (who != nullptr) {
            QMetaObject::invokeMethod(
                who.data(), [take, answer = std::move(answer)] { take(answer); }, Qt::QueuedConnection);
        }
    });
    if (!isHeld_) {
        Release();
    }
}

} // namespace quellbox

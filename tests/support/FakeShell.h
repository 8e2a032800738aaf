#pragma once

#include "platform/Shell.h"

#include <QStringList>

#include <utility>

namespace quellbox {

/// A desktop that opens nothing and remembers what it was asked for.
class FakeShell : public Shell {
public:
    void SetUserName(QString name) { userName_ = std::move(name); }

    /// What Open() answers from now on; true at first.
    void SetOpens(bool opens) { opens_ = opens; }

    /// Every target so far, those that could not be opened too.
    const QStringList& Opened() const { return opened_; }

    QString UserName() const override { return userName_; }

    bool Open(const QString& target) const override {
        opened_ += target;
        return opens_;
    }

private:
    QString userName_ = QStringLiteral("tester");
    bool opens_ = true;
    mutable QStringList opened_;
};

} // namespace quellbox

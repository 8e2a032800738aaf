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

    /// Whether the desktop shows compiled help files from now on; it does not at first.
    void SetHelpViewer(bool has, bool shows = true) {
        hasHelpViewer_ = has;
        showsHelp_ = shows;
    }

    /// Every call of the help viewer, as in "/prog/Quellbox.chm 15 1".
    const QStringList& Helped() const { return helped_; }

    /// Every target so far, those that could not be opened too.
    const QStringList& Opened() const { return opened_; }

    QString UserName() const override { return userName_; }

    bool Open(const QString& target) const override {
        opened_ += target;
        return opens_;
    }

    bool OpenMessage(const QString& path) const override { return Open(path); }

    bool HasHelpViewer() const override { return hasHelpViewer_; }

    bool ShowHelp(quintptr /*owner*/, const QString& helpFile, HelpCommand command, quintptr data) const override {
        helped_ += QStringLiteral("%1 %2 %3").arg(helpFile).arg(static_cast<unsigned>(command)).arg(data);
        return showsHelp_;
    }

private:
    QString userName_ = QStringLiteral("tester");
    bool opens_ = true;
    bool hasHelpViewer_ = false;
    bool showsHelp_ = true;
    mutable QStringList opened_;
    mutable QStringList helped_;
};

} // namespace quellbox

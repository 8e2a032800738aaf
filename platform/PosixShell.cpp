#ifndef _WIN32

#include "platform/Shell.h"

#include "platform/PathBytes.h"

#include <QProcess>

#include <array>
#include <pwd.h>
#include <unistd.h>

namespace quellbox {

namespace {

/// What xdg-open gets for a path or an address.
QString OpenerArgument(const QString& target) {
    if (target.startsWith(QLatin1Char('-'))) {
        return QLatin1String("./") + target;
    }
    // Only an address can carry the bytes of a name that is not valid UTF-8.
    if (target.startsWith(QLatin1Char('/')) && target.contains(QChar(QChar::ReplacementCharacter))) {
        return QLatin1String("file://") + QString::fromLatin1(PathBytes(target).toPercentEncoding("/"));
    }
    return target;
}

class PosixShell : public Shell {
public:
    QString UserName() const override {
        std::array<char, 16 * 1024> buffer{};
        passwd entry{};
        passwd* found = nullptr;
        const int error = ::getpwuid_r(::geteuid(), &entry, buffer.data(), buffer.size(), &found);
        return error == 0 && found != nullptr ? QString::fromLocal8Bit(entry.pw_name) : QString();
    }

    bool Open(const QString& target) const override {
        return !target.isEmpty() && QProcess::startDetached(QStringLiteral("xdg-open"), {OpenerArgument(target)});
    }

    bool OpenMessage(const QString& path) const override { return Open(path); }

    bool HasHelpViewer() const override { return false; }

    bool ShowHelp(quintptr /*owner*/, const QString& /*helpFile*/, HelpCommand /*command*/,
                  quintptr /*data*/) const override {
        return false;
    }
};

} // namespace

std::unique_ptr<Shell> MakeShell() {
    return std::make_unique<PosixShell>();
}

} // namespace quellbox

#endif

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

} // namespace

QString Shell::UserName() const {
    std::array<char, 16 * 1024> buffer{};
    passwd entry{};
    passwd* found = nullptr;
    const int error = ::getpwuid_r(::geteuid(), &entry, buffer.data(), buffer.size(), &found);
    return error == 0 && found != nullptr ? QString::fromLocal8Bit(entry.pw_name) : QString();
}

bool Shell::Open(const QString& target) const {
    return !target.isEmpty() && QProcess::startDetached(QStringLiteral("xdg-open"), {OpenerArgument(target)});
}

bool Shell::OpenMessage(const QString& path) const {
    return Open(path);
}

bool Shell::HasHelpViewer() const {
    return false;
}

bool Shell::ShowHelp(quintptr /*owner*/, const QString& /*helpFile*/, HelpCommand /*command*/,
                     quintptr /*data*/) const {
    return false;
}

} // namespace quellbox

#endif

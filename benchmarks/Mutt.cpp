#include "benchmarks/Mutt.h"

#include "benchmarks/Bench.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>

namespace quellbox::bench {

namespace {

void Write(const QString& path, const QByteArray& text) {
    QFile file(path);
    Require(file.open(QIODevice::WriteOnly) && file.write(text) == text.size(), "mutt's settings cannot be written");
}

} // namespace

Mutt::Mutt(const QString& folder, const QString& place) : place_(place) {
    const QDir maildir(place_ + QStringLiteral("/maildir"));
    Require(maildir.mkpath(QStringLiteral("new")) && maildir.mkpath(QStringLiteral("tmp")), "no folder for mutt");
    Require(QFile::link(folder.chopped(1), maildir.filePath(QStringLiteral("cur"))), "no link for mutt");
    const QByteArray settings = "set mbox_type=Maildir move=no quit=yes sleep_time=0 confirmappend=no\n"
                                "set folder=" +
                                QFile::encodeName(place_) + "\n";
    Write(place_ + QStringLiteral("/plain.rc"), settings);
    Write(place_ + QStringLiteral("/cached.rc"),
          settings + "set header_cache=" + QFile::encodeName(place_) + "/cache\n");
}

bool Mutt::IsInstalled() {
    return !QStandardPaths::findExecutable(QStringLiteral("mutt")).isEmpty() &&
           !QStandardPaths::findExecutable(QStringLiteral("script")).isEmpty();
}

double Mutt::Open(bool withCache) const {
    const QString settings = place_ + (withCache ? QStringLiteral("/cached.rc") : QStringLiteral("/plain.rc"));
    // mutt wants a terminal, which script lends it; the keys that leave are pushed before the folder is opened.
    const QString command = QStringLiteral("TERM=vt100 mutt -n -F '%1' -R -f '%2/maildir' -e 'push <exit>'");
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardInputFile(QProcess::nullDevice());
    return Time([&] {
        process.start(QStringLiteral("script"),
                      {QStringLiteral("-qec"), command.arg(settings, place_), place_ + QStringLiteral("/screen")});
        Require(process.waitForFinished(300'000) && process.exitCode() == 0, "mutt does not run");
    });
}

} // namespace quellbox::bench

#include "samples/Archive.h"
#include "samples/History.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>

#include <cstdio>
#include <stdexcept>

namespace quellbox::samples {

namespace {

class UsageError : public std::runtime_error {
public:
    explicit UsageError(const QString& text) : std::runtime_error(text.toStdString()) {}
};

struct Options {
    qint64 count = 0;
    quint64 seed = 0;
    qint64 days = 0;
    QString folder;
    QString history;
    QString archive; ///< as the history names it
};

qint64 Number(const QCommandLineParser& parser, const QString& name, qint64 lowest, qint64 highest) {
    bool valid = false;
    const qint64 number = parser.value(name).toLongLong(&valid);
    if (!valid || number < lowest || number > highest) {
        throw UsageError(QStringLiteral("--%1 takes a number from %2 to %3.").arg(name).arg(lowest).arg(highest));
    }
    return number;
}

Options ReadOptions(const QCoreApplication& application) {
    const QString count = QStringLiteral("count");
    const QString seed = QStringLiteral("seed");
    const QString days = QStringLiteral("days");
    const QString out = QStringLiteral("out");
    const QString history = QStringLiteral("history");
    const QString as = QStringLiteral("as");
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Writes an archive of sample messages, the same for the same seed."));
    parser.addHelpOption();
    parser.addOptions(
        {{count, QStringLiteral("How many files."), QStringLiteral("N"), QStringLiteral("1000")},
         {seed, QStringLiteral("Seed of the random numbers."), QStringLiteral("S"), QStringLiteral("1")},
         {days, QStringLiteral("Files are from the last D days."), QStringLiteral("D"), QStringLiteral("14")},
         {out, QStringLiteral("Folder to write; new or empty."), QStringLiteral("DIR")},
         {history, QStringLiteral("File for a history of what was done with other messages; new."),
          QStringLiteral("FILE")},
         {as, QStringLiteral("Folder that the history names as the archive, when not that of --out."),
          QStringLiteral("DIR")}});
    parser.process(application);
    if (parser.value(out).isEmpty()) {
        throw UsageError(QStringLiteral("Say with --out which folder to write."));
    }
    return {Number(parser, count, 0, 10'000'000),
            static_cast<quint64>(Number(parser, seed, 0, 1'000'000'000)),
            Number(parser, days, 1, 36'500),
            parser.value(out),
            parser.value(history),
            parser.value(parser.isSet(as) ? as : out)};
}

void PrepareFolder(const QString& folder) {
    if (!QDir().mkpath(folder)) {
        throw std::runtime_error(QStringLiteral("Cannot create the folder %1.").arg(folder).toStdString());
    }
    if (!QDir(folder).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot)) {
        throw std::runtime_error(
            QStringLiteral("The folder %1 is not empty; give a new or an empty one.").arg(folder).toStdString());
    }
}

void WriteFile(const QDir& folder, const SampleFile& sample, const QDateTime& now) {
    QFile file(folder.filePath(sample.name));
    // NewOnly: nothing that exists is ever overwritten. Unbuffered: no late write changes the time that is set below.
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered) ||
        file.write(sample.bytes) != sample.bytes.size() ||
        !file.setFileTime(now.addMSecs(-sample.ageMs), QFileDevice::FileModificationTime)) {
        throw std::runtime_error(
            QStringLiteral("Cannot write %1: %2").arg(file.fileName(), file.errorString()).toStdString());
    }
}

void WriteArchive(const Options& options) {
    PrepareFolder(options.folder);
    const QDir folder(options.folder);
    const QDateTime now = QDateTime::currentDateTimeUtc();
    for (qint64 index = 0; index < options.count; ++index) {
        WriteFile(folder, MakeSampleFile(options.seed, index, options.days), now);
    }
}

void WriteHistory(const Options& options) {
    if (options.history.isEmpty()) {
        return;
    }
    if (QFile::exists(options.history)) {
        throw std::runtime_error(QStringLiteral("%1 exists; give a new file.").arg(options.history).toStdString());
    }
    const QString archive = QDir(options.archive).absolutePath() + QLatin1Char('/');
    WriteSampleHistory({options.history, QDir::toNativeSeparators(archive), options.seed, options.count, options.days});
}

} // namespace

} // namespace quellbox::samples

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    try {
        const quellbox::samples::Options options = quellbox::samples::ReadOptions(application);
        quellbox::samples::WriteArchive(options);
        quellbox::samples::WriteHistory(options);
        return 0;
    } catch (const quellbox::samples::UsageError& error) {
        std::fprintf(stderr, "%s Try --help.\n", error.what());
        return 2;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}

#include "benchmarks/Bench.h"

#include <QDir>
#include <QFile>

#include <cstdio>
#include <cstdlib>

namespace quellbox::bench {

void Report(const char* figure, double value, const char* unit, const char* wanted) {
    std::printf("%-56s %10.2f %-8s %s\n", figure, value, unit, wanted);
    std::fflush(stdout);
}

void Require(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "WRONG RESULT: %s\n", what);
        std::exit(1);
    }
}

QString FolderArgument(int argc, char** argv, int index) {
    if (index >= argc || !QDir(QFile::decodeName(argv[index])).exists()) {
        std::fprintf(stderr, "usage: %s FOLDER...  (archives of samples)\n", argv[0]);
        std::exit(2);
    }
    return QDir(QFile::decodeName(argv[index])).absolutePath() + QLatin1Char('/');
}

qint64 MemoryKiB(const char* field) {
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly)) {
        return 0;
    }
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith(field)) {
            return line.simplified().split(' ').value(1).toLongLong();
        }
    }
    return 0;
}

} // namespace quellbox::bench

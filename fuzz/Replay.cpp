#include "fuzz/FuzzTarget.h"

#include <QByteArray>
#include <QDirIterator>
#include <QFile>

#include <cstdio>

/// Feeds every file of the given folders to the target that it is linked with: what the fuzzer has found once stays
/// checked without it. Fails when there is no file, for then nothing was checked.
int main(int argc, char** argv) {
    int count = 0;
    for (int index = 1; index < argc; ++index) {
        QDirIterator files(QFile::decodeName(argv[index]), QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            if (!file.open(QIODevice::ReadOnly)) {
                std::fprintf(stderr, "Cannot read %s\n", qPrintable(file.fileName()));
                return 1;
            }
            const QByteArray bytes = file.readAll();
            // Said beforehand, because a broken rule ends the program.
            std::printf("%s\n", qPrintable(file.fileName()));
            std::fflush(stdout);
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                                   static_cast<std::size_t>(bytes.size()));
            ++count;
        }
    }
    std::printf("%d inputs\n", count);
    return count > 0 ? 0 : 1;
}

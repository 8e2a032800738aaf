#include "tests/support/TimeZone.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#ifdef _WIN32
#include <QFile>

#include <windows.h>

namespace {

/// Writes down with which arguments a test has had this program started, and says whether that was so.
bool WroteArguments(const QString& path) {
    if (path.isEmpty()) {
        return false;
    }
    QString line = QString::fromWCharArray(GetCommandLineW());
    const QChar end = QLatin1Char(line.startsWith(QLatin1Char('"')) ? '"' : ' ');
    line = line.mid(line.indexOf(end, 1) + 1).trimmed();
    QFile file(path + QLatin1String(".part"));
    if (file.open(QIODevice::WriteOnly)) {
        file.write(line.toUtf8());
        file.close();
        file.rename(path);
    }
    return true;
}

} // namespace
#endif

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
#ifdef _WIN32
    if (WroteArguments(qEnvironmentVariable("QUELLBOX_TEST_ARGUMENTS"))) {
        return 0;
    }
#endif
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

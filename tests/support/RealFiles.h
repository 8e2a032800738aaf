#pragma once

#include "platform/LocalFileSystem.h"
#include "tests/support/FileNames.h"

#include <QByteArray>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

namespace quellbox {

inline QString Text(const char* text) {
    return QString::fromUtf8(text);
}

/// The real file system, in a folder of each test's own.
class RealFilesTest : public testing::Test {
protected:
    QString Path(const char* name) const { return folder_.path() + QLatin1Char('/') + Text(name); }

    /// A path as the system takes it.
    QByteArray Native(const char* name) const { return QFile::encodeName(folder_.path()) + "/" + name; }
    static QByteArray Native(const QString& path) { return QFile::encodeName(path); }

    /// What is in a folder, in the order of the names.
    QStringList NamesIn(const QString& folder) const {
        QStringList names = FileNames(*files_, folder);
        names.sort();
        return names;
    }

    QTemporaryDir folder_;
    std::unique_ptr<FileSystem> files_ = MakeLocalFileSystem();
};

/// An environment variable that gets its former value back in the end.
class ChangedVariable {
public:
    ChangedVariable(const char* name, const QByteArray& value)
        : name_(name), before_(qgetenv(name)), wasSet_(qEnvironmentVariableIsSet(name)) {
        qputenv(name, value);
    }
    ~ChangedVariable() { wasSet_ ? qputenv(name_, before_) : qunsetenv(name_); }
    ChangedVariable(const ChangedVariable&) = delete;
    ChangedVariable& operator=(const ChangedVariable&) = delete;

    const QByteArray& Before() const { return before_; }

private:
    const char* name_;
    QByteArray before_;
    bool wasSet_;
};

} // namespace quellbox

#pragma once

#include "platform/RuntimeError.h"
#include "platform/SettingsStore.h"
#include "tests/support/RealFiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#ifdef _WIN32
#include "platform/WideText.h"
#include "platform/WindowsRegistry.h"
#endif

namespace quellbox {

/// The store of the system, under a name of each test's own.
class SettingsStoreTest : public testing::Test {
protected:
    std::unique_ptr<SettingsStore> Open() const { return OpenSettingsStore(name_); }

    static std::optional<QString> Reason(SettingsStore& store) {
        try {
            store.Flush();
            return std::nullopt;
        } catch (const FileError& error) {
            return error.Reason();
        }
    }

#ifdef _WIN32
    ~SettingsStoreTest() override {
        RegDeleteTreeW(HKEY_CURRENT_USER, Wide(Place()));
        RegDeleteTreeW(HKEY_CURRENT_USER, Wide(Place() + Text("2")));
    }

    /// Under HKEY_CURRENT_USER.
    QString Place() const {
        return Text("Software\\") + name_;
    }
    QString ErrorPath() const {
        return Text("HKEY_CURRENT_USER\\") + Place() + Text("\\Settings");
    }

    /// A key that lasts only until the system ends takes no key below it that lasts longer.
    void MakeUnwritable() const {
        HKEY key = nullptr;
        ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, Wide(Place()), 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS,
                                  nullptr, &key, nullptr),
                  ERROR_SUCCESS);
        RegCloseKey(key);
    }
    void MakeWritable() const {
        ASSERT_EQ(RegDeleteTreeW(HKEY_CURRENT_USER, Wide(Place())), ERROR_SUCCESS);
    }

    const QString name_ = Text("quellbox-test-") + QString::number(QCoreApplication::applicationPid());
#else
    QString FilePath() const {
        return folder_.path() + Text("/app/settings.ini");
    }
    QString ErrorPath() const {
        return FilePath();
    }

    void WriteByHand(const QByteArray& bytes) const {
        ASSERT_TRUE(QDir().mkpath(QFileInfo(FilePath()).path()));
        QFile file(FilePath());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    /// A file in the place of the folder.
    void MakeUnwritable() const {
        QFile obstacle(folder_.path() + Text("/app"));
        ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
    }
    void MakeWritable() const {
        ASSERT_TRUE(QFile::remove(folder_.path() + Text("/app")));
    }

    const QString name_ = Text("app");

private:
    QTemporaryDir folder_;
    ChangedVariable configuration_{"XDG_CONFIG_HOME", folder_.path().toUtf8()};
#endif
};

} // namespace quellbox

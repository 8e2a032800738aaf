#ifndef _WIN32

#include "platform/RuntimeError.h"
#include "platform/SettingsStore.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

#include <functional>
#include <utility>

namespace quellbox {

namespace {

/// For QSettings both kinds of slashes begin the name of a subsection.
QString EscapedKey(const QString& key) {
    QString escaped = key;
    escaped.replace(QLatin1Char('%'), QLatin1String("%25"));
    escaped.replace(QLatin1Char('/'), QLatin1String("%2F"));
    escaped.replace(QLatin1Char('\\'), QLatin1String("%5C"));
    return escaped;
}

QString UnescapedKey(const QString& escaped) {
    QString key = escaped;
    key.replace(QLatin1String("%2F"), QLatin1String("/"));
    key.replace(QLatin1String("%5C"), QLatin1String("\\"));
    key.replace(QLatin1String("%25"), QLatin1String("%"));
    return key;
}

/// Tells when it is about to write by itself, and leaves that to who is told.
class AttendedSettings : public QSettings {
public:
    AttendedSettings(const QString& file, std::function<void()> writingIsDue)
        : QSettings(file, IniFormat), writingIsDue_(std::move(writingIsDue)) {
        setFallbacksEnabled(false);
    }

protected:
    bool event(QEvent* event) override {
        if (event->type() != QEvent::UpdateRequest) {
            return QSettings::event(event);
        }
        writingIsDue_();
        return true;
    }

private:
    std::function<void()> writingIsDue_;
};

/// QSettings leaves out what it does not understand of the file, and it is gone from the file with the next value that
/// is stored. That may happen whenever QSettings looks at the file, so everything that makes it look goes through
/// Synchronize(), which keeps the file as it was. To leave out some lines is no failure to store the others.
class QSettingsStore : public SettingsStore {
public:
    explicit QSettingsStore(QString file) : file_(std::move(file)) { Synchronize(); }

    ~QSettingsStore() override { Synchronize(); }

    std::optional<QString> Value(const QString& section, const QString& key) const override {
        const QVariant value =
            section.isEmpty() || key.isEmpty() ? QVariant() : settings_->value(Address(section, key));
        if (!value.isValid()) {
            return std::nullopt;
        }
        // A value with commas that somebody typed without quotes arrives as a list.
        return value.typeId() == QMetaType::QStringList ? value.toStringList().join(QLatin1Char(','))
                                                        : value.toString();
    }

    void SetValue(const QString& section, const QString& key, const QString& value) override {
        if (section.isEmpty() || key.isEmpty()) {
            refused_ = true;
            return;
        }
        settings_->setValue(Address(section, key), value);
    }

    QStringList Keys(const QString& section) const override {
        if (section.isEmpty()) {
            return {};
        }
        settings_->beginGroup(EscapedKey(section));
        QStringList keys = settings_->childKeys();
        settings_->endGroup();
        keys.removeAll(QString()); // a line of the file that begins with "="
        for (QString& key : keys) {
            key = UnescapedKey(key);
        }
        return keys;
    }

    void RemoveSection(const QString& section) override {
        if (section.isEmpty()) {
            refused_ = true; // QSettings would remove all sections
            return;
        }
        settings_->remove(EscapedKey(section));
    }

    void Flush() override {
        Synchronize();
        const bool refused = std::exchange(refused_, false);
        if (refused || settings_->status() != QSettings::NoError || !settings_->isWritable()) {
            throw FileError(file_, QCoreApplication::translate("quellbox",
                                                               "The settings cannot be written. Make sure that you may "
                                                               "write this file and its folder, and that the disk is "
                                                               "not full."));
        }
    }

    QStringList TakeWarnings() override { return std::exchange(warnings_, {}); }

private:
    /// Reads what others have written, and writes what is pending.
    void Synchronize() {
        const QByteArray onDisk = FileContents(file_);
        if (settings_ == nullptr || settings_->status() != QSettings::NoError) {
            Open();
        } else {
            settings_->sync();
        }
        settings_->allKeys(); // a section is looked at only when something of it is asked for
        TellIfUnreadable();
        if (settings_->status() == QSettings::FormatError) {
            KeepBroken(onDisk);
            Open(); // to know whether the rest could be written
        }
    }

    /// What cannot be read would pass for settings that were never made.
    void TellIfUnreadable() {
        const QFileInfo file(file_);
        if (file.exists() && !file.isReadable() && !std::exchange(isTold_, true)) {
            warnings_.append(QCoreApplication::translate("quellbox", "The settings cannot be read. Make sure that you "
                                                                     "may read the file %1.")
                                 .arg(file_));
        }
    }

    /// The status keeps the first error for good, so that a new object is needed after one. It takes over what is
    /// pending from the old one, and synchronizes.
    void Open() {
        settings_ = std::make_unique<AttendedSettings>(file_, [this] {
            // Not at once, since the object that tells it may be replaced.
            QMetaObject::invokeMethod(
                &context_, [this] { Synchronize(); }, Qt::QueuedConnection);
        });
    }

    static QByteArray FileContents(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    void KeepBroken(const QByteArray& contents) {
        QString copy = ExistingCopy(contents);
        if (copy.isEmpty()) {
            copy = MakeCopy(contents);
        }
        const QString text =
            copy.isEmpty()
                ? QCoreApplication::translate("quellbox", "Some lines of the settings cannot be understood and are "
                                                          "left out. They are in the file %1, which the next settings "
                                                          "that are stored will replace.")
                      .arg(file_)
                : QCoreApplication::translate("quellbox", "Some lines of the settings cannot be understood and are "
                                                          "left out. The file with all its lines is kept as %1.")
                      .arg(copy);
        warnings_.append(text);
    }

    /// A start after which nothing was stored has made one already.
    QString ExistingCopy(const QByteArray& contents) const {
        const QFileInfo file(file_);
        for (const QFileInfo& copy : file.dir().entryInfoList({file.fileName() + QStringLiteral(".*.broken")})) {
            if (copy.size() == contents.size() && FileContents(copy.filePath()) == contents) {
                return copy.filePath();
            }
        }
        return {};
    }

    /// Returns the new file; an empty text when it cannot be written.
    QString MakeCopy(const QByteArray& contents) const {
        const QString moment = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss-zzz"));
        QFile copy(QStringLiteral("%1.%2.broken").arg(file_, moment));
        const bool isWritten =
            copy.open(QIODevice::WriteOnly | QIODevice::NewOnly, QFile::permissions(file_) | QFile::WriteOwner) &&
            copy.write(contents) == contents.size() && copy.flush();
        return isWritten ? copy.fileName() : QString();
    }

    static QString Address(const QString& section, const QString& key) {
        return EscapedKey(section) + QLatin1Char('/') + EscapedKey(key);
    }

    QString file_;
    QObject context_;
    std::unique_ptr<AttendedSettings> settings_;
    QStringList warnings_;

    /// Whether a value was refused since the last flush.
    bool refused_ = false;
    bool isTold_ = false;
};

} // namespace

std::unique_ptr<SettingsStore> OpenSettingsStore(const QString& applicationName) {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return std::make_unique<QSettingsStore>(folder + QLatin1Char('/') + applicationName +
                                            QLatin1String("/settings.ini"));
}

} // namespace quellbox

#endif

#ifndef _WIN32

#include "platform/RuntimeError.h"
#include "platform/SettingsStore.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>
#include <QSettings>
#include <QStandardPaths>

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

class QSettingsStore : public SettingsStore {
public:
    explicit QSettingsStore(const QString& file) : settings_(OpenFile(file)) {}

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
        const bool refused = std::exchange(refused_, false);
        if (settings_->status() == QSettings::AccessError) {
            // The status of the object keeps its first error. The new object shares the pending values with the old
            // one.
            settings_ = OpenFile(settings_->fileName());
        }
        settings_->sync();
        if (settings_->status() == QSettings::FormatError) {
            const QString file = settings_->fileName();
            settings_ = OpenFile(file); // which reads the file again, when somebody has corrected it
            throw FileError(file, QCoreApplication::translate("quellbox",
                                                              "Parts of the settings cannot be understood and are "
                                                              "left out. The file as it was is kept beside them, "
                                                              "under a name with \"broken\" at its end."));
        }
        if (refused || settings_->status() != QSettings::NoError || !settings_->isWritable()) {
            throw FileError(settings_->fileName(),
                            QCoreApplication::translate("quellbox", "The settings cannot be written. Make sure that "
                                                                    "you may write this file and its folder, and that "
                                                                    "the disk is not full."));
        }
    }

private:
    /// Lines that QSettings cannot parse are lost when the first value is stored.
    static void KeepBroken(const QString& file) {
        const QString moment = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
        QFile::copy(file, QStringLiteral("%1.%2.broken").arg(file, moment));
    }

    static std::unique_ptr<QSettings> OpenFile(const QString& file) {
        auto settings = std::make_unique<QSettings>(file, QSettings::IniFormat);
        settings->setFallbacksEnabled(false);
        if (settings->status() == QSettings::FormatError) {
            KeepBroken(file);
        }
        return settings;
    }

    static QString Address(const QString& section, const QString& key) {
        return EscapedKey(section) + QLatin1Char('/') + EscapedKey(key);
    }

    std::unique_ptr<QSettings> settings_;

    /// Whether a value was refused since the last flush.
    bool refused_ = false;
};

} // namespace

std::unique_ptr<SettingsStore> OpenSettingsStore(const QString& applicationName) {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return std::make_unique<QSettingsStore>(folder + QLatin1Char('/') + applicationName +
                                            QLatin1String("/settings.ini"));
}

} // namespace quellbox

#endif

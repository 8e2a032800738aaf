#include "platform/RuntimeError.h"
#include "platform/SettingsStore.h"

#include <QCoreApplication>
#include <QSettings>
#include <QStandardPaths>

namespace quellbox {

namespace {

/// QSettings takes both separators for a step into a subsection, and it refuses an empty key.
QString EscapedKey(const QString& key) {
    QString escaped = key;
    escaped.replace(QLatin1Char('%'), QLatin1String("%25"));
    escaped.replace(QLatin1Char('/'), QLatin1String("%2F"));
    escaped.replace(QLatin1Char('\\'), QLatin1String("%5C"));
    return escaped.isEmpty() ? QStringLiteral("%") : escaped;
}

QString UnescapedKey(const QString& escaped) {
    QString key = escaped == QLatin1String("%") ? QString() : escaped;
    key.replace(QLatin1String("%2F"), QLatin1String("/"));
    key.replace(QLatin1String("%5C"), QLatin1String("\\"));
    key.replace(QLatin1String("%25"), QLatin1String("%"));
    return key;
}

class QSettingsStore : public SettingsStore {
public:
    QSettingsStore(const QString& place, QSettings::Format format) : settings_(place, format) {
        settings_.setFallbacksEnabled(false);
    }

    std::optional<QString> Value(const QString& section, const QString& key) const override {
        const QVariant value = settings_.value(Address(section, key));
        if (!value.isValid()) {
            return std::nullopt;
        }
        // A value with commas that somebody typed without quotes arrives as a list.
        return value.typeId() == QMetaType::QStringList ? value.toStringList().join(QLatin1Char(','))
                                                        : value.toString();
    }

    void SetValue(const QString& section, const QString& key, const QString& value) override {
        settings_.setValue(Address(section, key), value);
    }

    QStringList Keys(const QString& section) const override {
        settings_.beginGroup(EscapedKey(section));
        QStringList keys = settings_.childKeys();
        settings_.endGroup();
        for (QString& key : keys) {
            key = UnescapedKey(key);
        }
        return keys;
    }

    void RemoveSection(const QString& section) override { settings_.remove(EscapedKey(section)); }

    void Flush() override {
        settings_.sync();
        if (settings_.status() == QSettings::FormatError) {
            throw FileError(settings_.fileName(),
                            QCoreApplication::translate("quellbox", "The settings cannot be understood. Correct the "
                                                                    "file, or delete it to start with new settings."));
        }
        if (settings_.status() != QSettings::NoError || !settings_.isWritable()) {
            throw FileError(settings_.fileName(),
                            QCoreApplication::translate("quellbox", "The settings cannot be written. Make sure that "
                                                                    "you may write this file and its folder, and that "
                                                                    "the disk is not full."));
        }
    }

private:
    static QString Address(const QString& section, const QString& key) {
        return EscapedKey(section) + QLatin1Char('/') + EscapedKey(key);
    }

    /// Mutable, since asking for the keys of a section means to step into it for a moment.
    mutable QSettings settings_;
};

} // namespace

std::unique_ptr<SettingsStore> OpenSettingsStore(const QString& applicationName) {
#ifdef _WIN32
    return std::make_unique<QSettingsStore>(QStringLiteral("HKEY_CURRENT_USER\\Software\\") + applicationName,
                                            QSettings::NativeFormat);
#else
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return std::make_unique<QSettingsStore>(
        folder + QLatin1Char('/') + applicationName + QLatin1String("/settings.ini"), QSettings::IniFormat);
#endif
}

} // namespace quellbox

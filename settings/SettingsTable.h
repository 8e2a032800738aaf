#pragma once

#include "platform/SettingsStore.h"
#include "settings/AppState.h"

#include <QLatin1String>
#include <QString>
#include <QStringList>

#include <variant>
#include <vector>

namespace quellbox {

/// The member of AppState, or of its server "own", that a setting fills. Its type is the type of the setting: folder,
/// 16-bit integer, 32-bit integer, Boolean or text.
using SettingMember = std::variant<Folder AppState::*, qint16 AppState::*, qint32 AppState::*, bool AppState::*,
                                   QString AppState::*, bool OwnServer::*, QString OwnServer::*>;

/// One single-valued setting of the program.
struct SettingRow {
    QLatin1String key;
    QLatin1String defaultText; ///< what an absent key reads as; folders read as the program's folder instead
    SettingMember member;
    bool (*isFit)(const QString& text) = nullptr; ///< for a text that is a name of something
    const char* unfit = nullptr;                  ///< what the user reads of one that is not, not yet translated
};

/// Every setting, the two folders first, then in the order in which SaveSettings() writes.
const std::vector<SettingRow>& SettingsTable();

/// The stored text of a setting, or `defaultText` when the key is absent.
QString ReadSetting(const SettingsStore& store, const QString& key, const QString& defaultText = QString());

/// Stores the text of a setting. The store may keep it pending until it is flushed.
void WriteSetting(SettingsStore& store, const QString& key, const QString& value);

/// Reads every setting into `state`. `programDirectory` is the default of both folders. FilterMessages is read only
/// while there is a day window, and is 0 otherwise. A stored text that cannot be converted gives way to the default and
/// stays in the store; the result holds one text for each, fit for the user, that names the key and what is stored.
[[nodiscard]] QStringList LoadSettings(const SettingsStore& store, const Folder& programDirectory, AppState& state);

/// Writes every setting but the two folders, which are stored where the user chooses them, and flushes the store.
/// Throws FileError when the store cannot be written.
void SaveSettings(SettingsStore& store, const AppState& state);

} // namespace quellbox

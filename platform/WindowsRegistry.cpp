#ifdef _WIN32

#include "platform/WindowsRegistry.h"

#include "platform/WideText.h"

#include <QtEndian>

#include <cstring>
#include <limits>
#include <string>
#include <vector>

namespace quellbox {

namespace {

struct RegistryValue {
    DWORD type = REG_NONE;
    QByteArray data;
};

std::optional<RegistryValue> ReadValue(HKEY key, const QString& name) {
    RegistryValue value;
    DWORD size = 256; // enough for most
    LSTATUS status = ERROR_MORE_DATA;
    while (status == ERROR_MORE_DATA) {
        // Another program may lengthen the value between two calls.
        value.data.resize(static_cast<qsizetype>(size));
        status =
            RegQueryValueExW(key, Wide(name), nullptr, &value.type, reinterpret_cast<BYTE*>(value.data.data()), &size);
    }
    value.data.truncate(static_cast<qsizetype>(size));
    return status == ERROR_SUCCESS ? std::optional(value) : std::nullopt;
}

/// The parts of a text that NULs end. Whoever wrote the data may have left out the last one, or half a character.
QStringList TextsOf(const QByteArray& data) {
    const size_t length = static_cast<size_t>(data.size()) / sizeof(wchar_t);
    std::wstring text(length, L'\0');
    std::memcpy(text.data(), data.constData(), length * sizeof(wchar_t));
    return FromWide(text.data(), length).split(QChar(QChar::Null));
}

/// With the variables of the environment in their places, as is meant by whoever chooses this type.
QString Expanded(const QString& text) {
    std::wstring expanded(ExpandEnvironmentStringsW(Wide(text), nullptr, 0), L'\0');
    const DWORD size = ExpandEnvironmentStringsW(Wide(text), expanded.data(), static_cast<DWORD>(expanded.size()));
    return size == 0 || size > expanded.size() ? text : FromWide(expanded.data(), size - 1);
}

/// An empty one ends the list.
QString Joined(const QStringList& texts) {
    return texts.mid(0, texts.indexOf(QString())).join(QLatin1Char(','));
}

/// The decimal number that the registry editor shows.
template <typename Number>
std::optional<QString> NumberOf(const QByteArray& data, Number (*convert)(const void*)) {
    if (data.size() != sizeof(Number)) {
        return std::nullopt;
    }
    return QString::number(convert(data.constData()));
}

std::optional<QString> TextOf(const RegistryValue& value) {
    switch (value.type) {
    case REG_SZ:
        return TextsOf(value.data).constFirst();
    case REG_EXPAND_SZ:
        return Expanded(TextsOf(value.data).constFirst());
    case REG_MULTI_SZ:
        return Joined(TextsOf(value.data));
    case REG_DWORD:
        return NumberOf<quint32>(value.data, qFromLittleEndian<quint32>);
    case REG_DWORD_BIG_ENDIAN:
        return NumberOf<quint32>(value.data, qFromBigEndian<quint32>);
    case REG_QWORD:
        return NumberOf<quint64>(value.data, qFromLittleEndian<quint64>);
    default:
        return std::nullopt;
    }
}

} // namespace

std::optional<QString> ReadText(HKEY key, const QString& name) {
    const auto value = ReadValue(key, name);
    return value ? TextOf(*value) : std::nullopt;
}

LSTATUS WriteText(HKEY key, const QString& name, const QString& text) {
    const size_t size = (static_cast<size_t>(text.size()) + 1) * sizeof(wchar_t);
    if (size > std::numeric_limits<DWORD>::max()) {
        return ERROR_INVALID_PARAMETER;
    }
    return RegSetValueExW(key, Wide(name), 0, REG_SZ, reinterpret_cast<const BYTE*>(text.utf16()),
                          static_cast<DWORD>(size));
}

QStringList ValueNames(HKEY key) {
    QStringList names;
    std::vector<wchar_t> name(16384); // the longest name that there can be, and a NUL
    auto length = static_cast<DWORD>(name.size());
    while (RegEnumValueW(key, static_cast<DWORD>(names.size()), name.data(), &length, nullptr, nullptr, nullptr,
                         nullptr) == ERROR_SUCCESS) {
        names += FromWide(name.data(), length);
        length = static_cast<DWORD>(name.size());
    }
    return names;
}

} // namespace quellbox

#endif

#include "platform/Shell.h"

#ifdef _WIN32
#include <windows.h>

#include <shellapi.h>
#include <winnetwk.h>

#include <array>
#else
#include "platform/PathBytes.h"

#include <QProcess>

#include <array>
#include <pwd.h>
#include <unistd.h>
#endif

namespace quellbox {

#ifdef _WIN32

QString Shell::UserName() const {
    std::array<wchar_t, 256> name{};
    DWORD capacity = 255;
    return WNetGetUserW(nullptr, name.data(), &capacity) == NO_ERROR ? QString::fromWCharArray(name.data()) : QString();
}

bool Shell::Open(const QString& target) const {
    const std::wstring text = target.toStdWString();
    const HINSTANCE started = ShellExecuteW(nullptr, L"open", text.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
    // The system documents every value above 32 as success.
    return reinterpret_cast<INT_PTR>(started) > 32;
}

bool Shell::OpenMessage(const QString& path) const {
    const std::wstring parameters = (QStringLiteral("/eml:") + path).toStdWString();
    const HINSTANCE started = ShellExecuteW(nullptr, L"open", L"msimn", parameters.c_str(), nullptr, SW_SHOWNORMAL);
    return reinterpret_cast<INT_PTR>(started) > 32;
}

bool Shell::HasHelpViewer() const {
    return true;
}

// The viewer is a part of the system that not every program needs; it is loaded when help is first asked for, and
// stays.
bool Shell::ShowHelp(quintptr owner, const QString& helpFile, HelpCommand command, quintptr data) const {
    using HtmlHelp = HWND(WINAPI*)(HWND, LPCWSTR, UINT, DWORD_PTR);
    constexpr WORD htmlHelpW = 15; // its number in the library, which does not name it
    static const HMODULE library = LoadLibraryExW(L"hhctrl.ocx", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (library == nullptr) {
        return false;
    }
    const auto show =
        reinterpret_cast<HtmlHelp>(reinterpret_cast<void*>(GetProcAddress(library, MAKEINTRESOURCEA(htmlHelpW))));
    const std::wstring file = helpFile.toStdWString();
    return show != nullptr &&
           show(reinterpret_cast<HWND>(owner), file.c_str(), static_cast<UINT>(command), data) != nullptr;
}

#else

namespace {

/// What xdg-open gets for a path or an address.
QString OpenerArgument(const QString& target) {
    if (target.startsWith(QLatin1Char('-'))) {
        return QLatin1String("./") + target;
    }
    // Only an address can carry the bytes of a name that is not valid UTF-8.
    if (target.startsWith(QLatin1Char('/')) && target.contains(QChar(QChar::ReplacementCharacter))) {
        return QLatin1String("file://") + QString::fromLatin1(PathBytes(target).toPercentEncoding("/"));
    }
    return target;
}

} // namespace

QString Shell::UserName() const {
    std::array<char, 16 * 1024> buffer{};
    passwd entry{};
    passwd* found = nullptr;
    const int error = ::getpwuid_r(::geteuid(), &entry, buffer.data(), buffer.size(), &found);
    return error == 0 && found != nullptr ? QString::fromLocal8Bit(entry.pw_name) : QString();
}

bool Shell::Open(const QString& target) const {
    return !target.isEmpty() && QProcess::startDetached(QStringLiteral("xdg-open"), {OpenerArgument(target)});
}

bool Shell::OpenMessage(const QString& path) const {
    return Open(path);
}

bool Shell::HasHelpViewer() const {
    return false;
}

bool Shell::ShowHelp(quintptr /*owner*/, const QString& /*helpFile*/, HelpCommand /*command*/,
                     quintptr /*data*/) const {
    return false;
}

#endif

} // namespace quellbox

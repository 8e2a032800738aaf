#ifdef _WIN32

#include "platform/Shell.h"

#include <QDir>

#include <array>
#include <windows.h>

#include <shellapi.h>
#include <winnetwk.h>

namespace quellbox {

namespace {

/// Has the shell open `file`. The window from which the user asks for it owns what the shell itself may show.
bool Execute(const std::wstring& file, const wchar_t* parameters) {
    const HINSTANCE started =
        ShellExecuteW(GetActiveWindow(), L"open", file.c_str(), parameters, nullptr, SW_SHOWNORMAL);
    // The system documents every value above 32 as success.
    return reinterpret_cast<INT_PTR>(started) > 32;
}

} // namespace

QString Shell::UserName() const {
    std::array<wchar_t, 256> name{};
    DWORD capacity = 255;
    return WNetGetUserW(nullptr, name.data(), &capacity) == NO_ERROR ? QString::fromWCharArray(name.data()) : QString();
}

bool Shell::Open(const QString& target) const {
    // Without a name the shell would open the current folder.
    return !target.isEmpty() && Execute(target.toStdWString(), nullptr);
}

bool Shell::OpenMessage(const QString& path) const {
    // The mail program takes all that follows for the path, so quotes would be a part of it.
    const QString parameters = QStringLiteral("/eml:") + QDir::toNativeSeparators(path);
    return Execute(L"msimn", parameters.toStdWString().c_str());
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
    if (show == nullptr) {
        return false;
    }
    // What comes back tells no more than that a topic is missing, and that the viewer reports itself.
    show(reinterpret_cast<HWND>(owner), file.c_str(), static_cast<UINT>(command), data);
    return true;
}

} // namespace quellbox

#endif

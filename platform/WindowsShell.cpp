#ifdef _WIN32

#include "platform/Shell.h"

#include <QDir>

#include <array>
#include <windows.h>

#include <shellapi.h>
#include <winnetwk.h>

namespace quellbox {

namespace {

/// Opens `file` with the shell. The active window owns whatever dialogs the shell may show.
bool Execute(const std::wstring& file, const wchar_t* parameters) {
    const HINSTANCE started =
        ShellExecuteW(GetActiveWindow(), L"open", file.c_str(), parameters, nullptr, SW_SHOWNORMAL);
    // The system documents every value above 32 as success.
    return reinterpret_cast<INT_PTR>(started) > 32;
}

class WindowsShell : public Shell {
public:
    QString UserName() const override {
        std::array<wchar_t, 256> name{};
        DWORD capacity = 255;
        return WNetGetUserW(nullptr, name.data(), &capacity) == NO_ERROR ? QString::fromWCharArray(name.data())
                                                                         : QString();
    }

    bool Open(const QString& target) const override {
        // For an empty name the shell would open the current folder.
        return !target.isEmpty() && Execute(target.toStdWString(), nullptr);
    }

    bool OpenMessage(const QString& path) const override {
        // For the mail program everything that follows is the path, so quotes would be a part of it.
        const QString parameters = QStringLiteral("/eml:") + QDir::toNativeSeparators(path);
        return Execute(L"msimn", parameters.toStdWString().c_str());
    }

    bool HasHelpViewer() const override { return true; }

    // The viewer is a library of the system; it is loaded when help is first shown, and stays loaded.
    bool ShowHelp(quintptr owner, const QString& helpFile, HelpCommand command, quintptr data) const override {
        using HtmlHelp = HWND(WINAPI*)(HWND, LPCWSTR, UINT, DWORD_PTR);
        constexpr WORD htmlHelpW = 15; // the function has only a number in the library
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
        // The result is only about a missing topic, which the viewer reports itself.
        show(reinterpret_cast<HWND>(owner), file.c_str(), static_cast<UINT>(command), data);
        return true;
    }
};

} // namespace

std::unique_ptr<Shell> MakeShell() {
    return std::make_unique<WindowsShell>();
}

} // namespace quellbox

#endif

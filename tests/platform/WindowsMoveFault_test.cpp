#include "platform/RuntimeError.h"
#include "platform/WindowsMove.h"
#include "tests/support/RealFiles.h"

#ifdef __MINGW32__

#include <QDir>

#include <functional>
#include <string>

namespace {

/// What a test lets calls of the system do beforehand. An answer other than 0 is the error of the call, which is then
/// not made.
struct Hooks {
    std::function<DWORD(const std::wstring& path)> open;
    std::function<DWORD(const std::wstring& path)> remove;
    std::function<DWORD(FILE_INFO_BY_HANDLE_CLASS what)> change;
};

Hooks* hooks = nullptr; // no object, since the first calls are made before main()

template <typename Function>
Function* Real(const char* name, Function*) {
    void* address = reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), name));
    return reinterpret_cast<Function*>(address);
}

template <typename Hook, typename Argument>
bool Refuses(Hook hook, Argument argument) {
    if (hooks == nullptr || !(hooks->*hook)) {
        return false;
    }
    const DWORD error = (hooks->*hook)(argument);
    SetLastError(error);
    return error != 0;
}

HANDLE WINAPI HookedCreateFile(LPCWSTR path, DWORD access, DWORD sharing, SECURITY_ATTRIBUTES* security,
                               DWORD disposition, DWORD flags, HANDLE pattern) {
    static const auto real = Real("CreateFileW", static_cast<decltype(&HookedCreateFile)>(nullptr));
    return Refuses(&Hooks::open, path) ? INVALID_HANDLE_VALUE
                                       : real(path, access, sharing, security, disposition, flags, pattern);
}

BOOL WINAPI HookedDeleteFile(LPCWSTR path) {
    static const auto real = Real("DeleteFileW", static_cast<decltype(&HookedDeleteFile)>(nullptr));
    return Refuses(&Hooks::remove, path) ? FALSE : real(path);
}

BOOL WINAPI HookedSetFileInformation(HANDLE file, FILE_INFO_BY_HANDLE_CLASS what, void* info, DWORD size) {
    static const auto real =
        Real("SetFileInformationByHandle", static_cast<decltype(&HookedSetFileInformation)>(nullptr));
    return Refuses(&Hooks::change, what) ? FALSE : real(file, what, info, size);
}

} // namespace

// Calls of the system go through these pointers; here they stand before those of the system's import library.
extern "C" {
extern decltype(&HookedCreateFile) importOfCreateFile __asm__("__imp_CreateFileW");
extern decltype(&HookedDeleteFile) importOfDeleteFile __asm__("__imp_DeleteFileW");
extern decltype(&HookedSetFileInformation) importOfSetFileInformation __asm__("__imp_SetFileInformationByHandle");
decltype(&HookedCreateFile) importOfCreateFile = &HookedCreateFile;
decltype(&HookedDeleteFile) importOfDeleteFile = &HookedDeleteFile;
decltype(&HookedSetFileInformation) importOfSetFileInformation = &HookedSetFileInformation;
}

// SQLite takes the addresses of the functions. The import library has these jumps for that, together with pointers of
// its own.
__asm__(".text\n"
        ".globl CreateFileW\n"
        "CreateFileW: jmp *__imp_CreateFileW(%rip)\n"
        ".globl DeleteFileW\n"
        "DeleteFileW: jmp *__imp_DeleteFileW(%rip)\n");

namespace quellbox {

namespace {

constexpr DWORD shared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

class WindowsMoveFaultTest : public RealFilesTest {
protected:
    void SetUp() override {
        ASSERT_TRUE(QDir(folder_.path()).mkdir(Text("archive")));
        ASSERT_TRUE(QDir(folder_.path()).mkdir(Text("pickup")));
        files_->WriteWhole(from_, "message");
        hooks = &hooks_;
    }

    void TearDown() override { hooks = nullptr; }

    static HANDLE OpenForAll(const QString& path, DWORD access) {
        return CreateFileW(System(path).c_str(), access, shared, nullptr, OPEN_EXISTING, 0, nullptr);
    }

    static std::wstring System(const QString& path) { return QDir::toNativeSeparators(path).toStdWString(); }

    static bool Is(const std::wstring& systemPath, const QString& path) {
        return QString::fromStdWString(systemPath).endsWith(QDir::toNativeSeparators(path));
    }

    /// Lets `answer` say how the removal of the source ends.
    void OnRemoval(const std::function<DWORD()>& answer) {
        hooks_.remove = [this, answer](const std::wstring& path) { return Is(path, from_) ? answer() : 0; };
    }

    /// From now on the source cannot be opened.
    void OnOpening(DWORD error) {
        hooks_.open = [this, error](const std::wstring& path) { return Is(path, from_) ? error : 0; };
    }

    void RemoveSource() {
        hooks = nullptr;
        EXPECT_NE(DeleteFileW(System(from_).c_str()), 0);
        hooks = &hooks_;
    }

    static void RemoveOnClose(HANDLE file) {
        FILE_DISPOSITION_INFO disposition{};
        disposition.DeleteFile = TRUE;
        EXPECT_NE(SetFileInformationByHandle(file, FileDispositionInfo, &disposition, sizeof disposition), 0);
    }

    /// Why the move failed; empty when it did not.
    QString Move() {
        try {
            MoveByCopy(from_, to_);
            return {};
        } catch (const FileError& error) {
            return error.Reason();
        }
    }

    void ExpectOnlyIn(const QString& path) const {
        const QStringList one{Text("a.EML")};
        EXPECT_EQ(NamesIn(folder_.path() + Text("/archive")), path == from_ ? one : QStringList());
        EXPECT_EQ(NamesIn(folder_.path() + Text("/pickup")), path == to_ ? one : QStringList());
        EXPECT_EQ(ReadWhole(*files_, path), "message");
    }

    const QString from_ = folder_.path() + Text("/archive/a.EML");
    const QString to_ = folder_.path() + Text("/pickup/a.EML");
    Hooks hooks_;
};

TEST_F(WindowsMoveFaultTest, ASourceThatIsGoneThoughItsRemovalFailedHasMoved) {
    OnRemoval([this]() -> DWORD {
        RemoveSource();
        return ERROR_NETNAME_DELETED;
    });
    EXPECT_EQ(Move(), QString());
    ExpectOnlyIn(to_);
}

TEST_F(WindowsMoveFaultTest, ASourceOfWhichNobodyCanTellKeepsTheCopy) {
    OnRemoval([this]() -> DWORD {
        RemoveSource();
        OnOpening(ERROR_SEM_TIMEOUT);
        return ERROR_NETNAME_DELETED;
    });
    EXPECT_EQ(Move(), qt_error_string(ERROR_NETNAME_DELETED));
    ExpectOnlyIn(to_);
}

TEST_F(WindowsMoveFaultTest, ASourceWhoseRemovalIsPendingKeepsTheCopy) {
    const HANDLE other = OpenForAll(from_, DELETE);
    ASSERT_NE(other, INVALID_HANDLE_VALUE);
    OnRemoval([this, other]() -> DWORD {
        RemoveOnClose(other);
        // Windows refuses to open such a file, Wine does not.
        OnOpening(ERROR_ACCESS_DENIED);
        return ERROR_ACCESS_DENIED;
    });
    EXPECT_EQ(Move(), qt_error_string(ERROR_ACCESS_DENIED));
    CloseHandle(other);
    ExpectOnlyIn(to_);
}

TEST_F(WindowsMoveFaultTest, ASourceWhosePendingRemovalWaitedForTheMoveHasMoved) {
    OnRemoval([this]() -> DWORD {
        const HANDLE other = OpenForAll(from_, DELETE);
        RemoveOnClose(other);
        CloseHandle(other);
        return ERROR_ACCESS_DENIED;
    });
    EXPECT_EQ(Move(), QString());
    ExpectOnlyIn(to_);
}

TEST_F(WindowsMoveFaultTest, ASourceThatMayNotBeRemovedStaysAloneAndReadOnly) {
    ASSERT_NE(SetFileAttributesW(System(from_).c_str(), FILE_ATTRIBUTE_READONLY), 0);
    OnRemoval([]() -> DWORD { return ERROR_ACCESS_DENIED; });
    EXPECT_EQ(Move(), qt_error_string(ERROR_ACCESS_DENIED));
    ExpectOnlyIn(from_);
    EXPECT_NE(GetFileAttributesW(System(from_).c_str()) & FILE_ATTRIBUTE_READONLY, 0U);
    SetFileAttributesW(System(from_).c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(WindowsMoveFaultTest, NobodyGetsTheCopyBeforeTheSourceIsRemoved) {
    int looks = 0;
    OnRemoval([&]() -> DWORD {
        ++looks;
        EXPECT_EQ(OpenForAll(to_, GENERIC_READ), INVALID_HANDLE_VALUE);
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_SHARING_VIOLATION));
        return 0;
    });
    EXPECT_EQ(Move(), QString());
    EXPECT_EQ(looks, 1);
    ExpectOnlyIn(to_);
}

/// The name has to go while the file cannot be opened by others.
TEST_F(WindowsMoveFaultTest, ACopyThatFindsNoPlaceIsNotClosedBeforeItIsRemoved) {
    files_->WriteWhole(to_, "other");
    int removals = 0;
    hooks_.remove = [&removals](const std::wstring&) -> DWORD {
        ++removals;
        return 0;
    };
    EXPECT_EQ(Move(), qt_error_string(ERROR_ALREADY_EXISTS));
    EXPECT_EQ(removals, 0);
    EXPECT_EQ(NamesIn(folder_.path() + Text("/pickup")), QStringList{Text("a.EML")});
    EXPECT_EQ(ReadWhole(*files_, to_), "other");
    EXPECT_EQ(ReadWhole(*files_, from_), "message");
}

/// A volume that neither renames nor removes open files, by what it says to that.
class WithoutOpenFileCallsTest : public WindowsMoveFaultTest, public testing::WithParamInterface<DWORD> {
protected:
    void SetUp() override {
        WindowsMoveFaultTest::SetUp();
        hooks_.change = [](FILE_INFO_BY_HANDLE_CLASS what) {
            return what == FileRenameInfo || what == FileDispositionInfo ? GetParam() : 0;
        };
    }
};

TEST_P(WithoutOpenFileCallsTest, ACopyArrives) {
    EXPECT_EQ(Move(), QString());
    ExpectOnlyIn(to_);
}

TEST_P(WithoutOpenFileCallsTest, ACopyNeverOverwritesAndCleansUp) {
    files_->WriteWhole(to_, "other");
    ASSERT_NE(SetFileAttributesW(System(from_).c_str(), FILE_ATTRIBUTE_READONLY), 0);
    EXPECT_EQ(Move(), qt_error_string(ERROR_ALREADY_EXISTS));
    SetFileAttributesW(System(from_).c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(NamesIn(folder_.path() + Text("/pickup")), QStringList{Text("a.EML")});
    EXPECT_EQ(ReadWhole(*files_, to_), "other");
    EXPECT_EQ(ReadWhole(*files_, from_), "message");
}

TEST_P(WithoutOpenFileCallsTest, ASourceThatMayNotBeRemovedStaysAlone) {
    OnRemoval([]() -> DWORD { return ERROR_ACCESS_DENIED; });
    EXPECT_EQ(Move(), qt_error_string(ERROR_ACCESS_DENIED));
    ExpectOnlyIn(from_);
}

TEST_P(WithoutOpenFileCallsTest, AWholeFileIsReplaced) {
    files_->WriteWhole(from_, "shorter");
    EXPECT_EQ(ReadWhole(*files_, from_), "shorter");
    EXPECT_EQ(NamesIn(folder_.path() + Text("/archive")), QStringList{Text("a.EML")});
}

INSTANTIATE_TEST_SUITE_P(Answers, WithoutOpenFileCallsTest,
                         testing::Values(ERROR_NOT_SUPPORTED, ERROR_INVALID_PARAMETER, ERROR_CALL_NOT_IMPLEMENTED,
                                         ERROR_INVALID_FUNCTION, ERROR_INVALID_LEVEL));

} // namespace

} // namespace quellbox

#endif

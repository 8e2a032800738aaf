#include "app/CommandLine.h"

#include "platform/Display.h"
#include "settings/Translation.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

namespace quellbox {

namespace {

/// The arguments that may be options.
std::vector<std::string_view> Options(int argc, char** argv) {
    std::vector<std::string_view> arguments(argv + std::min(argc, 1), argv + argc);
    arguments.erase(std::find(arguments.begin(), arguments.end(), "--"), arguments.end());
    return arguments;
}

bool IsAmong(const std::vector<std::string_view>& options, std::string_view option) {
    return std::find(options.begin(), options.end(), option) != options.end();
}

bool TakesPicture(const std::vector<std::string_view>& options) {
    return std::any_of(options.begin(), options.end(),
                       [](std::string_view option) { return option.starts_with("--screenshot"); });
}

bool OnlyPrints(const std::vector<std::string_view>& options) {
    constexpr std::array<std::string_view, 5> answered{"-h", "--help", "--help-all", "-v", "--version"};
    return std::any_of(answered.begin(), answered.end(),
                       [&options](std::string_view option) { return IsAmong(options, option); }) ||
           (IsAmong(options, "--print-list") && !TakesPicture(options));
}

/// Takes the last word of the windowing library, which would abort the program then.
void EndWithoutDisplay(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (type == QtFatalMsg) {
        if (QCoreApplication* application = QCoreApplication::instance(); application != nullptr) {
            InstallTranslation(*application, QLocale::system().uiLanguages());
        }
        PrintError(QCoreApplication::translate("quellbox", "The window cannot be shown, because there is no display or "
                                                           "it does not answer. The option --print-list works "
                                                           "without one."));
        std::_Exit(1);
    }
    // Where there is no display, what leads to the end says nothing more.
    if (HasDisplay()) {
        std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, context, text)));
    }
}

} // namespace

CommandLine::CommandLine()
    : printList_(QStringLiteral("print-list"),
                 QCoreApplication::translate("quellbox", "Print the list after the first refresh, and quit.")),
      screenshot_(
          QStringLiteral("screenshot"),
          QCoreApplication::translate("quellbox", "Save a picture of the window after the first refresh, and quit."),
          QStringLiteral("file")) {
    parser_.setApplicationDescription(QCoreApplication::translate(
        "quellbox", "Look through the archive of a mail server's spam filter, and deliver what is no spam."));
    parser_.addHelpOption();
    parser_.addVersionOption();
    parser_.addOptions({printList_, screenshot_});
    parser_.addPositionalArgument(
        QStringLiteral("directory"),
        QCoreApplication::translate("quellbox", "The archive to show in this session, instead of the one in the "
                                                "settings, which stay as they are."),
        QCoreApplication::translate("quellbox", "[directory]"));
}

std::unique_ptr<QApplication> MakeApplication(int& argc, char** argv) {
    const std::vector<std::string_view> options = Options(argc, argv);
    if (OnlyPrints(options) || (TakesPicture(options) && !HasDisplay())) {
        DrawNowhere();
    }
    const QtMessageHandler before = qInstallMessageHandler(EndWithoutDisplay);
    auto application = std::make_unique<QApplication>(argc, argv);
    qInstallMessageHandler(before);
    return application;
}

void PrintError(const QString& error) {
    std::fprintf(stderr, "quellbox: %s\n", qPrintable(error));
}

} // namespace quellbox

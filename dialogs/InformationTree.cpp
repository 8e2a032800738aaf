#include "dialogs/InformationTree.h"

#include "mail/DisplayText.h"
#include "mail/MailMessage.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace quellbox {

namespace {

InformationNode Line(const QString& label, const QString& value) {
    return {{}, label + value, {}};
}

} // namespace

std::vector<InformationNode> BuildInformationTree(const ProgramInfo& program, const AppState& state,
                                                  const FileSystem& files, const QLocale& locale) {
    const auto text = [](const char* source) { return QCoreApplication::translate("quellbox", source); };
    return {
        {QStringLiteral("program"),
         program.ExecutableName,
         {Line(text(QT_TRANSLATE_NOOP("quellbox", "Version: ")), program.Version()),
          Line(text(QT_TRANSLATE_NOOP("quellbox", "Build: ")), BuildDate(files, program, locale)),
          Line(text(QT_TRANSLATE_NOOP("quellbox", "SocketTools: ")), MailMessage::VersionText())}},
        {QStringLiteral("directories"),
         text(QT_TRANSLATE_NOOP("quellbox", "Directories")),
         {Line(text(QT_TRANSLATE_NOOP("quellbox", "Program: ")),
               CleanseForDisplay(QDir::toNativeSeparators(QFileInfo(program.ExecutablePath).path()))),
          Line(text(QT_TRANSLATE_NOOP("quellbox", "Archive: ")), CleanseForDisplay(state.ArchiveDir)),
          Line(text(QT_TRANSLATE_NOOP("quellbox", "Pickup: ")), CleanseForDisplay(state.PickupDir))}},
    };
}

} // namespace quellbox

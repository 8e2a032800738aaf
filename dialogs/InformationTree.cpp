#include "dialogs/InformationTree.h"

#include "mail/MailMessage.h"

#include <QCoreApplication>

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
         {Line(text("Version: "), program.Version()), Line(text("Build: "), BuildDate(files, program, locale)),
          Line(text("SocketTools: "), MailMessage::VersionText())}},
        {QStringLiteral("directories"),
         text("Directories"),
         {Line(text("Program: "), program.Directory), Line(text("Archive: "), state.ArchiveDir),
          Line(text("Pickup: "), state.PickupDir)}},
    };
}

} // namespace quellbox

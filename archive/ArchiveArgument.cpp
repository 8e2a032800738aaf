#include "archive/ArchiveArgument.h"

#include "platform/UncPath.h"

#include <QCoreApplication>
#include <QDir>

namespace quellbox {

namespace {

Folder AbsoluteFolder(const QString& argument, const QString& workingFolder) {
    return IsUncPath(argument) ? argument : QDir::toNativeSeparators(QDir(workingFolder).absoluteFilePath(argument));
}

} // namespace

ArchiveArgument ReadArchiveArgument(const QStringList& arguments, const FileSystem& files,
                                    const QString& workingFolder) {
    if (arguments.isEmpty()) {
        return {};
    }
    if (arguments.size() > 1) {
        return {{}, QCoreApplication::translate("quellbox", "Only one directory can be opened at a time.")};
    }
    const QString& argument = arguments.first();
    const Folder folder = argument.isEmpty() ? Folder() : AbsoluteFolder(argument, workingFolder);
    if (folder.IsEmpty() || !files.FolderExists(folder)) {
        return {{},
                QCoreApplication::translate("quellbox", "\"%1\" is no directory that can be opened.").arg(argument)};
    }
    return {folder, {}};
}

} // namespace quellbox

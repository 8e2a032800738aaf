#include "archive/ArchiveArgument.h"

#include "platform/FolderPath.h"
#include "platform/UncPath.h"

#include <QCoreApplication>
#include <QDir>

namespace quellbox {

namespace {

QString AbsoluteFolder(const QString& argument, const QString& workingFolder) {
    return WithSeparator(
        IsUncPath(argument) ? argument : QDir::toNativeSeparators(QDir(workingFolder).absoluteFilePath(argument)));
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
    const QString folder = argument.isEmpty() ? QString() : AbsoluteFolder(argument, workingFolder);
    if (folder.isEmpty() || !files.FolderExists(folder)) {
        return {{},
                QCoreApplication::translate("quellbox", "\"%1\" is no directory that can be opened.").arg(argument)};
    }
    return {folder, {}};
}

} // namespace quellbox

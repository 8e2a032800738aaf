#pragma once

#include "platform/FileSystem.h"
#include "settings/AppState.h"
#include "settings/ProgramInfo.h"

#include <QLocale>

#include <vector>

namespace quellbox {

/// A node of the information tree with what lies below it.
struct InformationNode {
    QString key; ///< empty below the roots
    QString text;
    std::vector<InformationNode> children;
};

/// What the options dialog tells about the program, its version and its directories: the roots "program" and
/// "directories". The date of the build is that of the executable's file, local, in the short form of `locale`;
/// nothing when there is no such file.
std::vector<InformationNode> BuildInformationTree(const ProgramInfo& program, const AppState& state,
                                                  const FileSystem& files, const QLocale& locale);

} // namespace quellbox

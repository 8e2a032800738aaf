#pragma once

#include "console/TableWriter.h"

#include <memory>

namespace quellbox {

/// Prints messages, as the options say: as a table, or their names only.
class ListWriter {
public:
    /// Throws UsageError when the options contradict each other.
    ListWriter(Session& session, const QCommandLineParser& parser);

    /// See TableWriter.
    void UseWideColumns();

    void Add(const MessageRow& row);

    /// Writes what has been added, so that whoever reads it has it now.
    void Flush();

private:
    OutputBuffer names_;
    std::unique_ptr<TableWriter> table_; // null where only names are wanted
    OutputForm form_ = OutputForm::Text;
    char nameEnd_ = '\n';
};

/// Adds the options that ListWriter knows.
void AddListFormOptions(QCommandLineParser& parser);

} // namespace quellbox

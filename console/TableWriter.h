#pragma once

#include "console/OutputBuffer.h"
#include "messages/MessageRow.h"
#include "messages/TableFile.h"

#include <QCommandLineParser>
#include <QStringList>

#include <vector>

namespace quellbox {

/// In which form tables are printed.
enum class OutputForm { Text, Csv, Json };

/// Writes a table to the standard output, row by row. As text its columns are aligned: how wide they are is decided by
/// the rows that come first, and a text that is longer than its column is cut there, but for the last one.
class TableWriter {
public:
    /// `session` has to outlive this object, and is told when nobody reads the output any more.
    TableWriter(Session& session, OutputForm form, TableColumns columns);

    ~TableWriter();
    TableWriter(const TableWriter&) = delete;
    TableWriter& operator=(const TableWriter&) = delete;

    /// The rows come one by one, so that nobody knows how wide a column has to be.
    void UseWideColumns() { hasWideColumns_ = true; }

    void Add(const QStringList& cells);

    /// Writes what has been added, so that whoever reads it has it now.
    void Flush();

private:
    void BeginTable();
    QString TextLine(const QStringList& cells) const;

    Session& session_;
    OutputBuffer output_;
    const OutputForm form_;
    const TableColumns columns_;
    std::vector<int> widths_;
    std::vector<QStringList> first_; // rows that decide the widths
    QElapsedTimer sinceFirst_;
    bool hasBegun_ = false;
    bool hasWideColumns_ = false;
};

/// Adds the options for the form of the output.
void AddFormOptions(QCommandLineParser& parser);

/// What they say. Throws UsageError when they contradict each other.
OutputForm ReadForm(const QCommandLineParser& parser);

} // namespace quellbox

#pragma once

#include "console/Session.h"

#include <QByteArray>
#include <QElapsedTimer>

namespace quellbox {

/// Gathers what is printed for a moment, since a call for each line would take longer than the line.
class OutputBuffer {
public:
    /// `session` has to outlive this object, and is told when nobody reads the output any more.
    explicit OutputBuffer(Session& session);

    /// Writes what is left.
    ~OutputBuffer() { Flush(); }
    OutputBuffer(const OutputBuffer&) = delete;
    OutputBuffer& operator=(const OutputBuffer&) = delete;

    void Append(QByteArrayView bytes);
    void Append(const QString& text);
    void Flush();

private:
    Session& session_;
    QByteArray pending_;
    QElapsedTimer sinceWritten_;
};

} // namespace quellbox

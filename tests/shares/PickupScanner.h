#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <atomic>
#include <map>
#include <string>
#include <thread>

namespace quellbox {

/// Looks all the time at a folder on this computer as a mail server does, which takes every file of the right ending at
/// once, whatever is in it.
class PickupScanner {
public:
    /// `messages` are the whole messages by their names.
    PickupScanner(QString folder, std::map<QString, QByteArray> messages);
    ~PickupScanner() { End(); }
    PickupScanner(const PickupScanner&) = delete;
    PickupScanner& operator=(const PickupScanner&) = delete;

    /// Looks once more, and returns what a mail server would have taken that was no whole message; a line for each.
    std::string End();

private:
    void Run();
    void Look();
    void Read(const QString& name);

    const QString folder_;
    const std::map<QString, QByteArray> messages_;
    std::map<QString, QDateTime> seen_;  // when the file had been changed, as it was read long enough afterwards
    std::map<QString, qsizetype> wrong_; // how long the file was
    std::atomic<bool> isEnding_ = false;
    std::thread thread_;
};

} // namespace quellbox

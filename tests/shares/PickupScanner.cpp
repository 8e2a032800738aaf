#include "tests/shares/PickupScanner.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <chrono>

namespace quellbox {

namespace {

// The kernel's clock for files goes on in steps of some milliseconds.
constexpr qint64 settledMs = 100;

} // namespace

PickupScanner::PickupScanner(QString folder, std::map<QString, QByteArray> messages)
    : folder_(std::move(folder)), messages_(std::move(messages)), thread_([this] { Run(); }) {}

std::string PickupScanner::End() {
    isEnding_ = true;
    if (thread_.joinable()) {
        thread_.join();
    }
    std::string wrong;
    for (const auto& [name, size] : wrong_) {
        wrong += name.toStdString() + ", " + std::to_string(size) + " bytes\n";
    }
    return wrong;
}

void PickupScanner::Run() {
    while (!isEnding_) {
        Look();
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    Look();
}

// Others want the processor too, so a file is read again only when it may have changed.
void PickupScanner::Look() {
    for (const QString& name : QDir(folder_).entryList({QStringLiteral("*.EML")}, QDir::Files | QDir::Hidden)) {
        const QDateTime changed = QFileInfo(folder_ + name).metadataChangeTime();
        if (changed.isValid() && seen_[name] == changed) {
            continue;
        }
        const bool isSettled = changed.isValid() && changed.msecsTo(QDateTime::currentDateTime()) > settledMs;
        Read(name);
        if (isSettled) {
            seen_[name] = changed;
        }
    }
}

void PickupScanner::Read(const QString& name) {
    QFile file(folder_ + name);
    if (!file.open(QIODevice::ReadOnly)) {
        return; // taken back meanwhile
    }
    const QByteArray bytes = file.readAll();
    const auto message = messages_.find(name);
    if (message == messages_.end() || message->second != bytes) {
        wrong_.emplace(name, bytes.size());
    }
}

} // namespace quellbox

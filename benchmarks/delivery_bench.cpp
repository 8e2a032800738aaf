// Handing 500 messages to a mail server that takes 20 ms for each answer: over one connection with one command at a
// time, and as the program does it, over several connections with the commands of a message together.
#include "benchmarks/Bench.h"
#include "delivery/SmtpSession.h"
#include "tests/support/FakeSmtpServer.h"

#include <QCoreApplication>

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

using namespace quellbox;
using namespace quellbox::bench;

namespace {

constexpr int messages = 500;
constexpr std::chrono::milliseconds latency(20);

QByteArray MessageNumber(int number) {
    return "From: joe@example.com\r\nSubject: " + QByteArray::number(number) + "\r\n\r\n" +
           QByteArray("What users write to each other fills some lines.\r\n").repeated(60);
}

FakeSmtpServer::Traits SlowServer(bool offersPipelining) {
    FakeSmtpServer::Traits traits;
    traits.latency = latency;
    traits.extensions = {"SIZE", "8BITMIME"};
    if (offersPipelining) {
        traits.extensions += "PIPELINING";
    }
    return traits;
}

/// How long it takes until the server has all messages, connecting and taking leave included.
double TimeOfDelivery(bool offersPipelining, int sessions) {
    const FakeSmtpServer server(SlowServer(offersPipelining));
    std::atomic<int> next = 0;
    std::atomic<int> delivered = 0;
    const double seconds = Time([&] {
        std::vector<std::thread> threads;
        threads.reserve(static_cast<size_t>(sessions));
        for (int thread = 0; thread < sessions; ++thread) {
            threads.emplace_back([&] {
                SmtpSession session(server.Address());
                for (int number = next++; number < messages; number = next++) {
                    const DeliveryOutcome outcome =
                        session.Deliver({"joe@example.com", {"ann@example.com"}}, MessageNumber(number));
                    delivered += outcome.fate == DeliveryFate::Delivered ? 1 : 0;
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    });

    Require(delivered == messages, "a message was not delivered");
    std::vector<QByteArray> wanted;
    wanted.reserve(messages);
    std::vector<QByteArray> taken;
    for (int number = 0; number < messages; ++number) {
        wanted.push_back(MessageNumber(number));
    }
    for (const TakenMessage& message : server.Taken()) {
        taken.push_back(message.wire);
    }
    std::sort(wanted.begin(), wanted.end());
    std::sort(taken.begin(), taken.end());
    Require(taken == wanted, "the server has other messages than those that were sent");
    return seconds;
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const double floor = TimeOfDelivery(false, 1);
    Report("500 messages, 1 connection, one command at a time", floor, "s");
    Report("  the same with the commands together", TimeOfDelivery(true, 1), "s");
    for (const int sessions : {4, 8, 16}) {
        Best best;
        for (int attempt = 0; attempt < 3; ++attempt) {
            best.Add(TimeOfDelivery(true, sessions));
        }
        const QByteArray figure = QByteArray::number(sessions) + " connections, commands together";
        Report(figure.constData(), best.seconds, "s");
        Report("  so many times as fast as the first", floor / best.seconds, "times", sessions == 16 ? ">= 10" : "");
    }
    return 0;
}

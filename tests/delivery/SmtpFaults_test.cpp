// Every fault at every step of a delivery: what becomes of the message, and whether the next one gets through.
#include "tests/delivery/SmtpTestKit.h"

#include <atomic>
#include <cstdio>

namespace quellbox {

namespace {

using namespace std::chrono_literals;
using Traits = FakeSmtpServer::Traits;

/// What goes wrong, and what has become of the message then.
struct Fault {
    const char* name;
    SmtpAnswer answer;
    DeliveryFate before; ///< before the end of the message was sent
    DeliveryFate after;  ///< when it is the answer to the end
    bool isSlow = false; ///< only the time limit helps
};

std::vector<Fault> Faults() {
    using enum DeliveryFate;
    const QByteArray endless = QByteArray("250-more\r\n").repeated(100'000);
    return {
        {"hangs up", {"", true}, Failed, Uncertain},
        {"stalls", {"", false, true}, Failed, Uncertain, true},
        {"hangs up in the middle of an answer", {"250-one\r\n25", true}, Failed, Uncertain},
        {"answers junk", {"<html>no</html>\r\n"}, Failed, Uncertain},
        {"answers without an end", {endless}, Failed, Uncertain},
        {"answers a line without an end", {QByteArray(100'000, '2')}, Failed, Uncertain, true},
        {"answers in two minds", {"250-yes\r\n550 no\r\n"}, Failed, Uncertain},
        {"answers 354", {"354 go on\r\n"}, Failed, Uncertain},
        {"answers 451", {"451-later\r\n451 please\r\n"}, Refused, Refused},
        {"answers 550", {"550 never\r\n"}, Refused, Refused},
        {"answers 421", {"421 busy\r\n"}, Refused, Refused},
        {"answers 421 and hangs up", {"421 busy\r\n", true}, Refused, Refused},
        {"answers 554 and hangs up", {"554 go away\r\n", true}, Refused, Refused},
    };
}

/// A kind of conversation, and what comes to pass in it.
struct Course {
    const char* name;
    SmtpSecurity security;
    bool logsIn;
    QByteArrayList extensions;
    Envelope envelope;
};

std::vector<Course> Courses() {
    return {
        {"plain, one by one, three recipients", SmtpSecurity::None, false, {}, threeRecipients},
        {"plain, together, one recipient", SmtpSecurity::None, false, {"PIPELINING", "SIZE"}, oneRecipient},
        {"plain, together, three recipients", SmtpSecurity::None, false, {"PIPELINING"}, threeRecipients},
        {"STARTTLS, together, one recipient", SmtpSecurity::StartTls, true, {"PIPELINING"}, oneRecipient},
        {"TLS, one by one, one recipient", SmtpSecurity::Tls, true, {"8BITMIME"}, oneRecipient},
    };
}

/// A step of a course; `count` says which of several of the same kind.
struct Place {
    const char* name;
    SmtpStep step;
    int count = 0; ///< 0: every one
};

std::vector<Place> PlacesOf(const Course& course) {
    std::vector<Place> places = {{"greeting", SmtpStep::Greeting}, {"EHLO", SmtpStep::Hello}};
    if (course.security == SmtpSecurity::StartTls) {
        places.push_back({"STARTTLS", SmtpStep::StartTls});
        places.push_back({"EHLO in TLS", SmtpStep::HelloAgain});
    }
    if (course.logsIn) {
        places.push_back({"AUTH", SmtpStep::Login});
    }
    places.push_back({"MAIL", SmtpStep::Mail});
    places.push_back({"RCPT", SmtpStep::Recipient, 1});
    if (course.envelope.recipients.size() > 1) {
        places.push_back({"last RCPT", SmtpStep::Recipient, static_cast<int>(course.envelope.recipients.size())});
    }
    places.push_back({"DATA", SmtpStep::Data});
    places.push_back({"text", SmtpStep::Text});
    places.push_back({"end", SmtpStep::End});
    return places;
}

struct Case {
    Course course;
    Place place;
    Fault fault;

    std::string Name() const {
        return std::string(course.name) + ": " + fault.name + " at " + place.name +
               (fault.answer.takes ? ", having taken the message" : "");
    }
};

bool Makes354Sense(const Case& one) {
    return one.place.step == SmtpStep::Data && one.fault.answer.reply.startsWith("354");
}

std::vector<Case> Cases() {
    std::vector<Case> cases;
    for (const Course& course : Courses()) {
        for (const Place& place : PlacesOf(course)) {
            for (Fault fault : Faults()) {
                cases.push_back({course, place, fault});
                // Nobody knows then whether the server has taken it; one that begins to say so has.
                if (place.step == SmtpStep::End && fault.after == DeliveryFate::Uncertain) {
                    cases.back().fault.answer.takes = true;
                    if (!fault.answer.reply.startsWith('2')) {
                        cases.push_back({course, place, fault});
                    }
                }
            }
            // DATA wants 3yz, every other command something else.
            if (place.step == SmtpStep::Data) {
                cases.push_back(
                    {course, place, {"answers 250", {"250 ok\r\n"}, DeliveryFate::Failed, DeliveryFate::Failed}});
            }
        }
    }
    std::erase_if(cases, Makes354Sense);
    return cases;
}

DeliveryFate Expected(const Case& one) {
    return one.place.step == SmtpStep::End ? one.fault.after : one.fault.before;
}

/// Whether a fate is right. A connection that is reset may take the last words with it.
bool IsRight(const Case& one, DeliveryFate fate) {
    const bool mayLoseWords = one.place.step == SmtpStep::Text && one.fault.answer.hangsUp;
    return fate == Expected(one) || (mayLoseWords && fate == DeliveryFate::Failed);
}

/// Lets one case happen; what was wrong, if anything was.
std::string Try(const Case& one, const QByteArray& large) {
    std::atomic<bool> isFaulty = true;
    Traits traits;
    traits.security = one.course.security;
    traits.extensions = one.course.extensions;
    if (one.course.security != SmtpSecurity::None) {
        traits.certificate = *TestCertificates::Get()->right;
    }
    if (one.course.logsIn) {
        traits.user = "user";
        traits.password = "password";
    }
    traits.script = [&isFaulty, &one](const SmtpScene& scene) -> std::optional<SmtpAnswer> {
        const bool isHere = scene.step == one.place.step && (one.place.count == 0 || scene.count == one.place.count);
        return isFaulty && isHere ? std::optional(one.fault.answer) : std::nullopt;
    };
    const FakeSmtpServer server(traits);
    SmtpServer address = server.Address();
    address.timeLimit = one.fault.isSlow ? 2000ms : 60'000ms;
    SmtpSession session(address);

    const bool isText = one.place.step == SmtpStep::Text;
    const DeliveryOutcome outcome = session.Deliver(one.course.envelope, isText ? large : smallMessage);
    const size_t expected = one.place.step == SmtpStep::End && one.fault.answer.takes ? 1 : 0;
    if (!IsRight(one, outcome.fate)) {
        return "has become " + testing::PrintToString(outcome.fate) + ": " + outcome.words.toStdString();
    }
    if (outcome.words.isEmpty()) {
        return "nothing is said";
    }
    if (server.Taken().size() != expected) {
        return "the server has taken " + std::to_string(server.Taken().size()) + " messages";
    }
    if (outcome.fate == DeliveryFate::Refused &&
        !outcome.words.contains(QString::fromUtf8(one.fault.answer.reply.left(3)))) {
        return "says other words than the server: " + outcome.words.toStdString();
    }

    isFaulty = false;
    const QByteArray nextMessage = "Subject: next\r\n\r\n";
    const DeliveryOutcome next = session.Deliver(one.course.envelope, nextMessage);
    if (next.fate != DeliveryFate::Delivered) {
        return "the next message has become " + testing::PrintToString(next.fate) + ": " + next.words.toStdString();
    }
    const auto taken = server.Taken();
    return taken.size() == expected + 1 && taken.back().wire == nextMessage &&
                   taken.back().recipients == one.course.envelope.recipients
               ? std::string()
               : "the next message was not taken as it is";
}

TEST(SmtpFaultsTest, NothingIsLostOrSentTwice) {
    if (TestCertificates::Get() == nullptr) {
        GTEST_SKIP() << "the program openssl is missing";
    }
    const std::vector<Case> cases = Cases();
    const QByteArray large = LargeMessage(24 * 1024 * 1024);
    std::vector<std::string> wrong(cases.size());
    std::atomic<size_t> next = 0;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 12; ++thread) {
        threads.emplace_back([&] {
            for (size_t at = next++; at < cases.size(); at = next++) {
                wrong[at] = Try(cases[at], large);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (size_t at = 0; at < cases.size(); ++at) {
        EXPECT_TRUE(wrong[at].empty()) << cases[at].Name() << ": " << wrong[at];
    }
    std::printf("faults: mail server: %zu tried\n", cases.size());
}

} // namespace

} // namespace quellbox

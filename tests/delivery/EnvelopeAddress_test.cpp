#include "delivery/EnvelopeAddress.h"

#include <gtest/gtest.h>

namespace quellbox {

namespace {

TEST(EnvelopeAddressTest, UsualAddressesAreSafe) {
    for (const char* address : {"joe@example.com", "postmaster", "o'neil+tag=a/b@example.com",
                                "\"two words\"@example.com", "\"a\\\"b\"@example.com",
                                "j\xC3\xB6rg@b\xC3\xBC"
                                "cher.example",
                                "joe@[192.0.2.1]", "\"a b\"", "-joe@example.com", "a,b@example.com"}) {
        EXPECT_TRUE(IsSafeAddress(address)) << address;
    }
}

TEST(EnvelopeAddressTest, WhatCouldBecomeACommandIsNotSafe) {
    for (const char* address : {"",
                                "joe@example.com>\r\nRCPT TO:<eve@spam.example",
                                "joe@example.com\n",
                                "joe\r@example.com",
                                "a b@example.com",
                                "joe@example.com SIZE=1",
                                "<joe@example.com>",
                                "joe@example.com>",
                                "\"a\nb\"@example.com",
                                "\"a>b\"@example.com",
                                "\"open@example.com",
                                "joe@example.com\" x",
                                "\"a\" b@example.com",
                                "\"a\"b@example.com",
                                "\"a\"@b c",
                                "a\"b c\"@d",
                                "joe\x7F@example.com",
                                "joe\xC2\x85@example.com",
                                "joe\xE2\x80\xA8@example.com",
                                "joe\xFF@example.com",
                                "\"a\\"}) {
        EXPECT_FALSE(IsSafeAddress(address)) << address;
    }
    EXPECT_FALSE(IsSafeAddress(QByteArray("joe\0@example.com", 16)));
}

TEST(EnvelopeAddressTest, LengthIsBounded) {
    EXPECT_TRUE(IsSafeAddress(QByteArray(500, 'x')));
    EXPECT_FALSE(IsSafeAddress(QByteArray(501, 'x')));
}

TEST(EnvelopeAddressTest, ProblemNamesTheAddress) {
    EXPECT_TRUE(ProblemOfEnvelope({"joe@example.com", {"ann@example.com"}}).isEmpty());
    EXPECT_TRUE(ProblemOfEnvelope({"", {"ann@example.com"}}).isEmpty());
    EXPECT_FALSE(ProblemOfEnvelope({"joe@example.com", {}}).isEmpty());
    EXPECT_TRUE(ProblemOfEnvelope({"", {"ann@example.com", "b c"}}).contains(QLatin1String("b c")));
    EXPECT_TRUE(ProblemOfEnvelope({"x y", {"ann@example.com"}}).contains(QLatin1String("x y")));
    EXPECT_FALSE(ProblemOfEnvelope({"", {"ann@example.com", ""}}).isEmpty());
}

} // namespace

} // namespace quellbox

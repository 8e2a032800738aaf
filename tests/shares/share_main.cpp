#include "tests/shares/ShareWorld.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <cstdio>

// What ctest takes for "skipped".
constexpr int skipped = 77;

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    const int result = RUN_ALL_TESTS();
    quellbox::ShareWorld::EndAll();
    const testing::UnitTest& tests = *testing::UnitTest::GetInstance();
    return result == 0 && tests.skipped_test_count() == tests.test_to_run_count() ? skipped : result;
}

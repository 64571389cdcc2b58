// GoogleTest entry point for tests that need a Qt event loop but no windows.
#include <QCoreApplication>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    // Password hashing at a few rounds, as under CTest, when a test binary is run by hand.
    if (qEnvironmentVariableIsEmpty("TILLBOOK_TEST_PASSWORD_ROUNDS"))
        qputenv("TILLBOOK_TEST_PASSWORD_ROUNDS", "1000");
    QCoreApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

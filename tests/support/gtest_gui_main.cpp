// GoogleTest entry point for tests that create widgets: always offscreen, never on the user's screen.
#include <QApplication>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Password hashing at a few rounds, as under CTest, when a test binary is run by hand.
    if (qEnvironmentVariableIsEmpty("TILLBOOK_TEST_PASSWORD_ROUNDS"))
        qputenv("TILLBOOK_TEST_PASSWORD_ROUNDS", "1000");
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

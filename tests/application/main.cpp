#include <gtest/gtest.h>

#include <QApplication>

// The application's own tests draw into memory and drive a fake desktop, so that they need no display.
int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

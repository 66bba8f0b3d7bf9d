#include <QApplication>
#include <gmock/gmock.h>

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    // Tests close windows and go on.
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}

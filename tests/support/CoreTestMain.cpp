#include <QCoreApplication>
#include <QTimer>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    const int result = RUN_ALL_TESTS();
    // A sound stream closed by the last test is still being taken down by the sound server's
    // thread; leaving before that is done can trip the sound library's own checks at exit.
    QTimer::singleShot(200, &app, &QCoreApplication::quit);
    app.exec();
    return result;
}

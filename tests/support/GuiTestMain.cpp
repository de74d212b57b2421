#include <QApplication>

#include "platform/QuickExit.h"

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (qEnvironmentVariableIsEmpty("QT_MEDIA_BACKEND"))
        qputenv("QT_MEDIA_BACKEND", "ffmpeg");
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    const int result = RUN_ALL_TESTS();
    // PulseAudio's client, torn down with the program's statics after a test used sound, can
    // abort while its main loop is still busy; the studio leaves the same way (src/main.cpp).
    cq::QuickExit(result);
}

#pragma once

#include <QtGlobal>

#include <gtest/gtest.h>

// Skips a test that needs the test sound server (its microphone plays a steady tone) when the
// test scripts did not start one.
#define REQUIRE_AUDIO()                                                                            \
    if (qEnvironmentVariableIsEmpty("CLIPQUILL_TEST_AUDIO"))                                       \
    GTEST_SKIP() << "no test sound server (CLIPQUILL_TEST_AUDIO is unset)"

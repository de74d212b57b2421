#include "text/widgets/SpeechVoice.h"
#include "ModalHelper.h"
#include "support/TestAudio.h"
#include "text/widgets/RetiredSpeechEngine.h"
#include "text/widgets/TextDisplaySurface.h"
#include "text/widgets/frmDisplayText.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <QTextToSpeech>

#include <gtest/gtest.h>

#include <memory>

using namespace cq;

TEST(SpeechVoice, WithoutAnEngineSpeakingIsSilentAndStopIsHarmless) {
    SpeechVoice voice(QStringLiteral("no-such-engine"));
    QSignalSpy spy(&voice, &SpeechVoice::speakingChanged);
    EXPECT_FALSE(voice.hasVoice());
    voice.SpeakText("Hello");
    voice.StopSpeaking();
    EXPECT_FALSE(voice.isSpeaking());
    EXPECT_EQ(voice.queuedCount(), 0);
    EXPECT_TRUE(spy.isEmpty());
}

TEST(SpeechVoice, FliteSpeaksQueuesAndStops) {
    REQUIRE_AUDIO();
    if (!QTextToSpeech::availableEngines().contains("flite"))
        GTEST_SKIP() << "flite engine not installed";
    SpeechVoice voice(QStringLiteral("flite"));
    ASSERT_TRUE(voice.hasVoice());
    QSignalSpy spy(&voice, &SpeechVoice::speakingChanged);

    voice.SpeakText("One.");
    voice.SpeakText("Two.");
    EXPECT_TRUE(voice.isSpeaking());
    EXPECT_EQ(voice.queuedCount(), 1);
    // Both texts are spoken in turn, then the voice rests.
    EXPECT_TRUE(QTest::qWaitFor([&] { return !voice.isSpeaking(); }, 20000));
    EXPECT_EQ(voice.queuedCount(), 0);
    ASSERT_EQ(spy.size(), 2);
    EXPECT_TRUE(spy.at(0).at(0).toBool());
    EXPECT_FALSE(spy.at(1).at(0).toBool());

    voice.SpeakText("A longer sentence that is stopped before it ends.");
    voice.SpeakText("Never spoken.");
    voice.StopSpeaking();
    EXPECT_FALSE(voice.isSpeaking());
    EXPECT_EQ(voice.queuedCount(), 0);
}

TEST(SpeechVoice, ClickOnTheDisplaySilencesTheVoice) {
    REQUIRE_AUDIO();
    if (!QTextToSpeech::availableEngines().contains("flite"))
        GTEST_SKIP() << "flite engine not installed";
    SpeechVoice voice(QStringLiteral("flite"));
    const QString text = "This sentence is long enough to be still spoken when the click comes.";
    voice.SpeakText(text);
    voice.SpeakText("And this one waits.");
    frmDisplayText display(text, &voice);
    const auto watch = cq::test::WhenShown("frmDisplayText", [](QWidget* w) {
        auto* surface = w->findChild<TextDisplaySurface*>("picDisplay");
        QTimer::singleShot(100, surface, [surface] { QTest::mouseClick(surface, Qt::LeftButton); });
    });
    display.exec();
    EXPECT_FALSE(voice.isSpeaking());
    EXPECT_EQ(voice.queuedCount(), 0);
}

// The engine must not be torn down while it synthesises (flite crashes), yet the voice's owner
// must not wait for it: the engine is retired and goes on its own a little later.
TEST(SpeechVoice, DroppedWhileSpeakingGoesAtOnceAndItsEngineSoonAfter) {
    REQUIRE_AUDIO();
    if (!QTextToSpeech::availableEngines().contains("flite"))
        GTEST_SKIP() << "flite engine not installed";
    auto voice = std::make_unique<SpeechVoice>(QStringLiteral("flite"));
    ASSERT_TRUE(voice->hasVoice());
    voice->SpeakText("A sentence long enough to be still synthesised when its voice goes away.");
    QElapsedTimer clock;
    clock.start();
    voice.reset();
    EXPECT_LT(clock.elapsed(), 200); // the synthesis alone takes longer
    const QPointer<RetiredSpeechEngine> retired =
        QCoreApplication::instance()->findChild<RetiredSpeechEngine*>();
    ASSERT_FALSE(retired.isNull());
    EXPECT_TRUE(QTest::qWaitFor([&] { return retired.isNull(); }, 10000));
}

#include "app/StudioOptions.h"

#include <gtest/gtest.h>

using namespace cq;

namespace {
StudioOptions parse(const QStringList& args) {
    return ParseStudioOptions(QStringList{"clipquill"} + args);
}
} // namespace

TEST(StudioOptions, EveryOptionReachesItsFieldInEitherSpelling) {
    const StudioOptions o =
        parse({"--app-dir", "/a b", "--render", "/p/Timeline.txt", "--voice", "/v.wav",
               "--size=640X480", "--output", "/o.avi", "--video-sound", "--raw-voice",
               "--reduce-noise", "--captions", "--burn-captions"});
    EXPECT_TRUE(o.error.isEmpty()) << o.error.toStdString();
    EXPECT_EQ(o.appDir, "/a b");
    EXPECT_EQ(o.render, "/p/Timeline.txt");
    EXPECT_EQ(o.voice, "/v.wav");
    EXPECT_EQ(o.size, "640X480");
    EXPECT_EQ(o.output, "/o.avi");
    EXPECT_TRUE(o.videoSound);
    EXPECT_TRUE(o.rawVoice);
    EXPECT_TRUE(o.reduceNoise);
    EXPECT_TRUE(o.captions);
    EXPECT_TRUE(o.burnCaptions);
    EXPECT_FALSE(o.check);

    const StudioOptions none = parse({});
    EXPECT_TRUE(none.error.isEmpty());
    EXPECT_FALSE(none.videoSound || none.rawVoice || none.reduceNoise || none.check || none.help ||
                 none.version || none.captions || none.burnCaptions);
    EXPECT_TRUE(parse({"--check"}).check);
    EXPECT_TRUE(parse({"-h"}).help);
    EXPECT_TRUE(parse({"--version"}).version);
}

TEST(StudioOptions, UsageErrorsAreNamedAndNothingRuns) {
    for (const QStringList& args :
         {QStringList{"--renderr", "x"}, QStringList{"--size"}, QStringList{"--app-dir", ""},
          QStringList{"--app-dir", "  "}, QStringList{"--check", "stray"}}) {
        EXPECT_FALSE(parse(args).error.isEmpty()) << args.join(' ').toStdString();
    }
    EXPECT_TRUE(parse({"--app-dir", ""}).error.startsWith("--app-dir needs the name of a folder"));
    EXPECT_TRUE(parse({"--renderr"}).error.contains("renderr"));
}

#include "library/MediaTyping.h"

#include <gtest/gtest.h>

using namespace cq;

TEST(MediaTyping, TypesByTheLastExtensionWithoutRegardToCase) {
    EXPECT_EQ(GetMediaTypeFromFileSpec("photo.JPG"), MediaKind::Pictures);
    EXPECT_EQ(GetMediaTypeFromFileSpec("clip.MPEG"), MediaKind::Video);
    EXPECT_EQ(GetMediaTypeFromFileSpec("song.Mid"), MediaKind::Untyped);
    EXPECT_EQ(GetMediaTypeFromFileSpec("archive.tar.mp3"), MediaKind::Audio);
    EXPECT_EQ(GetMediaTypeFromFileSpec("README"), MediaKind::Untyped);
    EXPECT_EQ(GetMediaTypeFromFileSpec("movie.qt"), MediaKind::Audio);
    EXPECT_EQ(GetMediaTypeFromFileSpec("movie.qtm"), MediaKind::Video);
    EXPECT_EQ(GetMediaTypeFromFileSpec("photo.jpeg.part"), MediaKind::Untyped);
    EXPECT_EQ(GetMediaTypeFromFileSpec("/a.b/photo"), MediaKind::Untyped);
}

#include "library/MediaTyping.h"

#include <gtest/gtest.h>

using namespace cq;

TEST(MediaTyping, TypesByTheLastExtensionWithoutRegardToCase) {
    EXPECT_EQ(GetMediaTypeFromFileSpec("photo.JPG"), "Pictures");
    EXPECT_EQ(GetMediaTypeFromFileSpec("clip.MPEG"), "Video");
    EXPECT_EQ(GetMediaTypeFromFileSpec("song.Mid"), "");
    EXPECT_EQ(GetMediaTypeFromFileSpec("archive.tar.mp3"), "Audio");
    EXPECT_EQ(GetMediaTypeFromFileSpec("README"), "");
    EXPECT_EQ(GetMediaTypeFromFileSpec("movie.qt"), "Audio");
    EXPECT_EQ(GetMediaTypeFromFileSpec("movie.qtm"), "Video");
    EXPECT_EQ(GetMediaTypeFromFileSpec("scan.tif"), "");
    EXPECT_EQ(GetMediaTypeFromFileSpec("scan.tiff"), "Pictures");
    EXPECT_EQ(GetMediaTypeFromFileSpec("/a.b/photo"), "");
}

#include "library/MediaTyping.h"

#include <QHash>
#include <QStringList>

#include <array>

namespace cq {

namespace {

// The one list of the files the studio knows: the file lists, the typing, the picture pages, the
// thumbnails and the slide shows all read it, so a type added here is listed, shown and rendered
// alike. Everything in it is read by ffmpeg; the pictures also by Qt (WebP and TIFF through its
// extra image readers) and by ImageMagick for the thumbnails. Lower case, each with its dot.
// ".qt" counts as a sound and ".qtm" as a video, as they always have in the studio. MIDI files
// are listed, but nothing the studio shows or renders: a click logs a row without a kind.
struct KindExtensions {
    MediaKind kind;
    const char* extensions;
};
constexpr std::array kKnownExtensions{
    KindExtensions{MediaKind::Video, ".flv .mp4 .mpg .mpeg .avi .wmv .3gp .asf .mov .qtm .mkv "
                                     ".webm .m4v .mts .ogv"},
    KindExtensions{MediaKind::Audio, ".mp3 .wav .wma .aac .qt .flac .ogg .opus .m4a"},
    KindExtensions{MediaKind::Pictures, ".jpg .jpeg .png .gif .bmp .tif .tiff .webp"},
    KindExtensions{MediaKind::Untyped, ".mid"},
};

const QHash<QString, MediaKind>& KindByExtension() {
    static const QHash<QString, MediaKind> kinds = [] {
        QHash<QString, MediaKind> all;
        for (const KindExtensions& known : kKnownExtensions)
            for (const QString& ext : QString::fromLatin1(known.extensions).split(u' '))
                all.insert(ext, known.kind);
        return all;
    }();
    return kinds;
}

} // namespace

QString GetFileExtension(const QString& fileSpec) {
    const qsizetype dot = fileSpec.lastIndexOf(u'.');
    return dot < 0 ? fileSpec : fileSpec.mid(dot + 1);
}

MediaKind GetMediaTypeFromFileSpec(const QString& fileSpec) {
    return KindByExtension().value(u'.' + GetFileExtension(fileSpec).toLower(), MediaKind::Untyped);
}

const QStringList& MediaFilePatterns() {
    static const QStringList patterns = [] {
        QStringList all;
        for (const KindExtensions& known : kKnownExtensions)
            for (const QString& ext : QString::fromLatin1(known.extensions).split(u' '))
                all << u'*' + ext;
        return all;
    }();
    return patterns;
}

} // namespace cq

#include "library/MediaTyping.h"

#include <QStringList>

namespace cq {

QString GetFileExtension(const QString& fileSpec) {
    const qsizetype dot = fileSpec.lastIndexOf(u'.');
    return dot < 0 ? fileSpec : fileSpec.mid(dot + 1);
}

MediaKind GetMediaTypeFromFileSpec(const QString& fileSpec) {
    static const QStringList video{".flv", ".mp4", ".mpg", ".mpeg", ".avi",
                                   ".wmv", ".3gp", ".asf", ".mov",  ".qtm"};
    static const QStringList audio{".mp3", ".wav", ".wma", ".aac", ".qt", ".flac"};
    static const QStringList pictures{".jpg", ".gif", ".bmp", ".png", ".tiff"};
    const QString ext = u'.' + GetFileExtension(fileSpec).toLower();
    if (video.contains(ext))
        return MediaKind::Video;
    if (audio.contains(ext))
        return MediaKind::Audio;
    if (pictures.contains(ext))
        return MediaKind::Pictures;
    return MediaKind::Untyped;
}

const QStringList& MediaFilePatterns() {
    static const QStringList patterns =
        QStringLiteral("*.mp4;*.jpg;*.gif;*.bmp;*.flv;*.mpg;*.mpeg;*.avi;*.wmv;*.asf;*.mov;"
                       "*.qtm;*.mp3;*.wav;*.wma;*.mid;*.aac;*.qt;*.3gp;*.flac")
            .split(u';');
    return patterns;
}

} // namespace cq

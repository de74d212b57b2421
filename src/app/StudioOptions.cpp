#include "app/StudioOptions.h"

#include "Version.h"

#include <QCommandLineParser>

namespace cq {

namespace {

// One row per option: an option takes a value when it names a text field, and is a switch when
// it names a flag.
struct OptionRow {
    const char* name;
    const char* valueName;
    const char* description;
    QString StudioOptions::*text = nullptr;
    bool StudioOptions::*flag = nullptr;
};

const OptionRow kOptions[] = {
    {"app-dir", "DIR", "Use DIR as the application folder (filled from the installation).",
     &StudioOptions::appDir},
    {"check", nullptr, "Report paths, settings and which tools work, then exit.", nullptr,
     &StudioOptions::check},
    {"render", "TIMELINE", "Render the project of TIMELINE (its Timeline.txt) without a window.",
     &StudioOptions::render},
    {"voice", "WAV", "The voice of the render (default: RecordedAudio.wav beside TIMELINE).",
     &StudioOptions::voice},
    {"size", "WxH", "The frame size of the render, such as 640X480.", &StudioOptions::size},
    {"output", "FILE",
     "Where the render is written: FILE.avi for AVI, FILE.mp4 for MP4 (default: the work "
     "folder's FinalMix.avi).",
     &StudioOptions::output},
    {"video-sound", nullptr, "Mix the videos' own sound under the voice.", nullptr,
     &StudioOptions::videoSound},
    {"raw-voice", nullptr, "Leave the voice's level as recorded instead of evening it out.",
     nullptr, &StudioOptions::rawVoice},
    {"reduce-noise", nullptr, "Take steady background noise out of the voice.", nullptr,
     &StudioOptions::reduceNoise},
    {"captions", nullptr,
     "Write the captions beside the result as .srt and .vtt: the project's Captions.srt, or "
     "else the words recognised in its voice with its texts' captions.",
     nullptr, &StudioOptions::captions},
    {"burn-captions", nullptr, "Draw the captions into the picture.", nullptr,
     &StudioOptions::burnCaptions},
};

const char kUsageLines[] =
    "Usage: clipquill [--app-dir DIR] [--check]\n"
    "       clipquill [--app-dir DIR] --render TIMELINE [--voice WAV] [--size WxH] "
    "[--output FILE] [--video-sound]\n"
    "                 [--raw-voice] [--reduce-noise] [--captions] [--burn-captions]\n";

// The parser knows every option of the table, plus help and version.
struct StudioParser {
    QCommandLineParser parser;
    QCommandLineOption help{{QStringLiteral("h"), QStringLiteral("help")},
                            QStringLiteral("Show this help.")};
    QCommandLineOption version{{QStringLiteral("v"), QStringLiteral("version")},
                               QStringLiteral("Show the version.")};

    StudioParser() {
        parser.addOption(help);
        parser.addOption(version);
        for (const OptionRow& row : kOptions) {
            QCommandLineOption option(QString::fromLatin1(row.name),
                                      QString::fromLatin1(row.description));
            if (row.valueName)
                option.setValueName(QString::fromLatin1(row.valueName));
            parser.addOption(option);
        }
    }
};

QString usageProblem(const QCommandLineParser& parser, const StudioOptions& o) {
    if (!parser.positionalArguments().isEmpty())
        return QStringLiteral("unknown argument \"%1\"").arg(parser.positionalArguments().first());
    // An empty name would quietly mean the installation's own folder.
    if (parser.isSet(QStringLiteral("app-dir")) && o.appDir.trimmed().isEmpty())
        return QStringLiteral("--app-dir needs the name of a folder; \"%1\" names none")
            .arg(o.appDir);
    return {};
}

} // namespace

StudioOptions ParseStudioOptions(const QStringList& arguments) {
    StudioParser p;
    StudioOptions o;
    if (!p.parser.parse(arguments)) {
        o.error = p.parser.errorText();
        return o;
    }
    o.help = p.parser.isSet(p.help);
    o.version = p.parser.isSet(p.version);
    for (const OptionRow& row : kOptions) {
        const QString name = QString::fromLatin1(row.name);
        if (row.text)
            o.*row.text = p.parser.value(name);
        else
            o.*row.flag = p.parser.isSet(name);
    }
    o.error = usageProblem(p.parser, o);
    return o;
}

QString StudioUsage() {
    StudioParser p;
    // The parser's own first line names the program as it was started; ours shows both uses.
    QString options = p.parser.helpText();
    options = options.mid(options.indexOf(u'\n') + 1);
    return QString::fromLatin1(kUsageLines) + options;
}

QString StudioVersionText() {
    return QStringLiteral("Clipquill v.%1.%2.%3")
        .arg(kVersionMajor)
        .arg(kVersionMinor)
        .arg(kVersionRevision, 3, 10, QChar(u'0'));
}

} // namespace cq

// The program is drawn in layers, bottom up: platform helpers; the studio's state; captions,
// which the render and the timeline both use; the subsystems (library, text, render, share); the
// timeline, which shows library items; the take, which records onto the timeline; the window
// that assembles them. An include that points up or sideways
// makes a cycle sooner or later, so every #include "..." under src/ is checked here.

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <optional>

namespace {

// The layer of a path relative to src/; nullopt for a folder that is not in the drawing.
std::optional<int> layerOf(const QString& relativePath) {
    const QString top = relativePath.section(u'/', 0, 0);
    if (!relativePath.contains(u'/'))
        return relativePath == QStringLiteral("main.cpp") ? std::optional<int>(7) : std::nullopt;
    static const QHash<QString, int> layers{
        {QStringLiteral("platform"), 0}, {QStringLiteral("studio"), 1},
        {QStringLiteral("captions"), 2}, {QStringLiteral("library"), 3},
        {QStringLiteral("text"), 3},     {QStringLiteral("render"), 3},
        {QStringLiteral("share"), 3},    {QStringLiteral("timeline"), 4},
        {QStringLiteral("take"), 5},     {QStringLiteral("app"), 6}};
    const auto it = layers.constFind(top);
    return it == layers.constEnd() ? std::nullopt : std::optional<int>(*it);
}

bool isWidgetPath(const QString& relativePath) {
    return relativePath.contains(QStringLiteral("/widgets/"));
}

bool isAssembly(const QString& relativePath) {
    return relativePath.startsWith(QStringLiteral("app/")) ||
           relativePath == QStringLiteral("main.cpp");
}

// Why `includer` (a path under src/) may not include `included`; empty when it may.
QString violation(const QString& includer, const QString& included) {
    if (!included.contains(u'/'))
        return {}; // generated headers of the build (Version.h)
    const auto from = layerOf(includer);
    const auto to = layerOf(included);
    if (!from || !to)
        return QStringLiteral("outside the declared layers");
    const QString fromTop = includer.section(u'/', 0, 0);
    const QString toTop = included.section(u'/', 0, 0);
    if (fromTop != toTop && *to >= *from)
        return QStringLiteral("points up or sideways in the layers");
    // Widgets may use their own subsystem's widgets and the platform's shared ones (message
    // boxes, centring); logic uses no widgets at all.
    const bool sharedWidgets = toTop == QStringLiteral("platform");
    if (isWidgetPath(included) && !isAssembly(includer) &&
        (!isWidgetPath(includer) || (fromTop != toTop && !sharedWidgets)))
        return QStringLiteral("logic or another subsystem reaching into widgets");
    return {};
}

struct Include {
    QString file, line, target;
};

QList<Include> includesUnder(const QString& srcDir) {
    static const QRegularExpression quoted(QStringLiteral(R"re(^\s*#\s*include\s+"([^"]+)")re"));
    QList<Include> found;
    QDirIterator it(srcDir, {QStringLiteral("*.h"), QStringLiteral("*.cpp")}, QDir::Files,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QString relative = QDir(srcDir).relativeFilePath(path);
        int number = 0;
        while (!file.atEnd()) {
            const QString text = QString::fromUtf8(file.readLine());
            ++number;
            const auto m = quoted.match(text);
            if (m.hasMatch())
                found.append({relative, QString::number(number), m.captured(1)});
        }
    }
    return found;
}

} // namespace

TEST(Layering, EveryIncludeUnderSrcFollowsTheLayers) {
    const QList<Include> includes = includesUnder(QStringLiteral(CQ_SOURCE_DIR "/src"));
    ASSERT_GT(includes.size(), 200) << "the source tree was not found";
    QStringList wrong;
    for (const Include& inc : includes) {
        const QString why = violation(inc.file, inc.target);
        if (!why.isEmpty())
            wrong
                << QStringLiteral("%1:%2 includes %3: %4").arg(inc.file, inc.line, inc.target, why);
    }
    EXPECT_TRUE(wrong.isEmpty()) << wrong.join(u'\n').toStdString();
}

TEST(Layering, TheRuleRefusesWhatWouldMakeACycle) {
    // Down the layers and inside a subsystem is fine.
    EXPECT_EQ(violation("render/RenderJob.cpp", "studio/TimelineEvent.h"), "");
    EXPECT_EQ(violation("timeline/SlideShow.cpp", "library/MediaTyping.h"), "");
    EXPECT_EQ(
        violation("library/widgets/MediaTab.cpp", "library/playback/widgets/PlayerControls.h"), "");
    EXPECT_EQ(violation("app/widgets/MediaStation.cpp", "text/widgets/TextFrame.h"), "");
    EXPECT_EQ(violation("share/widgets/SharePanel.cpp", "platform/widgets/OpenUrl.h"), "");
    EXPECT_EQ(violation("take/RecordingController.cpp", "timeline/Replay.h"), "");
    EXPECT_EQ(violation("render/RenderJob.cpp", "captions/SubtitleFiles.h"), "");
    // Up, sideways, into another subsystem's widgets, logic into widgets, unknown folders.
    EXPECT_NE(violation("platform/ToolRunner.cpp", "studio/AppPaths.h"), "");
    EXPECT_NE(violation("render/RenderJob.cpp", "timeline/EventGridModel.h"), "");
    EXPECT_NE(violation("share/ConversionJob.cpp", "render/MediaFileInfo.h"), "");
    EXPECT_NE(violation("timeline/widgets/ProjectPanel.cpp", "library/widgets/MediaTab.h"), "");
    EXPECT_NE(violation("text/TextListFile.cpp", "text/widgets/TextFrame.h"), "");
    EXPECT_NE(violation("misc/Thing.cpp", "platform/Folders.h"), "");
    EXPECT_NE(violation("share/SaveCopy.cpp", "platform/widgets/OpenUrl.h"), "");
    EXPECT_NE(violation("timeline/Replay.cpp", "take/Recorder.h"), "");
    EXPECT_NE(violation("take/widgets/TakeQuestions.cpp", "timeline/widgets/ProjectPanel.h"), "");
    EXPECT_NE(violation("take/Recorder.cpp", "take/widgets/LevelBar.h"), "");
    EXPECT_NE(violation("render/widgets/RenderPanel.cpp", "take/widgets/LevelBar.h"), "");
    EXPECT_NE(violation("captions/SubtitleFiles.cpp", "render/RenderJob.h"), "");
}

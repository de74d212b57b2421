#pragma once

#include "RenderTestMedia.h"
#include "support/TestRows.h"

#include "app/StudioRender.h"
#include "platform/TextFiles.h"
#include "platform/ToolPool.h"
#include "platform/ToolRunner.h"
#include "platform/WavFormat.h"
#include "render/RenderJob.h"
#include "studio/AppPaths.h"
#include "studio/StudioSettings.h"
#include "support/TestAppFolder.h"

#include <QDir>
#include <QSize>

#include <cerrno>
#include <cstring>

#include <gtest/gtest.h>

namespace cq::test {

// An application folder with media made by ffmpeg, and renders of it through the job.
class RenderEndToEnd : public ::testing::Test {
protected:
    RenderEndToEnd()
        : paths(AppPaths::forFolder(app.path())),
          media(paths.gstrFFMPEGFileSpec, LocateFfprobe(paths)) {
        studio.gstrVideoRes = QStringLiteral("160X120");
        QDir().mkpath(paths.gstrTempFilesDirectory);
        QDir().mkpath(app.file("media"));
    }

    QString mediaFile(const QString& name) const { return app.file("media/" + name); }

    // The take's voice, of this length, in the media folder.
    QString makeVoice(double seconds) {
        const QString file = mediaFile("RecordedAudio.wav");
        EXPECT_TRUE(media.voice(file, seconds));
        return file;
    }

    QString makePicture(const QString& name, const QString& colour, int w = 320, int h = 240) {
        const QString file = mediaFile(name);
        EXPECT_TRUE(media.solidPicture(file, colour, w, h));
        return file;
    }

    RenderInputs inputsFor(const QList<TimelineEvent>& rows, const QString& voice) const {
        const RenderRequest request =
            StudioRenderRequest(paths, studio, rows, voice, WavDurationMs(voice), {});
        EXPECT_TRUE(request.ok()) << request.problem.toStdString();
        return request.inputs;
    }

    RenderReport render(const RenderInputs& in) {
        RenderJob job(in, pool);
        return job.runToEnd();
    }

    // Four seconds of voice: black, a red picture from 0.5 s, a green video with a 1 kHz tone
    // (from its own 0.5 s) from 1.5 s, a tall blue picture from 2.5 s.
    RenderInputs threeItemTake() {
        const QString clip = mediaFile("green.avi");
        EXPECT_TRUE(media.toneVideo(clip, "green", 3.0, 1000));
        return inputsFor(
            {Event(MediaKind::Pictures, 500, makePicture("red.jpg", "red", 640, 480)),
             Event(MediaKind::Video, 1500, clip, 500),
             Event(MediaKind::Pictures, 2500, makePicture("blue.jpg", "blue", 300, 600))},
            makeVoice(4.0));
    }

    // A picture of each colour, one a step apart from 0; each `widen` pixels wider than the one
    // before keeps pictures of one colour from being one piece.
    QList<TimelineEvent> pictureRows(const QString& prefix, const QStringList& colours,
                                     qint64 stepMs = 1000, QSize size = {320, 240}, int widen = 0) {
        QList<TimelineEvent> rows;
        for (int i = 0; i < colours.size(); ++i)
            rows << Event(MediaKind::Pictures, i * stepMs,
                          makePicture(prefix + QString::number(i) + ".jpg", colours[i],
                                      size.width() + widen * i, size.height()));
        return rows;
    }

    // A project folder in the application folder: a voice of this length, a red picture and a
    // timeline that shows it from the given time. Returns the folder.
    QString redPictureProject(double seconds, const char* at) {
        const QString folder = app.file("project");
        QDir().mkpath(folder);
        EXPECT_TRUE(media.voice(folder + "/RecordedAudio.wav", seconds));
        EXPECT_TRUE(media.solidPicture(folder + "/red.jpg", "red", 320, 240));
        EXPECT_TRUE(SaveBytesToFile(QByteArray("1\tPictures\t") + at + "\t\tred.jpg",
                                    folder + "/Timeline.txt"));
        return folder;
    }

    // The studio run from the command line on this application folder.
    RunResult runStudio(const QStringList& arguments, QByteArray* standardOutput = nullptr) {
        ToolRunner runner;
        const RunResult r = runner.runProgram(QStringLiteral(CQ_STUDIO_EXECUTABLE),
                                              QStringList{"--app-dir", app.path()} + arguments);
        if (standardOutput)
            *standardOutput = runner.standardOutput();
        return r;
    }

    // A voice of this length under one red picture shown from the given time.
    QList<TimelineEvent> redPictureTake(const QString& voice, double seconds, qint64 atMs) {
        EXPECT_TRUE(media.voice(voice, seconds));
        return {Event(MediaKind::Pictures, atMs, makePicture("red.jpg", "red"))};
    }

    // The item on screen just after each time, and the one just before it.
    static void expectLackOfSpace(const QString& message) {
        const QString reason = QString::fromLocal8Bit(std::strerror(EFBIG));
        EXPECT_TRUE(message.contains("lack of space (" + reason + ")")) << message.toStdString();
    }

    void expectSequence(const QString& file, const QList<std::pair<double, QString>>& changes) {
        QString previous = QStringLiteral("black");
        for (const auto& [at, colour] : changes) {
            if (at > 0.1) {
                EXPECT_EQ(ColourName(media.colourAt(file, at - 0.06)), previous) << "before " << at;
            }
            EXPECT_EQ(ColourName(media.colourAt(file, at + 0.04)), colour) << "after " << at;
            previous = colour;
        }
    }

    ToolPool pool; // before the jobs, which it outlives
    test::TestAppFolder app;
    AppPaths paths;
    StudioSettings studio;
    test::RenderTestMedia media;
};

} // namespace cq::test

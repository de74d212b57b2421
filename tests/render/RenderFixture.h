#pragma once

#include "RenderTestMedia.h"
#include "support/TestRows.h"

#include "app/StudioRender.h"
#include "platform/ToolPool.h"
#include "platform/WavFormat.h"
#include "render/RenderJob.h"
#include "studio/AppPaths.h"
#include "studio/StudioSettings.h"
#include "support/TestAppFolder.h"

#include <QDir>

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

    RenderInputs inputsFor(const QList<EventRow>& rows, const QString& voice) const {
        const RenderRequest request =
            StudioRenderRequest(paths, studio, rows, voice, WavDurationMs(voice), {});
        EXPECT_TRUE(request.ok()) << request.problem.toStdString();
        return request.inputs;
    }

    RenderReport render(const RenderInputs& in) {
        RenderJob job(in, pool);
        return job.runToEnd();
    }

    // The item on screen just after each time, and the one just before it.
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

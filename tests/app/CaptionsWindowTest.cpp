#include "app/widgets/TimelineStudio.h"
#include "app/widgets/frmClipquill.h"
#include "captions/CaptionTableModel.h"
#include "captions/widgets/CaptionPanel.h"
#include "support/CuePrinting.h"
#include "support/StudioWindow.h"
#include "support/TestAppFolder.h"
#include "support/TestRows.h"
#include "take/RecordingController.h"
#include "timeline/EventGridModel.h"
#include "timeline/widgets/EventGridView.h"

#include <QCheckBox>
#include <QPushButton>

#include <gtest/gtest.h>

using namespace cq;

TEST(CaptionsWindow, TheEditorSitsBesideTheGridAndTheOptionsReachTheRender) {
    test::TestAppFolder app;
    auto w = test::OpenStudio(app);
    auto* panel = w->findChild<CaptionPanel*>("CaptionPanel");
    auto* show = w->findChild<QPushButton*>("cmdCaptions");
    ASSERT_TRUE(panel && show);
    EXPECT_EQ(panel->parentWidget(), w->timeline().gridView()->parentWidget());
    EXPECT_TRUE(panel->isHidden());
    show->click();
    EXPECT_TRUE(panel->isVisible());

    EventGridModel& grid = w->timeline().grid();
    grid.setRows({test::Event(MediaKind::Pictures, 0, "/p/a.jpg"),
                  test::Event(MediaKind::Text, 1500, "/w/Hi.jpg", std::nullopt, "Hi")});
    w->timeline().controller().setRecordingLengthMs(4000);
    EXPECT_FALSE(w->renderRequest().inputs.writeCaptions);
    for (const char* name : {"chkCaptions", "chkBurnCaptions"}) {
        auto* box = w->findChild<QCheckBox*>(name);
        ASSERT_NE(box, nullptr) << name;
        box->click();
    }
    EXPECT_TRUE(w->studioSettings().captions && w->studioSettings().burnCaptions);
    RenderInputs in = w->renderRequest().inputs;
    EXPECT_TRUE(in.writeCaptions && in.burnCaptions);
    EXPECT_EQ(in.captions, (CaptionCues{{1500, 4000, "Hi"}})) << "the texts, while none were made";

    // A caption added while the grid shows a selected event starts at the event's time.
    w->timeline().gridView()->show();
    w->timeline().gridView()->setCurrentIndex(grid.index(0, EventGridModel::TimeLine));
    panel->cmdAddCaption_Click();
    CaptionTableModel& captions = w->timeline().captions();
    ASSERT_EQ(captions.rowCount(), 1);
    captions.setData(captions.index(0, CaptionTableModel::Text), "Look");
    in = w->renderRequest().inputs;
    EXPECT_EQ(in.captions, (CaptionCues{{0, CaptionTableModel::kNewCueMs, "Look"}}));
}

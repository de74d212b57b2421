#pragma once

#include "app/widgets/frmClipquill.h"
#include "studio/AppPaths.h"
#include "support/StudioWindow.h"
#include "support/TestAppFolder.h"

#include <QApplication>
#include <QDir>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>

// What the take's tests do with a studio: answer its questions, look into its work folder.
namespace cq::test {

inline QString workFolderOf(const TestAppFolder& app) {
    return AppPaths::forFolder(app.path()).gstrTempFilesDirectory;
}

// Answers the open question box of that name with the button of that name.
inline bool answer(const char* box, const char* button) {
    QMessageBox* question = nullptr;
    if (!QTest::qWaitFor(
            [&] {
                for (QWidget* w : QApplication::topLevelWidgets())
                    if (w->objectName() == box && w->isVisible())
                        question = qobject_cast<QMessageBox*>(w);
                return question != nullptr;
            },
            10000))
        return false;
    auto* pressed = question->findChild<QPushButton*>(button);
    if (!pressed)
        return false;
    pressed->click();
    return QTest::qWaitFor([&] { return !question || !question->isVisible(); }, 10000);
}

inline bool questionOpen(const char* box) {
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w->objectName() == box && w->isVisible())
            return true;
    return false;
}

// The visible message box whose text holds these words, once one is shown.
inline QMessageBox* messageSaying(const QString& words) {
    QMessageBox* told = nullptr;
    QTest::qWaitFor(
        [&] {
            for (QWidget* w : QApplication::topLevelWidgets())
                if (auto* box = qobject_cast<QMessageBox*>(w);
                    box && box->isVisible() && box->text().contains(words))
                    told = box;
            return told != nullptr;
        },
        10000);
    return told;
}

inline QStringList takeFilesIn(const QString& work) {
    return QDir(work).entryList(QDir::Files, QDir::Name);
}

inline std::unique_ptr<frmClipquill> restoredStudio(const TestAppFolder& app) {
    auto w = OpenStudio(app);
    EXPECT_TRUE(answer("restoreTakeQuestion", "Restore"));
    return w;
}

} // namespace cq::test

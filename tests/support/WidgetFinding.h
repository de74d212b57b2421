#pragma once

#include <QListWidget>
#include <QTest>

#include <gtest/gtest.h>

namespace cq::test {

// The named control of a window; a missing one fails the test.
template <typename T> T* Child(QObject* parent, const char* name) {
    T* child = parent->findChild<T*>(QString::fromLatin1(name));
    EXPECT_NE(child, nullptr) << name;
    return child;
}

// A click on the list entry with the text, as the user makes it.
inline void ClickItem(QListWidget* list, const QString& text) {
    const QList<QListWidgetItem*> found = list->findItems(text, Qt::MatchExactly);
    ASSERT_EQ(found.size(), 1) << text.toStdString();
    list->scrollToItem(found.first());
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                      list->visualItemRect(found.first()).center());
}

} // namespace cq::test

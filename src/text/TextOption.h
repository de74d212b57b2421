#pragma once

#include <QString>

namespace cq {

// What a click on a text of the list does: show it, speak it, or both. The value is the option
// button's place, from the left.
enum class TextOption { Text = 0, Speech = 1, Both = 2 };
inline constexpr int kTextOptionCount = 3;

// The option's caption.
inline QString TextOptionCaption(TextOption option) {
    switch (option) {
    case TextOption::Text:
        return QStringLiteral("Text");
    case TextOption::Speech:
        return QStringLiteral("Speech");
    case TextOption::Both:
        return QStringLiteral("Both");
    }
    return {};
}

} // namespace cq

#pragma once

#include "kit/Glyph.h"
#include "model/AppLanguage.h"

#include <chrono>
#include <functional>
#include <optional>
#include <vector>

namespace vormel {

/// A quiet word to the user that needs no answer: one line with what may be done about it.
struct Notice
{
    struct Action
    {
        TextPair text;
        std::function<void()> run; ///< the notice has gone by then
    };

    QString key; ///< what it is about; a newer one about the same takes its place
    Glyph glyph = Glyph::checkmarkCircle;
    std::function<QString(AppLanguage)> text;
    std::vector<Action> actions;
    std::optional<std::chrono::seconds> life; ///< nothing: until it is taken back
    bool canClose = true;                     ///< may the user put it away?
    /// When it has gone for whatever reason but one of its actions: its time, the user, a newer one, taken back.
    std::function<void()> onGone;
};

} // namespace vormel

#pragma once

#include "demo/DemoScript.h"
#include "demo/DemoSets.h"
#include "demo/QueueOnScreen.h"
#include "demo/SetOnStage.h"
#include "demo/Stage.h"

namespace vormel::demo {

/// Sets of archives from their links to the films in them: one with a volume that turns out to be spoilt and is
/// rebuilt, and one with a password. Afterwards the queue is what it was before. Must outlive its steps.
class SetsChapter
{
public:
    /// Window and sets must outlive the chapter.
    SetsChapter(const Stage& stage, const QWidget& window, const DemoSets& sets);

    [[nodiscard]] std::vector<Step> steps();
    /// How far things are, in one line.
    [[nodiscard]] QString progress() const;

private:
    [[nodiscard]] Step add();
    [[nodiscard]] Step start();
    [[nodiscard]] Step open();
    [[nodiscard]] Step fail();
    [[nodiscard]] Step repair();
    [[nodiscard]] Step finish();
    [[nodiscard]] Step askPassword();
    [[nodiscard]] Step tryWrongPassword();
    [[nodiscard]] Step extract();
    [[nodiscard]] Step finishSecret();
    [[nodiscard]] Step clear();

    void add(const FilmSet& set);
    void startAll(qint64 capKBps);
    [[nodiscard]] QString missingQuestion(bool afterWrongPassword) const;

    Stage m_stage;
    QueueOnScreen m_list;
    SetOnStage m_spoilt;
    SetOnStage m_secret;
    std::size_t m_itemsBefore = 0;
};

} // namespace vormel::demo

#include "demo/DemoScript.h"

#include "demo/Report.h"

#include <QDialog>
#include <QDir>
#include <QPainter>
#include <QPixmap>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace vormel::demo {

namespace {

using namespace std::chrono_literals;

constexpr auto lookInterval = 20ms;
constexpr auto progressInterval = 1s;

/// The window with the sheets over it, which are windows of their own.
QPixmap pictureOf(QWidget& window)
{
    QPixmap picture = window.grab();
    QPainter painter(&picture);
    for (QDialog* sheet : window.findChildren<QDialog*>()) {
        if (sheet->isVisible())
            painter.drawPixmap(window.mapFromGlobal(sheet->mapToGlobal(QPoint())), sheet->grab());
    }
    return picture;
}

bool isOver(const QElapsedTimer& timer, std::chrono::milliseconds time)
{
    return timer.hasExpired(time.count());
}

} // namespace

DemoScript::DemoScript(std::vector<Step> steps, Surroundings surroundings)
    : m_steps(std::move(steps))
    , m_surroundings(std::move(surroundings))
{
    connect(&m_looks, &QTimer::timeout, this, &DemoScript::look);
}

void DemoScript::start()
{
    m_sinceProgress.start();
    m_looks.start(lookInterval);
    beginStep();
}

void DemoScript::beginStep()
{
    if (m_current == m_steps.size()) {
        m_looks.stop();
        Q_EMIT ended();
        return;
    }
    const Step& step = m_steps[m_current];
    m_surroundings.report.say(step.title);
    m_sinceBegin.start();
    m_sinceReached.invalidate();
    if (step.begin)
        step.begin();
}

void DemoScript::look()
{
    const Step& step = m_steps[m_current];
    const QString missing = step.missing();
    if (!missing.isEmpty())
        return waitOn(missing);
    if (!m_sinceReached.isValid())
        m_sinceReached.start();
    if (isOver(m_sinceReached, step.settling))
        reached();
}

void DemoScript::waitOn(const QString& missing)
{
    const Step& step = m_steps[m_current];
    m_sinceReached.invalidate();
    if (step.progress && isOver(m_sinceProgress, progressInterval)) {
        m_sinceProgress.start();
        m_surroundings.report.say(u"          "_s + step.progress());
    }
    if (!isOver(m_sinceBegin, step.limit))
        return;
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(step.limit).count();
    m_surroundings.report.check(step.goal, u"missing after %1 s: %2"_s.arg(seconds).arg(missing));
    for (std::size_t left = m_current + 1; left < m_steps.size(); ++left)
        m_surroundings.report.say(u"not played: "_s + m_steps[left].title);
    m_current = m_steps.size();
    beginStep();
}

void DemoScript::reached()
{
    const Step& step = m_steps[m_current];
    m_surroundings.report.check(step.goal, QString());
    takeScreenshot();
    for (const Check& check : step.checks)
        m_surroundings.report.check(check.claim, check.objection());
    ++m_current;
    beginStep();
}

void DemoScript::takeScreenshot()
{
    const QString& name = m_steps[m_current].screenshot;
    if (name.isEmpty())
        return;
    const bool isSaved = pictureOf(m_surroundings.window).save(QDir(m_surroundings.output).filePath(name));
    m_surroundings.report.check(u"screenshot "_s + name + u" is written"_s,
                                isSaved ? QString() : u"the file could not be written"_s);
}

} // namespace vormel::demo

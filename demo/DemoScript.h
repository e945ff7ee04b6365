#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>

#include <chrono>
#include <functional>
#include <vector>

class QWidget;

namespace vormel::demo {

class Report;

/// A claim and what speaks against it at the moment; nothing if it holds.
struct Check
{
    QString claim;
    std::function<QString()> objection;
};

[[nodiscard]] inline QString unless(bool holds, const QString& objection)
{
    return holds ? QString() : objection;
}

/// One thing that is done, the state that it leads to, and what has to be true then.
struct Step
{
    QString title;
    std::function<void()> begin{}; ///< may be empty
    QString goal;
    std::function<QString()> missing;        ///< what the goal still lacks; nothing once it is reached
    std::chrono::milliseconds settling{300}; ///< how long the goal has to last; the window catches up meanwhile
    std::vector<Check> checks{};
    QString screenshot{}; ///< name of a PNG file; may be empty
    std::chrono::milliseconds limit = std::chrono::seconds(60);
    std::function<QString()> progress{}; ///< said about once a second while the goal is waited for; may be empty
};

/// Plays steps one after the other without ever blocking the window. A goal that is not reached in time ends it; a
/// check that fails does not, so that one run tells all that is wrong.
class DemoScript final : public QObject
{
    Q_OBJECT

public:
    struct Surroundings
    {
        QWidget& window;
        Report& report;
        QString output; ///< folder of the screenshots
    };

    DemoScript(std::vector<Step> steps, Surroundings surroundings);

    void start();

Q_SIGNALS:
    void ended();

private:
    void beginStep();
    void look();
    void waitOn(const QString& missing);
    void reached();
    void takeScreenshot();

    std::vector<Step> m_steps;
    Surroundings m_surroundings;
    std::size_t m_current = 0;
    QTimer m_looks;
    QElapsedTimer m_sinceBegin;
    QElapsedTimer m_sinceReached; ///< invalid while the goal lacks something
    QElapsedTimer m_sinceProgress;
};

} // namespace vormel::demo

#pragma once

#include "Accessible.h"
#include "fixtures/Sandbox.h"

#include <QProcess>

#include <functional>

namespace vormel::fixtures {

/// The real program with a queue of paused downloads, on the screen that there is, as a screen reader finds it.
class RunningProgram
{
public:
    /// Named by the files to be loaded; nothing of them is ever asked for. With a file of services, unless that is
    /// empty.
    explicit RunningProgram(const QStringList& files, const QByteArray& services = {});
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;
    ~RunningProgram();

    /// Waits until the program has shown itself to screen readers; false if it does not.
    [[nodiscard]] bool isUp();
    /// Gives its window the keyboard, as a second start does.
    void bringToFront() const;

    [[nodiscard]] const Accessible& application() const { return m_application; }
    /// The window of that role whose name starts so, which may yet have to open.
    [[nodiscard]] Accessible window(AtspiRole role, const QString& nameStart = {}) const;
    /// The list of the queue.
    [[nodiscard]] Accessible list() const;
    [[nodiscard]] Accessible row(const QString& nameStart) const;

private:
    void writeQueue(const QStringList& files) const;
    void start(QProcess& process) const;

    Sandbox m_sandbox;
    QProcess m_process;
    Accessible m_application;
};

/// Turns the event loops until it holds; false if that takes longer than some seconds.
[[nodiscard]] bool comesTrue(const std::function<bool()>& condition);

} // namespace vormel::fixtures

#pragma once

#include "platform/storage/FileDescriptor.h"

#include <QObject>

namespace vormel {

/// Turns SIGTERM, SIGINT and SIGHUP into an event of the event loop, so that the program can end in order. To be made
/// before any other thread: the signals are blocked in this one, and threads inherit that. Child processes inherit it
/// too and must have it undone.
class TerminationSignals final : public QObject
{
    Q_OBJECT

public:
    explicit TerminationSignals(QObject* parent = nullptr);

    /// Starts to deliver. Needs the event loop's application object.
    void listen();

Q_SIGNALS:
    void terminationRequested();

private:
    void take();

    FileDescriptor m_descriptor;
};

} // namespace vormel

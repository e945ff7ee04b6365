#pragma once

#include "platform/clock/Clock.h"

#include <QObject>

namespace vormel {

class AppSettings;
class QueueActivity;
class SleepInhibitor;

/// Holds sleep off while bytes move or a tool works, as far as the settings want that, and for a minute and a half
/// after, so that it stays off from one file to the next and until the next try. UI thread only.
class KeepAwake final : public QObject
{
    Q_OBJECT

public:
    /// All must outlive this.
    struct Ports
    {
        const QueueActivity& activity;
        const AppSettings& settings;
        Clock& clock;
        SleepInhibitor& inhibitor;
    };
    explicit KeepAwake(const Ports& ports);
    ~KeepAwake() override;

private:
    void look();
    void release();

    Ports m_ports;
    bool m_isHeld = false;
    Timer m_release;
};

} // namespace vormel

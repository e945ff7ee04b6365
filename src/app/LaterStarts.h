#pragma once

#include "app/LinkFile.h"
#include "platform/async/Background.h"
#include "platform/async/Lifetime.h"

#include <QCoroTask>
#include <QObject>
#include <QStringList>

#include <memory>
#include <vector>

class QDBusConnection;

namespace vormel {

class AppSettings;
class DesktopActivation;
class MainWindow;
class Notices;
class SingleInstance;

/// What starts of the program want of the window, be it this start, or a later one that finds the program running: to
/// come forward, and to show links in the sheet for adding. UI thread only.
class LaterStarts final : public QObject
{
    Q_OBJECT

public:
    /// All outlive it.
    struct Ports
    {
        MainWindow& window;
        const AppSettings& settings;
        Notices& notices;
    };
    /// Listens to the instance from now on.
    LaterStarts(const Ports& ports, const SingleInstance& instance);
    ~LaterStarts() override;

    /// Listens at the bus, too.
    void listen(const QDBusConnection& bus);
    /// Is found at the bus no longer.
    void stopListening();
    /// Brings the window forward, with the token that allows it to take the focus, if there is one.
    void comeForward(const QString& token);
    /// Shows the http and https links among the addresses, and those in the text files that they name; one notice tells
    /// of the files without any, of those that are not in a folder here, and of those that are too many. What is
    /// something else is passed over. Files are read on another thread.
    void open(const QStringList& addresses);

private:
    struct Failure
    {
        QString name;
        LinkFile::Problem problem;
    };

    QCoro::Task<> openFiles(QStringList paths, std::vector<Failure> failures);
    void tellOf(const std::vector<Failure>& failures);

    Ports m_ports;
    std::unique_ptr<DesktopActivation> m_activation;
    Background m_reading;
    Lifetime m_lifetime;
};

} // namespace vormel

#include "platform/desktop/FileViewer.h"

#include "platform/desktop/UrlOpener.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QFileInfo>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

void openFolder(const QString& path)
{
    DesktopUrlOpener().open(QUrl::fromLocalFile(QFileInfo(path).absolutePath()));
}

QDBusMessage showItems(const QString& path)
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(u"org.freedesktop.FileManager1"_s, u"/org/freedesktop/FileManager1"_s,
                                       u"org.freedesktop.FileManager1"_s, u"ShowItems"_s);
    // The second is the token of start-up notification, which nobody has here.
    call << QStringList{QString::fromLatin1(QUrl::fromLocalFile(path).toEncoded())} << QString();
    return call;
}

} // namespace

DesktopFileViewer::DesktopFileViewer(std::optional<QDBusConnection> bus)
    : m_bus(std::move(bus))
{}

void DesktopFileViewer::show(const QString& path)
{
    const QDBusConnection bus = m_bus ? *m_bus : QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        openFolder(path);
        return;
    }
    auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(showItems(path))); // deletes itself when it is there
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, answer, [answer, path] {
        if (answer->isError())
            openFolder(path);
        answer->deleteLater();
    });
}

} // namespace vormel

#include "ui/clipboard/Clipboard.h"

#include <QClipboard>
#include <QGuiApplication>

namespace vormel {

namespace {

bool isReadableOnlyWithFocus()
{
    return QGuiApplication::platformName().startsWith(u"wayland");
}

} // namespace

DesktopClipboard::DesktopClipboard()
{
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, &Clipboard::changed);
    if (!isReadableOnlyWithFocus())
        return;
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (state == Qt::ApplicationActive)
            Q_EMIT changed();
    });
}

bool DesktopClipboard::isOurs() const
{
    return QGuiApplication::clipboard()->ownsClipboard();
}

QString DesktopClipboard::text() const
{
    return QGuiApplication::clipboard()->text();
}

} // namespace vormel

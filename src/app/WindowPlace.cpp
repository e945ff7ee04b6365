#include "app/WindowPlace.h"

#include "platform/storage/UserDefaults.h"

#include <QEvent>
#include <QMainWindow>
#include <QSplitter>

namespace vormel {

namespace {

constexpr QStringView geometryKey = u"windowGeometry";
constexpr QStringView splitterKey = u"windowSplitter";

QByteArray bytes(const UserDefaults& defaults, QStringView key)
{
    return QByteArray::fromBase64(defaults.stringForKey(key.toString()).value_or(QString()).toLatin1());
}

QString text(const QByteArray& bytes)
{
    return QString::fromLatin1(bytes.toBase64());
}

} // namespace

WindowPlace::WindowPlace(QMainWindow& window, QSplitter& splitter, UserDefaults& defaults)
    : m_window(window)
    , m_splitter(splitter)
    , m_defaults(defaults)
{
    restore();
    window.installEventFilter(this);
}

void WindowPlace::restore()
{
    m_window.restoreGeometry(bytes(m_defaults, geometryKey));
    m_splitter.restoreState(bytes(m_defaults, splitterKey));
}

void WindowPlace::remember()
{
    m_defaults.setObject(geometryKey.toString(), text(m_window.saveGeometry()));
    m_defaults.setObject(splitterKey.toString(), text(m_splitter.saveState()));
}

bool WindowPlace::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == &m_window && event->type() == QEvent::Close)
        remember();
    return QObject::eventFilter(watched, event);
}

} // namespace vormel

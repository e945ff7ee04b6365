#include "screenshots/Stage.h"

#include "ui/queue/list/QueueView.h"

#include <QApplication>
#include <QPainter>
#include <QTimer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel::screenshots {

Stage::Stage(AppLanguage language, QSize size)
{
    for (const char* tool : {"unzip", "unrar", "rar", "7zz"})
        engine.tools.add(QString::fromLatin1(tool));
    desktop.tools.look();
    desktop.managers.manager = PackageManager::apt;
    engine.settings().language.set(language);
    engine.settings().downloadFolderPath.set(u"/home/anna/Downloads"_s);
    engine.settings().extractionFolderPath.set(u"/home/anna/Videos/Films and series/To be sorted"_s);
    window.resize(size);
    window.show();
    settle();
}

void Stage::settle()
{
    bool isOver = false;
    QTimer::singleShot(std::chrono::milliseconds(120), [&isOver] { isOver = true; });
    while (!isOver)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

std::vector<ItemPtr> Stage::add(const QStringList& names)
{
    QStringList urls;
    for (const QString& name : names)
        urls << u"https://files.example/"_s + QString::fromLatin1(QUrl::toPercentEncoding(name));
    std::vector<ItemPtr> items = engine.add(urls);
    // Scenes show what they are about, and that from its top.
    desktop.notices.takeBack(u"added"_s);
    part<QueueView>("queueView").scrollToTop();
    return items;
}

QPixmap Stage::picture()
{
    settle();
    QList<QWidget*> layers;
    QRect area = window.geometry();
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (!widget->isVisible() || widget == &window)
            continue;
        layers << widget;
        area |= widget->geometry();
    }
    const qreal ratio = window.devicePixelRatioF();
    QPixmap picture(area.size() * ratio);
    picture.setDevicePixelRatio(ratio);
    picture.fill(QColor(0x80, 0x80, 0x80));
    QPainter painter(&picture);
    painter.drawPixmap(window.geometry().topLeft() - area.topLeft(), window.grab());
    for (QWidget* layer : std::as_const(layers)) {
        const QRect place = layer->geometry().translated(-area.topLeft());
        painter.drawPixmap(place.topLeft(), layer->grab());
        painter.setPen(QColor(0x80, 0x80, 0x80));
        painter.drawRect(place.adjusted(-1, -1, 0, 0));
    }
    return picture;
}

} // namespace vormel::screenshots

#include "demo/LinkSheet.h"

#include "app/MainWindow.h"
#include "demo/Hands.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace vormel::demo {

void openLinkSheet(MainWindow& window, const QString& link)
{
    QGuiApplication::clipboard()->setText(link);
    window.showPage(Page::downloads);
    press(partInSight<QToolButton>(window, u"addURLs"_s));
}

} // namespace vormel::demo

#include "webengine/Plugin.h"

#include "webengine/EngineBrowser.h"

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QQuickWindow>

using namespace Qt::StringLiterals;

namespace vormel {

std::unique_ptr<WebBrowser> Plugin::makeBrowser(const QString& folder, Clock& clock)
{
    // The engine wants an OpenGL context that a program makes at its start, whether a page is ever shown or not.
    // Without one it draws by itself, unless it tells of the context that it does not have: that is a crash.
    const QString software = u"software"_s;
    if (!QCoreApplication::testAttribute(Qt::AA_ShareOpenGLContexts)) {
        if (QQuickWindow::sceneGraphBackend() != software)
            QQuickWindow::setSceneGraphBackend(software);
        QLoggingCategory::setFilterRules(u"qt.webenginecontext.info=false"_s);
    }
    return std::make_unique<EngineBrowser>(folder, clock);
}

} // namespace vormel

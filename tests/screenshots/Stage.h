#pragma once

#include "app/MainWindow.h"
#include "fixtures/FakeResolvers.h"
#include "ui/FakeDesktop.h"
#include "ui/FakeUpdater.h"
#include "ui/Part.h"

namespace vormel::screenshots {

/// The window over an engine that does nothing by itself, so that every state can be put on and keeps still.
class Stage
{
public:
    Stage(AppLanguage language, QSize size);

    /// The window with all that is open above it.
    [[nodiscard]] QPixmap picture();

    /// Adds the files of these names, all from one host.
    std::vector<ItemPtr> add(const QStringList& names);
    ItemPtr add(const QString& name) { return add(QStringList{name}).front(); }
    template <typename T = QWidget>
    [[nodiscard]] T& part(const char* name)
    {
        return fixtures::partOf<T>(window, name);
    }
    void settle();

    std::shared_ptr<fixtures::ServiceLog> log = std::make_shared<fixtures::ServiceLog>();
    fixtures::EngineOnScript engine{fixtures::fakeServices(log)};
    fixtures::FakeDesktop desktop{engine};
    fixtures::FakeUpdater updater;
    MainWindow window{desktop.ports(), updater};
};

} // namespace vormel::screenshots

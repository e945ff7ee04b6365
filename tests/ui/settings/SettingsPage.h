#pragma once

#include "fixtures/EventLoop.h"
#include "ui/FakeDesktop.h"
#include "ui/Part.h"
#include "ui/settings/SettingsView.h"

#include <QAbstractButton>
#include <QLabel>
#include <QTest>

#include <gtest/gtest.h>

namespace vormel::fixtures {

/// The page of the settings, shown, on a machine with a package manager and without tools.
class SettingsPage : public ::testing::Test
{
protected:
    SettingsPage()
    {
        desktop.managers.manager = PackageManager::apt;
        page.resize(620, 450);
        page.show();
        turnEventLoop(); // lays out what scrolls
    }
    [[nodiscard]] AppSettings& settings() { return engine.settings(); }
    void useItalian() { settings().language.set(AppLanguage::italian); }

    template <typename T = QWidget>
    [[nodiscard]] T& part(const char* name) const
    {
        return partOf<T>(page, name);
    }
    [[nodiscard]] QString text(const char* name) const { return part<QLabel>(name).text(); }
    [[nodiscard]] QString button(const char* name) const { return part<QAbstractButton>(name).text(); }
    [[nodiscard]] bool isShown(const char* name) const { return part(name).isVisible(); }
    /// Only the active window has a widget with the focus.
    void activate()
    {
        page.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&page));
    }
    void click(const char* name) const { QTest::mouseClick(&part(name), Qt::LeftButton); }
    void press(const char* name, Qt::Key key) const { QTest::keyClick(&part(name), key); }

    EngineOnScript engine;
    FakeDesktop desktop{engine};
    SettingsView page{desktop.ports()};
};

} // namespace vormel::fixtures

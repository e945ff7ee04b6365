#pragma once

#include "WebServices.h"
#include "app/MainWindow.h"
#include "app/Program.h"
#include "fixtures/EventLoop.h"

#include <QWidget>

#include <gmock/gmock.h>

#include <memory>

namespace vormel::fixtures {

/// The program as it is put together for a user without a keyring, with its window, used by a person who waits for
/// what is to come.
class ProgramOnWeb : public ::testing::Test
{
protected:
    ProgramOnWeb();
    ~ProgramOnWeb() override;

    void start();
    /// As a user ends it.
    void quit();

    [[nodiscard]] DownloadManager& manager() { return m_program->manager(); }
    [[nodiscard]] MainWindow& window() { return *m_window; }
    [[nodiscard]] ItemPtr add(const Link& url);
    void addTerabytezAccount();

    /// The part of the window, or of a sheet above it, that has this name and is in sight; null after a while.
    template <typename T = QWidget>
    [[nodiscard]] T* waitFor(const QString& name)
    {
        T* found = nullptr;
        [[maybe_unused]] const bool isThere = waitUntil([&] { return (found = inSight<T>(name)) != nullptr; });
        return found;
    }
    template <typename T = QWidget>
    [[nodiscard]] T* inSight(const QString& name)
    {
        for (T* part : m_window->findChildren<T*>(name)) {
            if (part->isVisible())
                return part;
        }
        return nullptr;
    }
    /// Once it is there and can be pressed.
    void press(const QString& button);
    [[nodiscard]] bool waitUntilGone(const QString& name);

    /// What a script in the page of the open sheet gives.
    [[nodiscard]] QVariant inPage(const QString& script);
    [[nodiscard]] bool waitInPage(const QString& condition);
    /// Does all that a user does in the sheet that is to open.
    void signIn();

    [[nodiscard]] bool waitForStatus(const ItemPtr& item, DownloadStatus::Kind kind);
    void expectWhole(const ItemPtr& item, int number, qint64 size = WebServices::fileSize);

    WebServices services;
    Sandbox sandbox;

private:
    std::unique_ptr<Program> m_program;
    std::unique_ptr<MainWindow> m_window;
};

} // namespace vormel::fixtures

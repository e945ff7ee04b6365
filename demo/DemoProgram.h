#pragma once

#include "demo/DemoSites.h"
#include "demo/Report.h"
#include "platform/desktop/Folders.h"

#include <QTemporaryDir>

namespace vormel::demo {

/// The real program with its window, over the demo's servers and in a throw-away folder that is gone at the end.
class DemoProgram
{
public:
    DemoProgram();

    /// For a person at the window. Ends when it is closed; gives the exit code.
    [[nodiscard]] int present();
    /// Plays by itself and checks what it does; screenshots go into the folder.
    [[nodiscard]] int perform(const QString& output);

private:
    [[nodiscard]] bool hasRoom() const;
    void introduce() const;
    void play(const QString& output);
    void checkNewStart();

    QTemporaryDir m_folder;
    Folders m_folders;
    DemoSites m_sites;
    Report m_report;
};

} // namespace vormel::demo

#include "ui/settings/SettingsPage.h"

#include <QGroupBox>
#include <QSpinBox>
#include <QWheelEvent>

namespace vormel {
namespace {

class DownloadSectionTest : public fixtures::SettingsPage
{
protected:
    QSpinBox& stepper() { return part<QSpinBox>("concurrentDownloads"); }
};

TEST_F(DownloadSectionTest, SpeaksBothLanguages)
{
    EXPECT_EQ(part<QGroupBox>("downloadSection").title(), u"Download");
    EXPECT_EQ(text("concurrentDownloadsLabel"), u"Concurrent downloads");
    EXPECT_EQ(text("autoStartDownloadsLabel"), u"Auto-start downloads when added");
    EXPECT_EQ(text("autoStartDownloadsNote"),
              u"Downloads are paused when added. Press ▶ in the toolbar to start them.");
    EXPECT_EQ(text("downloadRevFilesLabel"), u"Download .rev recovery files");
    EXPECT_EQ(text("downloadRevFilesNote"),
              u".rev files are skipped by default. Enable only if you need to repair a broken multi-part RAR.");
    useItalian();
    EXPECT_EQ(part<QGroupBox>("downloadSection").title(), u"Download");
    EXPECT_EQ(text("concurrentDownloadsLabel"), u"Download simultanei");
    EXPECT_EQ(text("autoStartDownloadsLabel"), u"Avvia i download automaticamente quando aggiunti");
    EXPECT_EQ(text("autoStartDownloadsNote"),
              u"I download vengono messi in pausa. Premi ▶ nella barra degli strumenti per avviarli.");
    EXPECT_EQ(text("downloadRevFilesLabel"), u"Scarica i file di recupero .rev");
    EXPECT_EQ(text("downloadRevFilesNote"), u"I file .rev vengono ignorati per impostazione predefinita. Abilitali "
                                            u"solo se devi riparare un RAR multi-parte danneggiato.");
}

TEST_F(DownloadSectionTest, TheStepperStaysBetweenOneAndTen)
{
    settings().maxConcurrentDownloads.set(2);
    stepper().stepDown();
    stepper().stepDown();
    EXPECT_EQ(settings().maxConcurrentDownloads.value(), 1);
    settings().maxConcurrentDownloads.set(9);
    stepper().stepUp();
    stepper().stepUp();
    EXPECT_EQ(settings().maxConcurrentDownloads.value(), 10);
    EXPECT_EQ(stepper().text(), u"10");
}

TEST_F(DownloadSectionTest, ANumberOutsideIsShownAsTheNearestAndLeftAsItIs)
{
    settings().maxConcurrentDownloads.set(50);
    EXPECT_EQ(stepper().value(), 10);
    EXPECT_EQ(settings().maxConcurrentDownloads.value(), 50);
}

TEST_F(DownloadSectionTest, TheWheelChangesTheStepperOnlyOnceItHasTheFocus)
{
    const auto turn = [this] {
        const QPoint centre = stepper().rect().center();
        QWheelEvent wheel(centre, stepper().mapToGlobal(centre), {}, QPoint(0, 120), Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&stepper(), &wheel);
    };
    activate();
    stepper().clearFocus();
    turn();
    EXPECT_EQ(stepper().value(), 3);
    stepper().setFocus();
    turn();
    EXPECT_EQ(stepper().value(), 4);
}

TEST_F(DownloadSectionTest, TogglesAreWorkedByKeysMouseAndTheirLabels)
{
    press("autoStartDownloads", Qt::Key_Space);
    EXPECT_TRUE(settings().autoStartDownloads.value());
    click("autoStartDownloads");
    EXPECT_FALSE(settings().autoStartDownloads.value());
    click("autoStartDownloadsLabel");
    EXPECT_TRUE(settings().autoStartDownloads.value());
    click("downloadRevFiles");
    EXPECT_TRUE(settings().downloadRevFiles.value());
}

TEST_F(DownloadSectionTest, TogglesFollowTheirSettings)
{
    settings().downloadRevFiles.set(true);
    EXPECT_TRUE(part<QAbstractButton>("downloadRevFiles").isChecked());
}

TEST_F(DownloadSectionTest, NotesAreShownWhileTheirTogglesAreOff)
{
    for (const char* toggle : {"autoStartDownloads", "downloadRevFiles"}) {
        const QByteArray note = QByteArray(toggle) + "Note";
        EXPECT_TRUE(isShown(note.constData())) << toggle;
        click(toggle);
        EXPECT_FALSE(isShown(note.constData())) << toggle;
        click(toggle);
        EXPECT_TRUE(isShown(note.constData())) << toggle;
    }
}

} // namespace
} // namespace vormel

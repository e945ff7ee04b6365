#include "ui/settings/FolderRow.h"

#include "kit/PathLabel.h"
#include "kit/PlatformTexts.h"
#include "ui/settings/SettingsPage.h"

#include <QDir>
#include <QFileDialog>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

class FolderRowTest : public fixtures::SettingsPage
{
protected:
    [[nodiscard]] FolderRow& row(const char* name = "downloadFolder") const { return part<FolderRow>(name); }
    template <typename T = QAbstractButton>
    [[nodiscard]] T& partOfRow(const char* name) const
    {
        return fixtures::partOf<T>(row(), name);
    }
    QFileDialog& choose(const FolderRow& of)
    {
        QTest::mouseClick(&fixtures::partOf<QWidget>(of, "chooseFolder"), Qt::LeftButton);
        return fixtures::partOf<QFileDialog>(of, "folderDialog");
    }
};

TEST_F(FolderRowTest, SpeaksBothLanguages)
{
    EXPECT_EQ(partOfRow<QLabel>("folderLabel").text(), u"Download folder");
    EXPECT_EQ(partOfRow("chooseFolder").text(), u"Choose...");
    EXPECT_EQ(partOfRow("resetFolder").text(), u"Reset");
    EXPECT_EQ(partOfRow("openFolder").toolTip(), platformText(PlatformText::openInViewer, AppLanguage::english));
    useItalian();
    EXPECT_EQ(partOfRow<QLabel>("folderLabel").text(), u"Cartella di download");
    EXPECT_EQ(partOfRow("chooseFolder").text(), u"Scegli...");
    EXPECT_EQ(partOfRow("resetFolder").text(), u"Ripristina");
    EXPECT_EQ(partOfRow("openFolder").toolTip(), platformText(PlatformText::openInViewer, AppLanguage::italian));
}

TEST_F(FolderRowTest, ShowsTheFolderOfTheSetting)
{
    settings().downloadFolderPath.set(u"/srv/new"_s);
    EXPECT_EQ(partOfRow<QLabel>("path").text(), u"/srv/new");
    settings().downloadFolderPath.set(QDir::homePath() + u"/new"_s);
    EXPECT_EQ(partOfRow<QLabel>("path").text(), u"~/new");
}

TEST_F(FolderRowTest, ALongPathIsCutInTheMiddleAndWholeInTheToolTip)
{
    const QString path = u"/srv/"_s + u"long/"_s.repeated(60) + u"end"_s;
    settings().downloadFolderPath.set(path);
    fixtures::turnEventLoop();
    const QString shown = partOfRow<QLabel>("path").text();
    EXPECT_TRUE(shown.startsWith(u"/srv/") && shown.contains(u'…') && shown.endsWith(u"end")) << qPrintable(shown);
    EXPECT_EQ(partOfRow<PathLabel>("folderPath").toolTip(), path);
    EXPECT_LE(row().width(), page.viewport()->width());
}

TEST_F(FolderRowTest, ThePickerStartsAtTheFolderAndTakesFolders)
{
    settings().downloadFolderPath.set(engine.sandbox.root());
    const QFileDialog& dialog = choose(row());
    EXPECT_EQ(dialog.directory().path(), engine.sandbox.root());
    EXPECT_EQ(dialog.fileMode(), QFileDialog::Directory);
    EXPECT_EQ(dialog.windowModality(), Qt::WindowModal);
    EXPECT_EQ(dialog.labelText(QFileDialog::Accept), u"Select");
    useItalian();
    EXPECT_EQ(choose(row("extractionFolder")).labelText(QFileDialog::Accept), u"Seleziona");
}

TEST_F(FolderRowTest, AnOpenPickerFollowsTheLanguage)
{
    const QFileDialog& dialog = choose(row());
    EXPECT_EQ(dialog.windowTitle(), u"Download folder");
    useItalian();
    EXPECT_EQ(dialog.windowTitle(), u"Cartella di download");
    EXPECT_EQ(dialog.labelText(QFileDialog::Accept), u"Seleziona");
}

TEST_F(FolderRowTest, WhatIsPickedBecomesTheSetting)
{
    const QString picked = engine.sandbox.path(u"picked"_s);
    ASSERT_TRUE(QDir().mkpath(picked));
    settings().extractionFolderPath.set(u"/srv/other"_s);
    QFileDialog& dialog = choose(row());
    Q_EMIT dialog.fileSelected(picked);
    EXPECT_EQ(settings().downloadFolderPath.value(), picked);
    EXPECT_EQ(settings().extractionFolderPath.value(), u"/srv/other");
}

TEST_F(FolderRowTest, CancellingThePickerChangesNothing)
{
    settings().downloadFolderPath.set(u"/srv/new"_s);
    choose(row()).reject();
    EXPECT_EQ(settings().downloadFolderPath.value(), u"/srv/new");
}

TEST_F(FolderRowTest, ResetGoesToTheUsersDownloads)
{
    settings().downloadFolderPath.set(u"/srv/new"_s);
    partOfRow("resetFolder").click();
    EXPECT_EQ(settings().downloadFolderPath.value(), engine.sandbox.folders().downloads);
}

TEST_F(FolderRowTest, TheFolderButtonOpensTheFolder)
{
    settings().downloadFolderPath.set(u"/srv/a b"_s);
    EXPECT_TRUE(partOfRow<QToolButton>("openFolder").autoRaise());
    partOfRow("openFolder").click();
    EXPECT_EQ(desktop.opener.opened, QList<QUrl>{QUrl::fromLocalFile(u"/srv/a b"_s)});
}

} // namespace
} // namespace vormel

#include "engine/transfer/TransferTexts.h"

#include "fixtures/Sandbox.h"
#include "model/AppSettings.h"
#include "platform/storage/FileWriter.h"
#include "platform/storage/UserDefaults.h"

#include <gtest/gtest.h>

#include <cerrno>

using namespace Qt::StringLiterals;

using namespace vormel;

namespace {

struct Case
{
    const char* name;
    int systemError;
    bool isFolderThere;
    const char* english;
    const char* italian;
};

const Case cases[] = {
    {"fullDisk", ENOSPC, true, "The disk is full.", "Il disco è pieno."},
    {"spentQuota", EDQUOT, true, "The disk is full.", "Il disco è pieno."},
    {"noPermission", EACCES, true, "The download folder cannot be written to.",
     "Impossibile scrivere nella cartella dei download."},
    {"readOnly", EROFS, true, "The download folder cannot be written to.",
     "Impossibile scrivere nella cartella dei download."},
    {"noFolder", ENOENT, false, "The download folder is missing.", "La cartella dei download non esiste."},
    {"aFileForTheFolder", ENOTDIR, false, "The download folder is missing.", "La cartella dei download non esiste."},
    {"noFileInTheFolder", ENOENT, true, "The file or its folder was removed by another program — retry",
     "Il file o la sua cartella è stato rimosso da un altro programma — riprova"},
    {"aFileForTheFolderOfTheSet", ENOTDIR, true, "A file stands where the folder of this download should be.",
     "Al posto della cartella di questo download c'è un file."},
    {"changedPart", ESTALE, true, "The partial file was changed by another program — retry",
     "Il file parziale è stato modificato da un altro programma — riprova"},
    {"anotherDisk", EXDEV, true, "The finished file could not be moved to its folder, which is on another disk.",
     "Impossibile spostare il file completato nella sua cartella, che si trova su un altro disco."},
    {"anythingElse", EIO, true, "The file could not be written: Input/output error",
     "Impossibile scrivere il file: Input/output error"},
};

class FileErrorText : public ::testing::TestWithParam<Case>
{};

} // namespace

TEST_P(FileErrorText, TellsWhatIsTheCaseInBothLanguages)
{
    const fixtures::Sandbox sandbox;
    if (GetParam().isFolderThere)
        sandbox.write(u"Downloads/other.bin"_s, "x");
    FileWriter writer;
    UserDefaults defaults(sandbox.path(u"preferences.json"_s), writer);
    AppSettings settings(defaults, sandbox.path(u"Downloads"_s));
    EXPECT_EQ(fileErrorText(GetParam().systemError, settings).toStdString(), GetParam().english);
    settings.language.set(AppLanguage::italian);
    EXPECT_EQ(fileErrorText(GetParam().systemError, settings).toStdString(), GetParam().italian);
}

INSTANTIATE_TEST_SUITE_P(Errors, FileErrorText, ::testing::ValuesIn(cases),
                         [](const auto& error) { return error.param.name; });

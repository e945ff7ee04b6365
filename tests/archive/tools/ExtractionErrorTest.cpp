#include "archive/tools/ExtractionError.h"

#include "archive/tools/InstallAdvice.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using Kind = ExtractionError::Kind;

Kind classified(int code, const char* output, bool passwordGiven)
{
    return classifyToolError(ExtractionError::extractionFailed(code, QString::fromUtf8(output)), passwordGiven).kind();
}

TEST(ExtractionError, EachKindHasItsText)
{
    EXPECT_EQ(ExtractionError::extractionFailed(3, u"oh"_s).errorDescription(), u"Extraction failed (code 3): oh");
    EXPECT_EQ(ExtractionError::unsupportedFormat().errorDescription(), u"Unsupported archive format");
    EXPECT_EQ(ExtractionError::passwordRequired().errorDescription(), u"Archive is password-protected");
    EXPECT_EQ(ExtractionError::wrongPassword().errorDescription(), u"Incorrect archive password");
    EXPECT_EQ(ExtractionError::toolNotFound(u"7z"_s).errorDescription(), toolNotFoundText(u"7z"_s));
    EXPECT_EQ(ExtractionError::repairToolNotFound().errorDescription(), repairToolNotFoundText());
}

TEST(ExtractionError, AMissingToolIsFoundWithThePackageManagerOfThePlatform)
{
    EXPECT_EQ(toolNotFoundText(u"7z"_s, PackageManager::brew), u"7z not found. Install it with: brew install 7z");
    EXPECT_EQ(toolNotFoundText(u"unrar/rar"_s, PackageManager::brew),
              u"unrar/rar not found. Install it with: brew install unrar/rar");
    EXPECT_EQ(toolNotFoundText(u"7z"_s, PackageManager::apt), u"7z not found. Install it with: sudo apt install 7zip");
    EXPECT_EQ(toolNotFoundText(u"unrar"_s, PackageManager::apt),
              u"unrar not found. Install it with: sudo apt install unrar");
    EXPECT_EQ(toolNotFoundText(u"unrar/rar"_s, PackageManager::apt),
              u"unrar/rar not found. Install it with: sudo apt install unrar");
}

TEST(ExtractionError, TheMissingRepairToolSaysWhatItIsNeededFor)
{
    EXPECT_EQ(repairToolNotFoundText(PackageManager::brew),
              u"rar (needed to rebuild volumes from .rev — install with: brew install rar) not found. Install it with: "
              u"brew install rar (needed to rebuild volumes from .rev — install with: brew install rar)");
    EXPECT_EQ(repairToolNotFoundText(PackageManager::apt),
              u"rar (needed to rebuild volumes from .rev — install with: sudo apt install rar) not found. Install it "
              u"with: sudo apt install rar");
}

TEST(ExtractionError, TheTextShowsTwoHundredCharactersNotBytes)
{
    const QString family = u"👨‍👩‍👧"_s;
    const QString shown = ExtractionError::extractionFailed(1, family.repeated(300)).errorDescription();
    EXPECT_EQ(shown, u"Extraction failed (code 1): "_s + family.repeated(200));
    const QString exact = u"é"_s.repeated(200);
    EXPECT_EQ(ExtractionError::extractionFailed(1, exact + u'x').errorDescription(),
              u"Extraction failed (code 1): "_s + exact);
}

TEST(ExtractionError, TheWholeOutputIsKeptBesideTheText)
{
    const QString output = u"x"_s.repeated(5000);
    const ExtractionError error = ExtractionError::extractionFailed(7, output);
    EXPECT_EQ(error.exitCode(), 7);
    EXPECT_EQ(error.output(), output);
}

TEST(ExtractionError, TheTextTellsTheReasonAndNotTheBanner)
{
    EXPECT_EQ(ExtractionError::extractionFailed(3,
                                                u"\nUNRAR 6.21 freeware      Copyright (c) 1993-2023 A. Uthor\n\n\n"
                                                u"Extracting from /x/bad.rar\n\nExtracting  /x/out/f     \b\b\b\b 50%\n"
                                                u"f     - checksum error\nTotal errors: 1\n"_s)
                  .errorDescription(),
              u"Extraction failed (code 3): f     - checksum error");
    EXPECT_EQ(ExtractionError::extractionFailed(3, u"UNRAR 6.21 freeware\n"_s).errorDescription(),
              u"Extraction failed (code 3): UNRAR 6.21 freeware\n");
}

TEST(ExtractionError, AWrongPasswordThatMayBeDamageCanBeToldAsSuch)
{
    const auto classify = [](int code, const char* output) {
        return classifyToolError(ExtractionError::extractionFailed(code, QString::fromUtf8(output)), true);
    };
    for (const char* output : {"ERROR: Data Error in encrypted file. Wrong password? : f",
                               "ERROR: CRC Failed in encrypted file. Wrong password? : f",
                               "ERROR: /x/a.7z\nCannot open encrypted archive. Wrong password?",
                               "ERROR: /x/a.7z : Can not open encrypted archive. Wrong password?",
                               "Checksum error in the encrypted file f. Corrupt file or wrong password."}) {
        const ExtractionError wrong = classify(2, output);
        EXPECT_EQ(wrong.kind(), Kind::wrongPassword) << output;
        ASSERT_TRUE(wrong.asDamage()) << output;
        EXPECT_EQ(wrong.asDamage()->kind(), Kind::extractionFailed);
        EXPECT_EQ(wrong.asDamage()->exitCode(), 2);
        EXPECT_TRUE(wrong.asDamage()->errorDescription().startsWith(u"Extraction failed (code 2): ")) << output;
    }
    for (const char* output :
         {"Incorrect password for f", "skipping: f  incorrect password", "ERROR: Wrong password : f"})
        EXPECT_FALSE(classify(output[0] == 'I' ? 11 : 2, output).asDamage()) << output;
    EXPECT_FALSE(classify(3, "f - checksum error").asDamage());
    EXPECT_FALSE(classifyToolError(ExtractionError::extractionFailed(2, u"Wrong password?"_s), false).asDamage());
}

TEST(ExtractionError, AMemberThatIsCalledLikeAPasswordBlamesNone)
{
    for (const char* output :
         {"Extracting  /x/Wrong password.txt     \b\b\b\b 50%\nCannot create /x/f",
          "Enter password.txt   - checksum error",
          "wrong password.txt : packed data checksum error in volume /x/a.part1.rar",
          "ERROR: CRC Failed : wrong password.txt", "  inflating: /x/needs a password.txt  \ndisk full"})
        EXPECT_EQ(classified(2, output, true), Kind::extractionFailed) << output;
}

TEST(ExtractionError, ExitCodeElevenBlamesThePassword)
{
    EXPECT_EQ(classified(11, "", false), Kind::passwordRequired);
    EXPECT_EQ(classified(11, "", true), Kind::wrongPassword);
    EXPECT_EQ(classified(3, "", true), Kind::extractionFailed);
}

TEST(ExtractionError, ACrashIsNoPasswordFailure)
{
    EXPECT_EQ(classified(128 + 11, "", true), Kind::extractionFailed);
}

TEST(ExtractionError, WordsOfTheToolsBlameThePasswordInAnyLetterCase)
{
    for (const char* words :
         {"Enter password (will not be echoed):", "PASSWORD INCORRECT", "ERROR: Wrong password : f",
          "Checksum error in the encrypted file: f", "Cannot open encrypted archive", "Can not open encrypted archive",
          "this needs a password", "skipping: f  incorrect password", "skipping: f  unable to get password"}) {
        EXPECT_EQ(classified(2, words, false), Kind::passwordRequired) << words;
        EXPECT_EQ(classified(2, words, true), Kind::wrongPassword) << words;
    }
}

TEST(ExtractionError, OnlyBackslashesWithEverythingUnpackedAreAMereWarning)
{
    const auto isMere = [](int code, const QString& output) {
        return isMereWarning(ExtractionError::extractionFailed(code, output));
    };
    const QString warning = u"warning:  /x/a.zip appears to use backslashes as path separators\n"_s;
    const QString inTurn = u"  inflating: /x/out/f  \n"_s;
    EXPECT_TRUE(isMere(1, u"Archive:  /x/a.zip\n"_s + warning + inTurn));
    EXPECT_FALSE(isMere(2, warning + inTurn));
    EXPECT_FALSE(isMere(1, inTurn));
    EXPECT_FALSE(isMere(1, warning + u"skipping: f  need PK compat. v6.3\n"_s + inTurn));
    EXPECT_FALSE(isMere(1, u"warning:  something else\n"_s + warning));
    EXPECT_FALSE(isMere(1, {}));
}

TEST(ExtractionError, OtherFailuresComeBackAsTheyAre)
{
    const ExtractionError error = classifyToolError(ExtractionError::extractionFailed(9, u"disk full"_s), true);
    EXPECT_EQ(error.kind(), Kind::extractionFailed);
    EXPECT_EQ(error.exitCode(), 9);
    EXPECT_EQ(error.output(), u"disk full");
    EXPECT_EQ(classifyToolError(ExtractionError::unsupportedFormat(), true).kind(), Kind::unsupportedFormat);
}

} // namespace
} // namespace vormel

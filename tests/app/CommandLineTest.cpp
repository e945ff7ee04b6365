#include "app/CommandLine.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

CommandLine understood(const QStringList& arguments)
{
    const auto reading = readCommandLine(arguments);
    if (const auto* const line = std::get_if<CommandLine>(&reading))
        return *line;
    ADD_FAILURE() << std::get<UsageError>(reading).text.toStdString();
    return {};
}

QString complaint(const QStringList& arguments)
{
    const auto reading = readCommandLine(arguments);
    const auto* const error = std::get_if<UsageError>(&reading);
    return error ? error->text : QString();
}

TEST(CommandLineTest, WithoutArgumentsTheWindowIsAllThatIsWanted)
{
    const CommandLine line = understood({});
    EXPECT_EQ(line.wish, CommandLine::Wish::run);
    EXPECT_EQ(line.addresses + line.files, QStringList());
}

TEST(CommandLineTest, TellsLinksFromFiles)
{
    const CommandLine line =
        understood({u"https://a.example/1"_s, u"links.txt"_s, u"HTTP://B.example/ü"_s, u"/tmp/http"_s});
    EXPECT_EQ(line.addresses, (QStringList{u"https://a.example/1"_s, u"HTTP://B.example/%C3%BC"_s}));
    EXPECT_EQ(line.files, (QStringList{u"links.txt"_s, u"/tmp/http"_s}));
}

TEST(CommandLineTest, AddressesOfFilesOfThisMachineAreLeftToTheWindow)
{
    EXPECT_EQ(understood({u"file:///tmp/a%20b.txt"_s}).addresses, QStringList{u"file:///tmp/a%20b.txt"_s});
    EXPECT_EQ(understood({u"file://localhost/tmp/a"_s}).addresses, QStringList{u"file://localhost/tmp/a"_s});
}

TEST(CommandLineTest, FilesElsewhereAreLeftToTheWindowToo)
{
    const QStringList addresses{u"smb://server/share/a.txt"_s, u"mtp://[usb:001,005]/a.txt"_s, u"file://elsewhere/a"_s,
                                u"https://a.example/1"_s};
    EXPECT_EQ(understood(addresses).addresses, addresses);
}

TEST(CommandLineTest, AnyOtherAddressIsAnError)
{
    for (const QString& text : {u"mailto:a@a.example"_s, u"magnet:?xt=1"_s, u"https://[broken/"_s})
        EXPECT_EQ(complaint({u"links.txt"_s, text}), u"\"%1\" is no http or https link and no file"_s.arg(text));
    EXPECT_EQ(complaint({QString()}), u"an argument is empty");
}

TEST(CommandLineTest, AFileWithAColonIsWrittenAsAPath)
{
    EXPECT_EQ(understood({u"./list:2"_s, u"2024: links"_s}).files, (QStringList{u"./list:2"_s, u"2024: links"_s}));
    EXPECT_NE(complaint({u"list:2"_s}), u"");
}

TEST(CommandLineTest, HelpAndVersionAreAskedForInBothLengths)
{
    EXPECT_EQ(understood({u"--help"_s}).wish, CommandLine::Wish::showHelp);
    EXPECT_EQ(understood({u"-h"_s}).wish, CommandLine::Wish::showHelp);
    EXPECT_EQ(understood({u"--version"_s}).wish, CommandLine::Wish::showVersion);
    EXPECT_EQ(understood({u"-v"_s, u"-h"_s}).wish, CommandLine::Wish::showVersion); // the first counts
}

TEST(CommandLineTest, UnknownOptionsAreErrors)
{
    for (const QString& option : {u"--add"_s, u"-x"_s, u"-"_s, u"--helpme"_s})
        EXPECT_EQ(complaint({option}), u"unknown option \"%1\""_s.arg(option));
    EXPECT_NE(complaint({u"--help"_s, u"--add"_s}), u"");
}

TEST(CommandLineTest, BehindTwoDashesNothingIsAnOption)
{
    const CommandLine line = understood({u"--"_s, u"--help"_s, u"--"_s, u"https://a.example/1"_s});
    EXPECT_EQ(line.wish, CommandLine::Wish::run);
    EXPECT_EQ(line.files, (QStringList{u"--help"_s, u"--"_s}));
    EXPECT_EQ(line.addresses, QStringList{u"https://a.example/1"_s});
}

TEST(CommandLineTest, WhatTheToolkitUnderstandsIsLeftToIt)
{
    const CommandLine line = understood({u"-session"_s, u"117_1"_s, u"--style"_s, u"fusion"_s, u"-platform=offscreen"_s,
                                         u"-reverse"_s, u"links.txt"_s});
    EXPECT_EQ(line.files, QStringList{u"links.txt"_s});
    EXPECT_EQ(line.wish, CommandLine::Wish::run);
}

TEST(CommandLineTest, TheHelpNamesWhatIsUnderstood)
{
    for (const QString& word : {u"--help"_s, u"--version"_s, u"LINK"_s, u"FILE"_s})
        EXPECT_TRUE(helpText().contains(word)) << word.toStdString();
    EXPECT_TRUE(helpText().startsWith(usageLine()));
}

} // namespace
} // namespace vormel

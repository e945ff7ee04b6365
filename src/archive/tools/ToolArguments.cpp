#include "archive/tools/ToolArguments.h"

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

bool isGiven(const Password& password)
{
    return password && !password->isEmpty();
}

} // namespace

QStringList dittoArguments(const QString& archive, const QString& destination)
{
    return {u"-x"_s, u"-k"_s, archive, destination};
}

QStringList unzipArguments(const QString& archive, const QString& destination, const Password& password)
{
    QStringList args;
    if (isGiven(password) && password->startsWith(u'-')) // would be taken for the next switch
        args << u"-P"_s + *password;
    else if (isGiven(password))
        args << u"-P"_s << *password;
    return args << u"-o"_s << archive << u"-d"_s << destination;
}

QStringList rarArguments(const QString& archive, const QString& destination, const Password& password)
{
    // "-p-" keeps the tool from asking.
    const QString passwordSwitch = u"-p"_s + (isGiven(password) ? *password : u"-"_s);
    return {u"x"_s, u"-o+"_s, u"-y"_s, passwordSwitch, archive, destination + u'/'};
}

QStringList sevenZipArguments(const QString& archive, const QString& destination, const Password& password)
{
    QStringList args{u"x"_s, archive, u"-o"_s + destination, u"-y"_s};
    if (isGiven(password))
        args << u"-p"_s + *password;
    return args;
}

QStringList tarArguments(const QString& letters, const QString& archive, const QString& destination)
{
    // It takes "\n" in a folder's name for a line feed.
    return {letters, archive, u"-C"_s, QString(destination).replace(u"\\"_s, u"\\\\"_s)};
}

} // namespace vormel

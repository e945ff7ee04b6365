#include "archive/tools/ToolArguments.h"

namespace vormel {

namespace {

bool isGiven(const Password& password)
{
    return password && !password->isEmpty();
}

} // namespace

QStringList dittoArguments(const QString& archive, const QString& destination)
{
    return {QStringLiteral("-x"), QStringLiteral("-k"), archive, destination};
}

QStringList unzipArguments(const QString& archive, const QString& destination, const Password& password)
{
    QStringList args;
    if (isGiven(password) && password->startsWith(u'-')) // would be taken for the next switch
        args << QStringLiteral("-P") + *password;
    else if (isGiven(password))
        args << QStringLiteral("-P") << *password;
    return args << QStringLiteral("-o") << archive << QStringLiteral("-d") << destination;
}

QStringList rarArguments(const QString& archive, const QString& destination, const Password& password)
{
    // "-p-" keeps the tool from asking.
    const QString passwordSwitch = QStringLiteral("-p") + (isGiven(password) ? *password : QStringLiteral("-"));
    return {QStringLiteral("x"), QStringLiteral("-o+"), QStringLiteral("-y"), passwordSwitch, archive,
            destination + u'/'};
}

QStringList sevenZipArguments(const QString& archive, const QString& destination, const Password& password)
{
    QStringList args{QStringLiteral("x"), archive, QStringLiteral("-o") + destination, QStringLiteral("-y")};
    if (isGiven(password))
        args << QStringLiteral("-p") + *password;
    return args;
}

QStringList tarArguments(const QString& letters, const QString& archive, const QString& destination)
{
    // It takes "\n" in a folder's name for a line feed.
    return {letters, archive, QStringLiteral("-C"),
            QString(destination).replace(QStringLiteral("\\"), QStringLiteral("\\\\"))};
}

} // namespace vormel

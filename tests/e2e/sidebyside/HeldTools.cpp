#include "e2e/sidebyside/HeldTools.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace vormel::e2e {

namespace {

QString flag()
{
    return u"hold"_s;
}

} // namespace

HeldTools::HeldTools()
{
    const QByteArray wait = "while [ -e '" + m_sandbox.path(flag()).toUtf8() + "' ]; do sleep 0.005; done";
    for (const char* const name : {"unrar", "rar", "7zz", "unzip", "tar"})
        m_tools.add(QString::fromUtf8(name),
                    QByteArray("/usr/bin/") + name + " \"$@\"; status=$?; " + wait + "; exit $status");
}

void HeldTools::hold() const
{
    m_sandbox.write(flag(), {});
}

void HeldTools::letGo() const
{
    QFile::remove(m_sandbox.path(flag()));
}

} // namespace vormel::e2e

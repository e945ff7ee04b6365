#include "platform/process/DetachedProgram.h"

#include "platform/process/DefaultSignals.h"

#include <QProcess>

namespace vormel {

void startDetached(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.setProgram(program);
    process.setArguments(arguments);
    // Else nothing that is started in a terminal of ours could be stopped by Ctrl+C.
    process.setChildProcessModifier(restoreDefaultSignals);
    process.startDetached();
}

} // namespace vormel

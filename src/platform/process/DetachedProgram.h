#pragma once

#include <QString>
#include <QStringList>

namespace vormel {

/// Starts a program of the user's, which lives on by itself. Returns at once; failures are not reported.
void startDetached(const QString& program, const QStringList& arguments);

} // namespace vormel

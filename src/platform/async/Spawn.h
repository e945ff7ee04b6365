#pragma once

#include <QCoroTask>

namespace vormel {

/// Lets a task run on its own. The one way to start a task whose end nobody awaits: an exception that leaves it is
/// written to the log instead of vanishing.
void spawn(QCoro::Task<> task);

} // namespace vormel

#pragma once

#include "app/attention/GroupEnd.h"
#include "model/AppLanguage.h"
#include "platform/desktop/Notifier.h"

namespace vormel {

inline const QString openAction = QStringLiteral("open");
inline const QString showAction = QStringLiteral("show");

/// What the desktop is to say of these ends: of one its name and what can be done with it, of several how many they
/// are. There is at least one.
[[nodiscard]] Notification endNotification(const std::vector<GroupEnd>& ends, AppLanguage language);

} // namespace vormel

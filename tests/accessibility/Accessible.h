#pragma once

#include <QRect>
#include <QString>
#include <QStringList>

#include <atspi/atspi.h>
#include <memory>
#include <vector>

namespace vormel::fixtures {

/// One thing on the screen as a screen reader gets it from another program. What is asked of one that is not there, or
/// not any more, has an empty answer.
class Accessible
{
public:
    Accessible() = default;
    /// Takes the reference over.
    explicit Accessible(AtspiAccessible* taken);
    [[nodiscard]] static Accessible desktop() { return Accessible(atspi_get_desktop(0)); }

    [[nodiscard]] bool isThere() const { return m_accessible != nullptr; }
    [[nodiscard]] QString name() const;
    [[nodiscard]] AtspiRole role() const;
    [[nodiscard]] bool is(AtspiStateType state) const;
    [[nodiscard]] int processId() const;
    [[nodiscard]] QRect onScreen() const;

    [[nodiscard]] Accessible parent() const;
    [[nodiscard]] int childCount() const;
    [[nodiscard]] Accessible child(int place) const;
    [[nodiscard]] std::vector<Accessible> children() const;
    /// The first one below it, from the top down, of that role and with a name that starts so.
    [[nodiscard]] Accessible find(AtspiRole role, const QString& nameStart = {}) const;
    /// All below it.
    [[nodiscard]] std::vector<Accessible> all() const;

    [[nodiscard]] QStringList actions() const;
    /// False if it has no such action.
    bool act(const QString& action) const;
    bool type(const QString& text) const;
    [[nodiscard]] QString typedText() const;

private:
    std::shared_ptr<AtspiAccessible> m_accessible;
};

} // namespace vormel::fixtures

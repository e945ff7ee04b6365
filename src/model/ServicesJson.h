#pragma once

#include "model/ServicesProblem.h"

#include <QByteArray>

#include <variant>
#include <vector>

namespace vormel {

/// What stands behind one key of a file of services.
struct ServicesEntry
{
    struct Value
    {
        QString text;
        int line = 0;
    };

    QString key;
    int line = 0;
    bool isList = false;
    std::vector<Value> values; ///< one where it is no list
};

/// The entries in the order of the file, each where it stands; also of keys that nobody knows. Anything but an object
/// of texts and lists of texts is a problem, and nothing of it is read any further.
[[nodiscard]] std::variant<std::vector<ServicesEntry>, ServicesProblem> parseServicesJson(const QByteArray& bytes);

} // namespace vormel

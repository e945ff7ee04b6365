#include "platform/desktop/Utf8Locale.h"

#include <QByteArray>

#include <clocale>
#include <cstring>
#include <langinfo.h>

namespace vormel {

void ensureUtf8Locale()
{
    // A locale that is named but not installed counts as none.
    std::setlocale(LC_CTYPE, "");
    if (std::strcmp(::nl_langinfo(CODESET), "UTF-8") != 0)
        qputenv("LC_ALL", QByteArrayLiteral("C.UTF-8"));
}

} // namespace vormel

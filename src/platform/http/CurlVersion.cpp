#include "platform/http/CurlVersion.h"

#include <curl/curl.h>

using namespace Qt::StringLiterals;

namespace vormel {

QString curlVersion()
{
    const curl_version_info_data& info = *curl_version_info(CURLVERSION_NOW);
    const QString version = QString::fromLatin1(info.version);
    return info.ssl_version ? u"%1 (%2)"_s.arg(version, QString::fromLatin1(info.ssl_version)) : version;
}

} // namespace vormel

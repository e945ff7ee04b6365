#pragma once

#include <QString>
#include <QUrl>

#include <optional>

namespace vormel {

/// A web address that keeps its spelling: the letter case of its host is what the user pasted, which QUrl would lose.
/// A value, cheap to copy and to parse; a link that came out of parse() always has a scheme.
class Link
{
public:
    Link() = default;

    /// Reads one address, any scheme. Characters that may not stand in an address are percent-encoded; nothing comes
    /// back for text that is no absolute address, such as prose, a bare path or an address with a broken host or port.
    [[nodiscard]] static std::optional<Link> parse(QStringView text);

    [[nodiscard]] const QString& absoluteString() const { return m_text; }
    [[nodiscard]] bool isEmpty() const { return m_text.isEmpty(); }

    /// In small letters.
    [[nodiscard]] QString scheme() const;
    [[nodiscard]] bool isHttp() const;

    /// Exactly as it stands, without user, port and the brackets of an IPv6 address; empty if there is none.
    [[nodiscard]] QStringView host() const;

    /// As it stands, still percent-encoded.
    [[nodiscard]] QStringView encodedPath() const;
    /// Percent-decoded, or as it stands where that cannot be.
    [[nodiscard]] QString path() const;
    [[nodiscard]] Link withEncodedPath(QStringView path) const;

    /// The last non-empty segment of the percent-decoded path; empty for a root or missing path.
    [[nodiscard]] QString lastPathComponent() const;

    [[nodiscard]] QUrl toUrl() const;

    friend bool operator==(const Link& a, const Link& b) { return a.m_text == b.m_text; }

private:
    /// Where the pieces of m_text lie.
    struct Span
    {
        qint32 start = 0;
        qint32 length = 0;
    };

    [[nodiscard]] static std::optional<Link> split(QString text);
    /// Takes the host out of what stands between these places. False for one that cannot be.
    [[nodiscard]] bool takeHost(qsizetype at, qsizetype end);
    [[nodiscard]] QStringView piece(Span span) const { return QStringView{m_text}.mid(span.start, span.length); }

    QString m_text;
    qint32 m_schemeLength = 0;
    Span m_host;
    Span m_path;
};

} // namespace vormel

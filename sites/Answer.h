#pragma once

#include "sites/Content.h"
#include "sites/Header.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vormel::sites {

// How the end of a body is told.
enum class Framing
{
    length,
    untilClose,
    chunked,
    chunkedWithoutEnd,      // closed before the last chunk
    chunkedEndlessTrailers, // trailers that go on until the client leaves
};

// What goes wrong at a point of the body.
enum class Cut
{
    nothing,
    close,
    reset,
    stall,
};

// How a head is spoiled.
enum class HeadFault
{
    nothing,
    closeBefore, // not one byte
    stallBefore,
    cutInside, // closed before the blank line
    endless,   // headers that go on until the client leaves
};

// All that an answer does other than the ordinary. Filled by Answer, obeyed by the server.
struct AnswerPlan
{
    bool honoursRange = true;
    std::optional<int> status;
    std::optional<std::string> statusLine;
    std::optional<std::string> raw; // sent instead of head and body
    std::optional<Content> page;    // sent instead of the file
    std::optional<std::string> contentType;
    std::vector<Header> headers;
    std::vector<std::string> leftOut; // names of headers
    std::optional<std::string> etag;
    std::optional<std::string> lastModified;

    std::optional<std::string> contentRange;
    std::optional<std::int64_t> total;
    bool unknownTotal = false;
    bool rangeRefused = false;
    std::int64_t shift = 0;
    bool multipart = false;

    Framing framing = Framing::length;
    std::optional<std::string> contentLength;
    std::int64_t contentLengthOff = 0;
    bool closing = false;
    std::optional<std::string> surplus; // sent behind a finished answer

    HeadFault headFault = HeadFault::nothing;
    std::chrono::milliseconds delay{0};
    Cut cut = Cut::nothing;
    std::int64_t cutAfter = 0;
    std::int64_t dripBytes = 0; // none: as fast as it goes
    std::chrono::milliseconds dripInterval{0};
};

// The behaviour of a server towards one request: start from one of the static functions and refine it, as in
//     Answer::file().withTotal(5).stallAfter(1000)
// Each refinement gives a changed copy. Counts and sizes are in bytes of the body as the client should see it, without
// the framing of chunks.
class Answer
{
public:
    // The file: 206 for a satisfiable Range (of one part, If-Range agreeing), 416 for one beyond the end, 200 else.
    [[nodiscard]] static Answer file();
    // The file with 200, whatever Range asks for.
    [[nodiscard]] static Answer wholeFile();
    // Another body than the file. With 206 a Content-Range pretends that it is what was asked for.
    [[nodiscard]] static Answer page(int status, Content body, std::string contentType = "text/html; charset=utf-8");
    // No body; 204 and 304 then have no Content-Length either.
    [[nodiscard]] static Answer empty(int status);
    // 416 with Content-Range "bytes */size"; withoutContentRange() leaves that away.
    [[nodiscard]] static Answer rangeRefused();
    // The Location is sent as given, whatever it says.
    [[nodiscard]] static Answer redirect(int status, std::string location);
    [[nodiscard]] static Answer redirectNowhere(int status);
    // These bytes and nothing else, then the end of the connection.
    [[nodiscard]] static Answer raw(std::string bytes);
    // The connection ends before the status line.
    [[nodiscard]] static Answer nothing();

    [[nodiscard]] Answer withStatus(int status) const;
    // Instead of "HTTP/1.1 200 OK"; without the line end.
    [[nodiscard]] Answer withStatusLine(std::string line) const;
    // Takes the place of the server's own header of that name; given twice it is sent twice. Any bytes but line ends.
    [[nodiscard]] Answer withHeader(std::string name, std::string value) const;
    [[nodiscard]] Answer withoutHeader(std::string name) const;
    [[nodiscard]] Answer withDisposition(std::string value) const;
    [[nodiscard]] Answer withCookie(std::string value) const;
    // Instead of the resource's own; an If-Range is held against these.
    [[nodiscard]] Answer withEtag(std::string etag) const;
    [[nodiscard]] Answer withLastModified(std::string date) const;

    [[nodiscard]] Answer withContentRange(std::string value) const;
    [[nodiscard]] Answer withoutContentRange() const;
    // The size of the file that Content-Range claims.
    [[nodiscard]] Answer withTotal(std::int64_t total) const;
    [[nodiscard]] Answer withUnknownTotal() const;
    // A 206 starts so many bytes behind (or, negative, before) the offset asked for, and its Content-Range says so.
    [[nodiscard]] Answer shiftedBy(std::int64_t bytes) const;
    // A 206 wraps its one range as multipart/byteranges.
    [[nodiscard]] Answer asMultipart() const;

    [[nodiscard]] Answer untilClose() const;
    [[nodiscard]] Answer chunked() const;
    [[nodiscard]] Answer chunkedWithoutEnd() const;
    [[nodiscard]] Answer endlessTrailers() const;
    // A Content-Length of this text, or this much off the truth; the body is sent whole, then the connection ends.
    [[nodiscard]] Answer withContentLength(std::string text) const;
    [[nodiscard]] Answer withContentLengthOff(std::int64_t difference) const;
    // Announces and does the end of the connection after a proper answer.
    [[nodiscard]] Answer closing() const;

    // These bytes behind the whole answer, on a connection that stays open for the next request, a raw answer's too.
    // They count as bytes of a body once the system has them.
    [[nodiscard]] Answer followedBy(std::string bytes) const;

    [[nodiscard]] Answer cutHead() const;
    [[nodiscard]] Answer endlessHeaders() const;
    [[nodiscard]] Answer stallBeforeHead() const;
    [[nodiscard]] Answer delayedBy(std::chrono::milliseconds time) const;

    // After so many bytes of the body, or all of it if it is shorter. A stalled answer goes on once released;
    // it ends when the client closes its sending side.
    [[nodiscard]] Answer closeAfter(std::int64_t bytes) const;
    [[nodiscard]] Answer resetAfter(std::int64_t bytes) const;
    [[nodiscard]] Answer stallAfter(std::int64_t bytes) const;
    // Sends so many bytes, waits, and so on. Throws std::invalid_argument for no bytes.
    [[nodiscard]] Answer dripping(std::int64_t bytes, std::chrono::milliseconds interval) const;

    [[nodiscard]] const AnswerPlan& plan() const { return m_plan; }

private:
    template <typename Change>
    [[nodiscard]] Answer changed(Change change) const;
    [[nodiscard]] Answer cutting(Cut cut, std::int64_t bytes) const;

    AnswerPlan m_plan;
};

} // namespace vormel::sites

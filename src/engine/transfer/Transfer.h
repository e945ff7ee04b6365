#pragma once

#include "engine/transfer/PartFile.h"
#include "engine/transfer/SpeedTracker.h"
#include "engine/transfer/TransferEnd.h"
#include "model/ItemId.h"
#include "platform/http/HttpClient.h"
#include "text/Link.h"

#include <mutex>

namespace vormel {

/// What is to be fetched, and where to.
struct TransferOrder
{
    ItemId id;
    Link address;
    QString filename;
    QString partPath;
    QString finalPath;
    qint64 knownTotal = 0;
    bool isDirectLink = true; ///< no host resolver claims the item's link
};

/// What the head of an answer says about an item.
struct HeadFacts
{
    bool isRestart = false; ///< the bytes on disk gave way to this answer
    qint64 total = -1;      ///< below 1: not told
    std::optional<QString> name;
};

/// One running transfer as the client's thread drives it: judges the answer, writes the blocks to the part file and
/// says what happened. What both threads touch lies under the session's ioLock, which is held over the write to disk.
class Transfer final : public HttpReceiver
{
public:
    /// Hears of a transfer, on the client's thread and without the lock.
    class Listener
    {
    public:
        virtual void headArrived(const Transfer& transfer, const HeadFacts& facts) = 0;
        virtual void ticked(const Transfer& transfer, qint64 bytes, double bytesPerSecond) = 0;
        /// Charges bytes to the global cap; true if this transfer must rest.
        virtual bool mustRest(const Transfer& transfer, qint64 bytes) = 0;
        virtual void ended(const Transfer& transfer) = 0;

    protected:
        ~Listener() = default;
    };

    /// Lock, clock and listener must outlive the transfer. `serial` tells this attempt from others of the same item.
    Transfer(TransferOrder order, quint64 serial, std::unique_ptr<PartFile> file, std::mutex& ioLock,
             const Clock& clock, Listener& listener);

    [[nodiscard]] const TransferOrder& order() const { return m_order; }
    [[nodiscard]] quint64 serial() const { return m_serial; }
    [[nodiscard]] qint64 offset() const { return m_offset; }

    /// Closes the part file; whatever still arrives is dropped. Any thread.
    void closeFile();
    /// Closes the part file and tells the end. Only after ended(), on the UI thread. `partPath` is where the file
    /// should be.
    [[nodiscard]] TransferEnd takeEnd(const QString& partPath);

    [[nodiscard]] bool acceptsAnyCertificateOf(const QString& host) const override;
    HeadVerdict responseReceived(const HttpResponse& response) override;
    DataVerdict dataReceived(QByteArrayView block) override;
    void completed(const std::optional<HttpError>& error) override;

private:
    [[nodiscard]] HeadVerdict takeFile(const HttpResponse& response, bool restarts);
    [[nodiscard]] DataVerdict takePage(QByteArrayView block);
    HeadVerdict refuse(TransferEnd::Reason reason);

    const TransferOrder m_order;
    const quint64 m_serial;
    const qint64 m_offset;
    std::mutex& m_ioLock;
    const Clock& m_clock;
    Listener& m_listener;

    // Under the lock:
    std::unique_ptr<PartFile> m_fileHandle;
    SpeedTracker m_speedTracker;
    qint64 m_pendingBytes = 0; ///< written but not yet told
    bool m_isHtmlError = false;
    std::optional<TransferEnd::Reason> m_refusal; ///< why we wanted no more of the answer
    TransferEnd m_end;
};

/// Hosts whose certificates are accepted unexamined, by a substring of their names in small letters.
[[nodiscard]] bool isTlsTrustedHost(const QString& host);

} // namespace vormel

#pragma once

#include "engine/transfer/AnswerRules.h"
#include "engine/transfer/PartFile.h"
#include "engine/transfer/SpeedTracker.h"
#include "engine/transfer/TransferEnd.h"
#include "model/ItemId.h"
#include "platform/http/HttpClient.h"
#include "text/Link.h"

#include <mutex>

namespace vormel {

class HostProfiles;

/// What is to be fetched, and where to.
struct TransferOrder
{
    ItemId id;
    Link address;
    QString filename;
    QString finalPath;
    qint64 knownTotal = 0;
    bool isDirectLink = true; ///< no host resolver claims the item's link
};

/// What the head of an answer says about an item.
struct HeadFacts
{
    bool isRestart = false; ///< the bytes on disk gave way to this answer
    qint64 total = -1;      ///< 0: not known, whatever was thought before; below 0: not told
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

    /// Lock, clock, profiles and listener must outlive the transfer. `serial` tells this attempt from others of the
    /// same item.
    Transfer(TransferOrder order, quint64 serial, std::unique_ptr<PartFile> file, std::mutex& ioLock,
             const Clock& clock, const HostProfiles& profiles, Listener& listener);

    [[nodiscard]] const TransferOrder& order() const { return m_order; }
    [[nodiscard]] quint64 serial() const { return m_serial; }
    /// Does the part file hold all that the item is known to have, so that nothing is to be asked of the server?
    [[nodiscard]] bool isWhole() const { return m_offset >= 1 && m_offset == m_order.knownTotal; }

    /// Closes the part file; whatever still arrives is dropped. True if it was empty and is gone. Any thread.
    bool closeFile();
    /// The part file, if it is to be on disk for good before the end is told; null if not. Any thread.
    [[nodiscard]] std::shared_ptr<const FileDescriptor> fileToSync() const;
    /// Closes the part file and tells the end. Only after ended(), on the UI thread. `syncError` is the system's number
    /// for what went wrong with syncing it: the bytes may then be lost, and are given up.
    [[nodiscard]] TransferEnd takeEnd(int syncError);

    [[nodiscard]] bool acceptsAnyCertificateOf(const QString& host) const override;
    HeadVerdict responseReceived(const HttpResponse& response) override;
    DataVerdict dataReceived(QByteArrayView block) override;
    void completed(const std::optional<HttpError>& error) override;

private:
    [[nodiscard]] HttpReceiver::HeadVerdict readPast();
    [[nodiscard]] AskedFor askedFor() const;
    [[nodiscard]] HeadVerdict takeFile(const HttpResponse& response, const JudgedAnswer& answer);
    void mark(const HttpResponse& response, const JudgedAnswer& answer);
    [[nodiscard]] DataVerdict takePage(QByteArrayView block);
    /// Adds the block to the part file. False if it does not belong there or could not be written.
    [[nodiscard]] bool write(QByteArrayView block);
    HeadVerdict refuse(TransferEnd::Reason reason);

    const TransferOrder m_order;
    const quint64 m_serial;
    const qint64 m_offset;
    std::mutex& m_ioLock;
    const Clock& m_clock;
    const HostProfiles& m_profiles;
    Listener& m_listener;

    // Under the lock:
    std::unique_ptr<PartFile> m_fileHandle;
    qint64 m_answerStart = 0; ///< where in the file this answer began
    qint64 m_answerEnd = -1;  ///< behind what it may bring; below 0 for no bound
    SpeedTracker m_speedTracker;
    qint64 m_pendingBytes = 0; ///< written but not yet told
    bool m_isHtmlError = false;
    std::optional<TransferEnd::Reason> m_refusal; ///< why we wanted no more of the answer
    TransferEnd m_end;
};

} // namespace vormel

#pragma once

#include "keep/recovery.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace facetor {

/// A document as it was at one moment. Its pixels are shared with the document's list: it is made
/// and given back on the document's thread, and only read on another one.
struct DocumentCopy {
    RecoveryState state;
    Model model;
    TextureList textures;
    Revision modelRevision = 0, textureRevision = 0;
};

/// Copies a document; false when memory is short. Memory that the copy has already is used again.
[[nodiscard]] bool copyDocument(DocumentCopy& copy, const Document& document, const View& view);

/// Writes recovery files on a thread of its own, one at a time.
class RecoveryWriter {
public:
    /// How a writing ended.
    struct Outcome {
        Message message = Message::none;
        std::string reason;
        std::unique_ptr<DocumentCopy> copy; ///< what was written; its state says of which list
    };

    RecoveryWriter() = default;
    /// Waits for the end of what is being written.
    ~RecoveryWriter();
    RecoveryWriter(const RecoveryWriter&) = delete;
    RecoveryWriter& operator=(const RecoveryWriter&) = delete;

    /// Starts the thread, so that the first begin() need not. False when the system has none: then
    /// nothing is written.
    bool start();

    /// Something is written, or was and poll() has not told of it.
    bool isBusy() const { return busy_; }
    /// Begins to write; the set has to be held until poll() tells of the end. Needs !isBusy() and a
    /// start() that returned true.
    void begin(const RecoverySet& set, std::unique_ptr<DocumentCopy> copy, bool texturesAreThere);
    /// The outcome, once there is one.
    std::optional<Outcome> poll();
    /// Waits for it, no longer than `patience`. None as well when nothing was begun.
    std::optional<Outcome> waitFor(std::chrono::milliseconds patience);

private:
    void run();

    std::thread thread_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::optional<RecoverySet> set_; ///< to be written
    bool texturesAreThere_ = false;
    std::atomic<bool> done_ = false; ///< what is written is behind it
    bool ends_ = false;
    Outcome outcome_;
    bool busy_ = false; ///< only the document's thread looks at it
};

} // namespace facetor

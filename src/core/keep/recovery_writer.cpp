#include "keep/recovery_writer.h"

#include <cassert>
#include <new>
#include <system_error>
#include <utility>

namespace facetor {

bool copyDocument(DocumentCopy& copy, const Document& document, const View& view)
try {
    if (copy.model.objects.size() == 0 && createModelStore(copy.model) != Message::none)
        return false;
    copyModel(copy.model, document.model);
    copy.textures = document.textures;
    copy.state = stateOf(document, view);
    copy.modelRevision = document.modelRevision;
    copy.textureRevision = document.textureRevision;
    return copy.textures.slots().size() == document.textures.slots().size();
} catch (const std::bad_alloc&) {
    return false;
}

RecoveryWriter::~RecoveryWriter()
{
    if (!thread_.joinable()) return;
    {
        const std::lock_guard lock(mutex_);
        ends_ = true;
    }
    changed_.notify_all();
    thread_.join();
}

bool RecoveryWriter::start()
{
    try {
        if (!thread_.joinable()) thread_ = std::thread([this] { run(); });
    } catch (const std::system_error&) { // no more threads
    }
    return thread_.joinable();
}

void RecoveryWriter::begin(const RecoverySet& set, std::unique_ptr<DocumentCopy> copy,
                           bool texturesAreThere)
{
    assert(!busy_ && thread_.joinable());
    busy_ = true;
    {
        const std::lock_guard lock(mutex_);
        set_ = set.withoutLock();
        texturesAreThere_ = texturesAreThere;
        outcome_ = {Message::none, {}, std::move(copy)};
        done_ = false;
    }
    changed_.notify_all();
}

std::optional<RecoveryWriter::Outcome> RecoveryWriter::poll()
{
    if (!busy_ || !done_) return std::nullopt; // without the lock: nothing is waited for
    return waitFor(std::chrono::milliseconds(0));
}

std::optional<RecoveryWriter::Outcome> RecoveryWriter::waitFor(std::chrono::milliseconds patience)
{
    if (!busy_) return std::nullopt;
    std::unique_lock lock(mutex_);
    if (!changed_.wait_for(lock, patience, [this] { return done_.load(); })) return std::nullopt;
    busy_ = false;
    return std::move(outcome_);
}

void RecoveryWriter::run()
{
    std::unique_lock lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return set_ || ends_; });
        if (!set_) return;
        const RecoverySet set = std::move(*set_);
        set_.reset();
        DocumentCopy& copy = *outcome_.copy;
        lock.unlock();
        std::string reason;
        const Message message =
            writeRecovery(set, copy.state, copy.model, copy.textures, texturesAreThere_, reason);
        lock.lock();
        outcome_.message = message;
        outcome_.reason = std::move(reason);
        done_ = true;
        changed_.notify_all();
    }
}

} // namespace facetor

#pragma once

// A stand-in for a disk that is slow to sync: each sync waits until the test lets it go.
#include "platform/FileSyncer.h"

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

namespace cq::test {

class HeldSync {
public:
    // Destroyed before the syncer that uses it, it lets every sync go, so that the syncer can end.
    ~HeldSync() { release(); }

    FileSyncer::SyncFunction function() {
        return [state = m_state](int) {
            std::unique_lock lock(state->mutex);
            ++state->entered;
            state->changed.notify_all();
            state->changed.wait(lock, [&] { return state->released; });
            return 0;
        };
    }
    void release() {
        const std::lock_guard lock(m_state->mutex);
        m_state->released = true;
        m_state->changed.notify_all();
    }
    // Waits until this many syncs have begun; false after the time is up.
    bool waitEntered(int count, int timeoutMs = 30000) {
        std::unique_lock lock(m_state->mutex);
        return m_state->changed.wait_for(lock, std::chrono::milliseconds(timeoutMs),
                                         [&] { return m_state->entered >= count; });
    }
    int entered() const {
        const std::lock_guard lock(m_state->mutex);
        return m_state->entered;
    }

private:
    struct State {
        std::mutex mutex;
        std::condition_variable changed;
        int entered = 0;
        bool released = false;
    };
    std::shared_ptr<State> m_state = std::make_shared<State>();
};

} // namespace cq::test

#pragma once

#include <mutex>

namespace Gatan::Win32 {

/// A recursive mutex; works with the standard lock guards.
class CriticalSection
{
  public:
    CriticalSection() = default;
    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;

    void lock() { mutex_.lock(); }
    bool try_lock() { return mutex_.try_lock(); }
    void unlock() { mutex_.unlock(); }

  private:
    std::recursive_mutex mutex_;
};

}  // namespace Gatan::Win32

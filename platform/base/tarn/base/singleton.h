#pragma once

#include <QtGlobal>

#include <atomic>
#include <mutex>

namespace Tarn {
namespace Base {

// Process-wide instance of T, created on first use. The fast path is a single
// acquire load; creation is double-checked under a mutex so racing threads
// still end up with one object. Default visibility keeps one instance per
// process even when several shared libraries instantiate it for an exported T.
template <typename T>
class Q_DECL_EXPORT CSingleton
{
public:
    static T *Instance()
    {
        T *p = s_instance.load(std::memory_order_acquire);
        if (!p) {
            std::lock_guard<std::mutex> guard(s_mutex);
            p = s_instance.load(std::memory_order_relaxed);
            if (!p) {
                p = new T();
                s_instance.store(p, std::memory_order_release);
            }
        }
        return p;
    }

    // For tests and orderly shutdown; callers must make sure nobody holds the pointer.
    static void DestroyInstance()
    {
        std::lock_guard<std::mutex> guard(s_mutex);
        delete s_instance.exchange(nullptr, std::memory_order_acq_rel);
    }

protected:
    CSingleton() = default;
    ~CSingleton() = default;
    CSingleton(const CSingleton &) = delete;
    CSingleton &operator=(const CSingleton &) = delete;

private:
    static std::atomic<T *> s_instance;
    static std::mutex s_mutex;
};

template <typename T>
std::atomic<T *> CSingleton<T>::s_instance{nullptr};
template <typename T>
std::mutex CSingleton<T>::s_mutex;

} // namespace Base
} // namespace Tarn

#pragma once

#include <atomic>
#include <type_traits>

/// A single value that one thread writes and another reads, without order or locks: it reads and
/// writes like a plain T and is exactly as large. [any thread]
template <typename T>
class Shared {
    static_assert(std::is_trivially_copyable_v<T> && std::atomic<T>::is_always_lock_free);

  public:
    Shared(T value = T{}) noexcept : m_value(value) {}
    Shared(const Shared& other) noexcept : m_value(other.load()) {}
    Shared& operator=(const Shared& other) noexcept { return *this = other.load(); }
    Shared& operator=(T value) noexcept {
        m_value.store(value, std::memory_order_relaxed);
        return *this;
    }
    operator T() const noexcept { return load(); }
    T load() const noexcept { return m_value.load(std::memory_order_relaxed); }

  private:
    std::atomic<T> m_value;
};
static_assert(sizeof(Shared<float>) == sizeof(float));

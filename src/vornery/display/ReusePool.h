#pragma once

#include <cstdint>
#include <memory>
#include <unordered_set>
#include <utility>

template <typename Item>
class ReusePool;

template <typename Item>
class ReusePoolDelegate {
  public:
    virtual ~ReusePoolDelegate() = default;
    virtual std::shared_ptr<Item> reusePoolNeedsItem(ReusePool<Item>& pool) = 0;
    /// An item that is about to be used again.
    virtual void cleanItem(ReusePool<Item>& /*pool*/, Item& /*item*/) {}
};

/// Spare items, in no order, so that they need not be made anew. [main]
template <typename Item>
class ReusePool {
  public:
    using Pointer = std::shared_ptr<Item>;

    /// The delegate is not retained.
    explicit ReusePool(ReusePoolDelegate<Item>& delegate) : m_delegate(delegate) {}

    /// A spare item, cleaned by the delegate; a new one of the delegate's when none is there.
    Pointer take() {
        if (m_pool.empty())
            return m_delegate.reusePoolNeedsItem(*this);
        Pointer item = std::move(m_pool.extract(m_pool.begin()).value());
        m_delegate.cleanItem(*this, *item);
        return item;
    }
    void put(Pointer item) { m_pool.insert(std::move(item)); }
    /// Only while fewer than the threshold are there.
    void putIfWanted(Pointer item) {
        if (std::int64_t(m_pool.size()) < m_wantedThreshold)
            put(std::move(item));
    }
    void flush() { m_pool.clear(); }

    std::int32_t wantedThreshold() const { return m_wantedThreshold; }
    void setWantedThreshold(std::int32_t threshold) { m_wantedThreshold = threshold; }
    std::size_t count() const { return m_pool.size(); }

  private:
    ReusePoolDelegate<Item>& m_delegate;
    std::unordered_set<Pointer> m_pool;
    std::int32_t m_wantedThreshold = 0;
};

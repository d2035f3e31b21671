#pragma once
// A keyed list in insertion order: items by 1-based position or by key (keys compare without
// regard to case), iteration in order, Count, Remove, Clear. The list owns its items; copying
// a list copies its items.

#include "params/runtime_error.h"
#include "platform/text.h"

#include <algorithm>
#include <cctype>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

template <typename T> class KeyedList {
    struct Entry {
        std::unique_ptr<T> item;
        std::string key;
    };

public:
    KeyedList() = default;
    KeyedList(const KeyedList& other) { *this = other; }
    KeyedList& operator=(const KeyedList& other)
    {
        if (this != &other) {
            entries_.clear();
            for (const auto& entry : other.entries_) {
                entries_.push_back({ std::make_unique<T>(*entry.item), entry.key });
            }
        }
        return *this;
    }
    KeyedList(KeyedList&&) noexcept = default;
    KeyedList& operator=(KeyedList&&) noexcept = default;
    virtual ~KeyedList() = default;

    // Stores the item at the end, under key when the key is not empty.
    T& Append(T item, const std::string& key = {})
    {
        if (!key.empty() && findKey(key) != entries_.end()) {
            throw RuntimeError::duplicateKey();
        }
        entries_.push_back({ std::make_unique<T>(std::move(item)), key });
        return *entries_.back().item;
    }

    // Nothing for a position outside 1..Count or an unknown key.
    [[nodiscard]] T* Item(int position) const
    {
        return position >= 1 && position <= Count() ? entries_[position - 1].item.get() : nullptr;
    }
    [[nodiscard]] T* Item(std::string_view key) const
    {
        const auto found = findKey(key);
        return found == entries_.end() ? nullptr : found->item.get();
    }

    [[nodiscard]] int Count() const { return static_cast<int>(entries_.size()); }

    // False when there was no such item.
    bool Remove(int position)
    {
        if (position < 1 || position > Count()) {
            return false;
        }
        entries_.erase(entries_.begin() + (position - 1));
        return true;
    }
    bool Remove(std::string_view key)
    {
        const auto found = findKey(key);
        if (found == entries_.end()) {
            return false;
        }
        entries_.erase(found);
        return true;
    }

    // Removes the first item until none is left.
    void Clear()
    {
        while (Remove(1)) { }
    }

    template <typename Predicate> [[nodiscard]] T* findIf(Predicate predicate) const
    {
        for (const auto& entry : entries_) {
            if (predicate(*entry.item)) {
                return entry.item.get();
            }
        }
        return nullptr;
    }

    class Iterator {
    public:
        using Inner = typename std::vector<Entry>::const_iterator;
        explicit Iterator(Inner inner)
            : inner_(inner)
        {
        }
        T& operator*() const { return *inner_->item; }
        T* operator->() const { return inner_->item.get(); }
        Iterator& operator++()
        {
            ++inner_;
            return *this;
        }
        bool operator==(const Iterator& other) const { return inner_ == other.inner_; }

    private:
        Inner inner_;
    };
    [[nodiscard]] Iterator begin() const { return Iterator(entries_.begin()); }
    [[nodiscard]] Iterator end() const { return Iterator(entries_.end()); }

private:
    typename std::vector<Entry>::const_iterator findKey(std::string_view key) const
    {
        return std::find_if(entries_.begin(), entries_.end(), [&](const Entry& entry) {
            return !entry.key.empty() && platform::equalsIgnoreCase(entry.key, key);
        });
    }

    std::vector<Entry> entries_;
};

} // namespace zv

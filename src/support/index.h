// Integer indexes that know their own index space, and tables that open only to their own index.
#pragma once

#include <cassert>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace tessaly {

/// A position in one index space. Different spaces are different types, so a facet number cannot open an element table.
template <class Tag>
struct Index {
  std::int32_t value = 0;

  friend constexpr auto operator<=>(Index, Index) = default;
  constexpr Index& operator++() {
    ++value;
    return *this;
  }
  constexpr Index& operator--() {
    --value;
    return *this;
  }
};

/// `index` moved on by `steps`.
template <class Tag>
constexpr Index<Tag> operator+(Index<Tag> index, std::int32_t steps) {
  return {index.value + steps};
}

/// All indexes from `first` to `last`, both included; empty when `last` is below `first`.
template <class I>
class IndexRange {
 public:
  constexpr IndexRange(I first, I last)
      : first_(first), end_{last.value < first.value ? first.value : last.value + 1} {}

  class Iterator {
   public:
    constexpr explicit Iterator(I at) : at_(at) {}
    constexpr I operator*() const { return at_; }
    constexpr Iterator& operator++() {
      ++at_;
      return *this;
    }
    friend constexpr bool operator==(Iterator, Iterator) = default;

   private:
    I at_;
  };

  constexpr Iterator begin() const { return Iterator(first_); }
  constexpr Iterator end() const { return Iterator(end_); }

 private:
  I first_;
  I end_;
};

/// An array that only its own index space opens. The lowest valid index is `Base`.
template <class I, class T, std::int32_t Base = 1>
class Table {
 public:
  Table() = default;
  explicit Table(std::int32_t count, const T& value = T{}) : items_(static_cast<std::size_t>(count), value) {}

  T& operator[](I index) {
    assert(holds(index));
    return items_[static_cast<std::size_t>(index.value - Base)];
  }
  const T& operator[](I index) const {
    assert(holds(index));
    return items_[static_cast<std::size_t>(index.value - Base)];
  }

  /// Whether `index` is a valid index of this table: the test for numbers that come from input.
  bool holds(I index) const { return index.value >= Base && index.value - Base < size(); }
  std::int32_t size() const { return static_cast<std::int32_t>(items_.size()); }
  bool empty() const { return items_.empty(); }
  I first() const { return {Base}; }
  /// The highest valid index; one below `Base` for an empty table.
  I last() const { return {Base + size() - 1}; }
  IndexRange<I> all() const { return {first(), last()}; }

  void assign(std::int32_t count, const T& value) { items_.assign(static_cast<std::size_t>(count), value); }
  void resize(std::int32_t count) { items_.resize(static_cast<std::size_t>(count)); }
  /// Appends `value` and gives its index.
  I add(T value) {
    items_.push_back(std::move(value));
    return last();
  }
  void clear() { items_.clear(); }

  auto begin() { return items_.begin(); }
  auto end() { return items_.end(); }
  auto begin() const { return items_.begin(); }
  auto end() const { return items_.end(); }

 private:
  std::vector<T> items_;
};

}  // namespace tessaly

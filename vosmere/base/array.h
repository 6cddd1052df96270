// A growing array for members of exported classes. With a container of the standard library there,
// a program and the library would need the same standard library in the same mode.
#pragma once

#include <cstddef>
#include <utility>

namespace vosmere {

/// Elements one after the other, which it owns. A move leaves an empty array.
/// What grows may throw std::bad_alloc, with nothing changed. Elements need a default constructor
/// and a move that does not throw; numbers and pointers are not initialised beyond what is pushed.
template <class Element>
class Array {
 public:
  Array() = default;
  Array(Array&& other) noexcept { swap(other); }
  Array& operator=(Array&& other) noexcept {
    Array(std::move(other)).swap(*this);
    return *this;
  }
  ~Array() { delete[] begin_; }

  bool empty() const { return size_ == 0; }
  std::size_t size() const { return size_; }
  Element* begin() { return begin_; }
  Element* end() { return begin_ + size_; }
  const Element* begin() const { return begin_; }
  const Element* end() const { return begin_ + size_; }
  Element& operator[](std::size_t index) { return begin_[index]; }
  Element& front() { return begin_[0]; }
  Element& back() { return begin_[size_ - 1]; }
  const Element& back() const { return begin_[size_ - 1]; }

  /// Makes room, so that adding elements up to this size cannot fail.
  void reserve(std::size_t size) {
    if (size <= room_) return;
    Element* const grown = new Element[size];
    for (std::size_t i = 0; i < size_; ++i) grown[i] = std::move(begin_[i]);
    delete[] std::exchange(begin_, grown);
    room_ = size;
  }
  Element& push_back(Element element) {
    Grow(1);
    begin_[size_] = std::move(element);
    return begin_[size_++];
  }
  /// Adds copies of `count` elements that are not in this array.
  void Append(const Element* from, std::size_t count) {
    Grow(count);
    for (std::size_t i = 0; i < count; ++i) begin_[size_ + i] = from[i];
    size_ += count;
  }
  void pop_back() { begin_[--size_] = Element(); }
  /// Keeps the memory.
  void clear() {
    while (!empty()) pop_back();
  }

  void swap(Array& other) noexcept {
    std::swap(begin_, other.begin_);
    std::swap(size_, other.size_);
    std::swap(room_, other.room_);
  }

 private:
  void Grow(std::size_t more) {
    if (more <= room_ - size_) return;
    const std::size_t twice = 2 * room_;
    reserve(size_ + more > twice ? size_ + more : twice);
  }

  Element* begin_ = nullptr;
  std::size_t size_ = 0;
  std::size_t room_ = 0;
};

}  // namespace vosmere

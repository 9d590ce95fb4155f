#pragma once

#include <unknwn.h>
#include <windows.h>

#include <concepts>
#include <cstddef>
#include <utility>

namespace com {

/// Owning interface pointer: holds one reference for as long as it lives.
template <class T>
class Ptr {
 public:
  Ptr() = default;
  Ptr(std::nullptr_t) {}
  /// Shares `pointer`: takes a reference of its own.
  Ptr(T* pointer) : pointer_(pointer) {
    if (pointer_) pointer_->AddRef();
  }
  Ptr(const Ptr& other) : Ptr(other.pointer_) {}
  /// From a pointer to a derived interface.
  template <class U>
  requires std::convertible_to<U*, T*> Ptr(Ptr<U> other)
  noexcept : pointer_(other.detach()) {}
  Ptr(Ptr&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
  ~Ptr() { reset(); }

  Ptr& operator=(Ptr other) noexcept {
    std::swap(pointer_, other.pointer_);
    return *this;
  }

  /// Releases what is held. The member is empty before the release runs, so that whatever the
  /// release calls back finds no dangling pointer.
  void reset() {
    if (T* const released = std::exchange(pointer_, nullptr)) released->Release();
  }

  /// The address for an out parameter; what was held is released first.
  T** put() {
    reset();
    return &pointer_;
  }
  void** put_void() { return reinterpret_cast<void**>(put()); }

  /// Hands the reference to the caller.
  [[nodiscard]] T* detach() { return std::exchange(pointer_, nullptr); }

  /// A further reference to what is held, for an out parameter.
  [[nodiscard]] T* copy() const {
    if (pointer_) pointer_->AddRef();
    return pointer_;
  }

  [[nodiscard]] T* get() const { return pointer_; }
  T* operator->() const { return pointer_; }
  T& operator*() const { return *pointer_; }
  explicit operator bool() const { return pointer_ != nullptr; }

  /// Asks the object for the interface U; empty when it has none or when nothing is held.
  template <class U>
  [[nodiscard]] Ptr<U> query() const {
    Ptr<U> result;
    if (pointer_) pointer_->QueryInterface(__uuidof(U), result.put_void());
    return result;
  }

 private:
  T* pointer_ = nullptr;
};

}  // namespace com

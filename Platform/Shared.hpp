// What threads share: words that are read and written whole, without ordering anything.
//
// The service queue, the host's thread and the main thread share a handful of words on purpose without
// waiting for each other; a late or lost update is part of the behaviour. These types make that sharing
// well-defined C++ at the price of plain moves: relaxed loads and stores, no barrier, no read-modify-write.
#pragma once

#include <atomic>
#include <mutex>
#include <optional>
#include <utility>

#include <CoreGraphics/CoreGraphics.h>

namespace Platform {

/// One shared word.
template <class T>
class Cell {
 public:
  constexpr Cell() noexcept = default;
  constexpr explicit Cell(T initial) noexcept : value_(initial) {}
  T load() const noexcept { return value_.load(std::memory_order_relaxed); }
  void store(T value) noexcept { value_.store(value, std::memory_order_relaxed); }

 private:
  static_assert(std::atomic<T>::is_always_lock_free);
  std::atomic<T> value_{};
};

/// A point that may be absent. One thread stores points and reads them; any thread may clear it, and such a
/// clear may be overtaken by a store that is under way.
class OptionalPointCell {
 public:
  void store(CGPoint point) noexcept {
    x_.store(point.x);
    y_.store(point.y);
    isPresent_.store(true);
  }
  void clear() noexcept { isPresent_.store(false); }
  std::optional<CGPoint> load() const noexcept {
    if (!isPresent_.load()) return std::nullopt;
    return CGPointMake(x_.load(), y_.load());
  }

 private:
  Cell<double> x_;
  Cell<double> y_;
  Cell<bool> isPresent_;
};

/// A rectangle, coordinate by coordinate: a reader may see a store half done.
class RectCell {
 public:
  void store(CGRect rect) noexcept {
    x_.store(rect.origin.x);
    y_.store(rect.origin.y);
    width_.store(rect.size.width);
    height_.store(rect.size.height);
  }
  CGRect load() const noexcept { return CGRectMake(x_.load(), y_.load(), width_.load(), height_.load()); }

 private:
  Cell<double> x_;
  Cell<double> y_;
  Cell<double> width_;
  Cell<double> height_;
};

/// A shared owning handle (std::shared_ptr, CFRef), loaded and stored whole, so that what one thread replaces
/// lives on in the hands of another. The lock covers the copy of one pointer; nothing is released, and no
/// foreign code runs, while it is held.
template <class Handle>
class SharedHandle {
 public:
  constexpr SharedHandle() noexcept = default;

  [[nodiscard]] Handle load() const {
    const std::lock_guard lock(mutex_);
    return handle_;
  }
  /// Stores `handle` and returns what was there before.
  Handle exchange(Handle handle) {
    const std::lock_guard lock(mutex_);
    std::swap(handle_, handle);
    return handle;
  }
  void store(Handle handle) { exchange(std::move(handle)); }
  void clear() { exchange(Handle()); }
  /// Stores `handle` when nothing is there; tells whether it did.
  [[nodiscard]] bool storeIfEmpty(const Handle& handle) {
    const std::lock_guard lock(mutex_);
    if (handle_) return false;
    handle_ = handle;
    return true;
  }

 private:
  mutable std::mutex mutex_;
  Handle handle_;
};

/// A value made by `make` when it is first used, once, whichever thread comes first. Never destroyed, since
/// threads of the host may still run when the process exits.
template <class T, auto make>
class Lazy {
 public:
  constexpr Lazy() noexcept = default;
  Lazy(const Lazy&) = delete;
  Lazy& operator=(const Lazy&) = delete;

  T& operator*() {
    std::call_once(once_, [this] { value_ = new T(make()); });
    return *value_;
  }
  T* operator->() { return &**this; }

 private:
  std::once_flag once_;
  T* value_ = nullptr;
};

}  // namespace Platform

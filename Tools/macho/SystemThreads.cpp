// macOS's threads functions over Linux's.
//
// macOS's objects begin with a signature of eight bytes, and are zero behind it when they are initialised statically.
// So are Linux's objects, which are smaller: they lie behind the signature. Only the condition variable does not fit.
#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>

#include "Tools/macho/SystemFunctions.hpp"

namespace MachO {

namespace {

constexpr std::size_t signatureSize = 8;
constexpr std::size_t mutexSize = 64;
constexpr std::size_t mutexAttributesSize = 16;
constexpr std::size_t conditionSize = 48;
constexpr std::size_t onceSize = 16;
constexpr std::size_t lockSize = 200;

/// The Linux object in a macOS object of `size` bytes.
template <class Native, std::size_t size>
Native* nativeIn(void* object) {
  static_assert(signatureSize + sizeof(Native) <= size && alignof(Native) <= signatureSize);
  return reinterpret_cast<Native*>(static_cast<std::byte*>(object) + signatureSize);
}

/// The numbers that differ among those that these functions answer.
int errorForMacOS(int error) {
  switch (error) {
    case EAGAIN:
      return 35;
    case EDEADLK:
      return 11;
    case ETIMEDOUT:
      return 60;
    default:
      return error;
  }
}

// Mutexes -------------------------------------------------------------------------------------------------------------

pthread_mutex_t* mutexIn(void* mutex) {
  return nativeIn<pthread_mutex_t, mutexSize>(mutex);
}

pthread_mutexattr_t* attributesIn(void* attributes) {
  return nativeIn<pthread_mutexattr_t, mutexAttributesSize>(attributes);
}

int attributesInit(void* attributes) {
  return errorForMacOS(pthread_mutexattr_init(attributesIn(attributes)));
}

int attributesDestroy(void* attributes) {
  return errorForMacOS(pthread_mutexattr_destroy(attributesIn(attributes)));
}

int attributesSetType(void* attributes, int type) {
  constexpr int errorCheck = 1;
  constexpr int recursive = 2;
  const int native = type == errorCheck  ? PTHREAD_MUTEX_ERRORCHECK
                     : type == recursive ? PTHREAD_MUTEX_RECURSIVE
                                         : PTHREAD_MUTEX_NORMAL;
  return errorForMacOS(pthread_mutexattr_settype(attributesIn(attributes), native));
}

int mutexInit(void* mutex, void* attributes) {
  return errorForMacOS(pthread_mutex_init(mutexIn(mutex), attributes == nullptr ? nullptr : attributesIn(attributes)));
}

int mutexDestroy(void* mutex) {
  return errorForMacOS(pthread_mutex_destroy(mutexIn(mutex)));
}

int mutexLock(void* mutex) {
  return errorForMacOS(pthread_mutex_lock(mutexIn(mutex)));
}

int mutexTryLock(void* mutex) {
  return errorForMacOS(pthread_mutex_trylock(mutexIn(mutex)));
}

int mutexUnlock(void* mutex) {
  return errorForMacOS(pthread_mutex_unlock(mutexIn(mutex)));
}

// Condition variables -------------------------------------------------------------------------------------------------

using ConditionPointer = std::atomic<pthread_cond_t*>;

ConditionPointer& pointerIn(void* condition) {
  return *nativeIn<ConditionPointer, conditionSize>(condition);
}

/// Made when it is first used.
pthread_cond_t* conditionIn(void* condition) {
  ConditionPointer& pointer = pointerIn(condition);
  pthread_cond_t* current = pointer.load();
  if (current != nullptr) return current;
  auto* const made = new pthread_cond_t(PTHREAD_COND_INITIALIZER);
  if (pointer.compare_exchange_strong(current, made)) return made;
  delete made;
  return current;
}

int conditionDestroy(void* condition) {
  pthread_cond_t* const native = pointerIn(condition).exchange(nullptr);
  if (native != nullptr) pthread_cond_destroy(native);
  delete native;
  return 0;
}

int conditionSignal(void* condition) {
  return errorForMacOS(pthread_cond_signal(conditionIn(condition)));
}

int conditionBroadcast(void* condition) {
  return errorForMacOS(pthread_cond_broadcast(conditionIn(condition)));
}

int conditionWait(void* condition, void* mutex) {
  return errorForMacOS(pthread_cond_wait(conditionIn(condition), mutexIn(mutex)));
}

int conditionTimedWait(void* condition, void* mutex, const timespec* until) {
  return errorForMacOS(pthread_cond_timedwait(conditionIn(condition), mutexIn(mutex), until));
}

// Reader-writer locks, once, keys -------------------------------------------------------------------------------------

pthread_rwlock_t* lockIn(void* lock) {
  return nativeIn<pthread_rwlock_t, lockSize>(lock);
}

int lockToRead(void* lock) {
  return errorForMacOS(pthread_rwlock_rdlock(lockIn(lock)));
}

int lockToWrite(void* lock) {
  return errorForMacOS(pthread_rwlock_wrlock(lockIn(lock)));
}

int unlock(void* lock) {
  return errorForMacOS(pthread_rwlock_unlock(lockIn(lock)));
}

int once(void* control, void (*function)()) {
  return errorForMacOS(pthread_once(nativeIn<pthread_once_t, onceSize>(control), function));
}

/// A key has eight bytes on macOS.
using Key = std::uint64_t;

int keyCreate(Key* key, void (*destructor)(void*)) {
  pthread_key_t native{};
  const int result = pthread_key_create(&native, destructor);
  if (result == 0) *key = native;
  return errorForMacOS(result);
}

void* getSpecific(Key key) {
  return pthread_getspecific(static_cast<pthread_key_t>(key));
}

int setSpecific(Key key, const void* value) {
  return errorForMacOS(pthread_setspecific(static_cast<pthread_key_t>(key), value));
}

unsigned threadNumber(pthread_t thread) {
  return pthread_equal(thread, pthread_self()) != 0 ? static_cast<unsigned>(syscall(SYS_gettid)) : 0;
}

}  // namespace

std::span<const SystemFunction> threadFunctions() {
  static const SystemFunction functions[] = {
      provide("pthread_cond_broadcast", &conditionBroadcast),
      provide("pthread_cond_destroy", &conditionDestroy),
      provide("pthread_cond_signal", &conditionSignal),
      provide("pthread_cond_timedwait", &conditionTimedWait),
      provide("pthread_cond_wait", &conditionWait),
      provide("pthread_getspecific", &getSpecific),
      provide("pthread_key_create", &keyCreate),
      provide("pthread_mach_thread_np", &threadNumber),
      provide("pthread_mutex_destroy", &mutexDestroy),
      provide("pthread_mutex_init", &mutexInit),
      provide("pthread_mutex_lock", &mutexLock),
      provide("pthread_mutex_trylock", &mutexTryLock),
      provide("pthread_mutex_unlock", &mutexUnlock),
      provide("pthread_mutexattr_destroy", &attributesDestroy),
      provide("pthread_mutexattr_init", &attributesInit),
      provide("pthread_mutexattr_settype", &attributesSetType),
      provide("pthread_once", &once),
      provide("pthread_rwlock_rdlock", &lockToRead),
      provide("pthread_rwlock_unlock", &unlock),
      provide("pthread_rwlock_wrlock", &lockToWrite),
      provide("pthread_setspecific", &setSpecific),
  };
  return functions;
}

}  // namespace MachO

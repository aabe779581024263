// Hand-overs between threads through a channel the thread sanitizer cannot see: Qt's event queue
// takes its locks in uninstrumented code. The sender announces an object before posting it and
// the receiver accepts it on arrival, which tells the sanitizer that the two sides are ordered.
// Outside a thread sanitizer build both are empty.
#pragma once

#if defined(__SANITIZE_THREAD__)
#define ZW_THREAD_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define ZW_THREAD_SANITIZER 1
#endif
#endif

#ifdef ZW_THREAD_SANITIZER
extern "C" void __tsan_acquire(void* address);
extern "C" void __tsan_release(void* address);
#endif

namespace vx3::sanitizerHandOver {

inline void announce([[maybe_unused]] const void* object)
{
#ifdef ZW_THREAD_SANITIZER
    __tsan_release(const_cast<void*>(object));
#endif
}

inline void accept([[maybe_unused]] const void* object)
{
#ifdef ZW_THREAD_SANITIZER
    __tsan_acquire(const_cast<void*>(object));
#endif
}

}  // namespace vx3::sanitizerHandOver

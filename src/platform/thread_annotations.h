#pragma once

// What clang's thread safety analysis checks (-Wthread-safety): which lock guards a field, and which
// functions need it held or not held. Other compilers ignore it.
// https://releases.llvm.org/14.0.0/tools/clang/docs/ThreadSafetyAnalysis.html
#ifdef __clang__
#define KESTROVA_THREAD_ANNOTATION(name) __attribute__((name))
#else
#define KESTROVA_THREAD_ANNOTATION(name)
#endif

/// A class whose objects are locks, as messages call it ("mutex").
#define CAPABILITY(name) KESTROVA_THREAD_ANNOTATION(capability(name))
/// A class whose objects hold a lock for as long as they live.
#define SCOPED_CAPABILITY KESTROVA_THREAD_ANNOTATION(scoped_lockable)

/// A field that is only read and written with the lock held.
#define GUARDED_BY(lock) KESTROVA_THREAD_ANNOTATION(guarded_by(lock))
/// A function that is called with the lock held.
#define REQUIRES(lock) KESTROVA_THREAD_ANNOTATION(requires_capability(lock))
/// A function that is called without the lock, as it takes it or may call someone who does.
#define EXCLUDES(lock) KESTROVA_THREAD_ANNOTATION(locks_excluded(lock))

/// A function that returns with the lock held, or with it free again. Without an argument: the object's own.
#define ACQUIRE(...) KESTROVA_THREAD_ANNOTATION(acquire_capability(__VA_ARGS__))
#define RELEASE(...) KESTROVA_THREAD_ANNOTATION(release_capability(__VA_ARGS__))

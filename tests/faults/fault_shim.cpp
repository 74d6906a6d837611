// Loaded before the C library (LD_PRELOAD): lets one system call or allocation of the program fail.
//
//   FAULT_CALL    which calls: open, read, write, print (to standard output and error), close, rename, thread, malloc
//   FAULT_AT      the number of the call that fails, from 1 on; calls count from the start of main
//   FAULT_ERROR   its error number; 0: it is done only in part (read, write, print)
//   FAULT_STICKY  1: all later calls fail as well
//   FAULT_COUNTS  descriptor to which the number of calls of each kind is written when main has returned
#include <dirent.h>
#include <dlfcn.h>
#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
}

namespace {

enum Kind { kOpen, kRead, kWrite, kPrint, kClose, kRename, kThread, kMalloc, kKinds };
constexpr const char* kNames[kKinds] = {"open", "read", "write", "print", "close", "rename", "thread", "malloc"};
constexpr int kNoFault = -1;

std::atomic<long> calls[kKinds];
std::atomic<bool> inMain = false;
int failingKind = kKinds;
long failingCall = 0;
int failingError = 0;
bool sticky = false;

long Number(const char* variable) {
  const char* const text = std::getenv(variable);
  return text == nullptr ? 0 : std::atol(text);
}

void ReadEnvironment() {
  const char* const call = std::getenv("FAULT_CALL");
  for (int kind = 0; call != nullptr && kind < kKinds; ++kind)
    if (std::strcmp(call, kNames[kind]) == 0) failingKind = kind;
  failingCall = Number("FAULT_AT");
  failingError = static_cast<int>(Number("FAULT_ERROR"));
  sticky = Number("FAULT_STICKY") != 0;
}

void WriteCounts() {
  const int counts = static_cast<int>(Number("FAULT_COUNTS"));
  for (int kind = 0; counts > 0 && kind < kKinds; ++kind) dprintf(counts, "%s %ld\n", kNames[kind], calls[kind].load());
}

/// `kNoFault`, or the error with which this call has to fail; 0 for one that is done in part.
int Fault(Kind kind) {
  if (!inMain) return kNoFault;
  const long call = ++calls[kind];
  const bool fails = kind == failingKind && (call == failingCall || (sticky && call > failingCall));
  if (fails) errno = failingError;
  return fails ? failingError : kNoFault;
}

template <class Function>
Function* Next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

Kind WriteKind(int descriptor) {
  return descriptor == STDOUT_FILENO || descriptor == STDERR_FILENO ? kPrint : kWrite;
}

/// How much of `size` bytes is done; -1 for none at all.
ssize_t Allowed(Kind kind, std::size_t size) {
  const int fault = Fault(kind);
  if (fault > 0) return -1;
  return static_cast<ssize_t>(fault == 0 && size > 1 ? size / 2 : size);
}

using Main = int(int, char**, char**);
Main* programMain = nullptr;

int CountedMain(int argc, char** argv, char** environment) {
  ReadEnvironment();
  inMain = true;
  const int status = programMain(argc, argv, environment);
  inMain = false;
  WriteCounts();
  return status;
}

}  // namespace

extern "C" {

int __libc_start_main(Main* main, int argc, char** argv, void (*init)(), void (*fini)(), void (*ldFini)(), void* end) {
  programMain = main;
  return Next<int(Main*, int, char**, void (*)(), void (*)(), void (*)(), void*)>("__libc_start_main")(
      CountedMain, argc, argv, init, fini, ldFini, end);
}

int open(const char* path, int flags, ...) {
  va_list list;
  va_start(list, flags);
  const int mode = va_arg(list, int);
  va_end(list);
  return Fault(kOpen) != kNoFault ? -1 : static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

int mkostemps(char* name, int suffixLength, int flags) {
  return Fault(kOpen) != kNoFault ? -1 : Next<int(char*, int, int)>("mkostemps")(name, suffixLength, flags);
}

int mkostemp(char* name, int flags) {
  return mkostemps(name, 0, flags);
}

DIR* opendir(const char* path) {
  return Fault(kOpen) != kNoFault ? nullptr : Next<DIR*(const char*)>("opendir")(path);
}

ssize_t read(int descriptor, void* data, std::size_t size) {
  const ssize_t allowed = Allowed(kRead, size);
  return allowed < 0 ? -1 : syscall(SYS_read, descriptor, data, allowed);
}

ssize_t pread(int descriptor, void* data, std::size_t size, off_t position) {
  const ssize_t allowed = Allowed(kRead, size);
  return allowed < 0 ? -1 : syscall(SYS_pread64, descriptor, data, allowed, position);
}

ssize_t write(int descriptor, const void* data, std::size_t size) {
  const ssize_t allowed = Allowed(WriteKind(descriptor), size);
  return allowed < 0 ? -1 : syscall(SYS_write, descriptor, data, allowed);
}

ssize_t pwrite(int descriptor, const void* data, std::size_t size, off_t position) {
  const ssize_t allowed = Allowed(kWrite, size);
  return allowed < 0 ? -1 : syscall(SYS_pwrite64, descriptor, data, allowed, position);
}

int close(int descriptor) {
  const int fault = Fault(kClose);
  const int result = static_cast<int>(syscall(SYS_close, descriptor));
  if (fault == kNoFault) return result;
  errno = fault;
  return -1;
}

int rename(const char* from, const char* to) {
  return Fault(kRename) != kNoFault ? -1 : static_cast<int>(syscall(SYS_rename, from, to));
}

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*run)(void*), void* argument) {
  if (const int fault = Fault(kThread); fault != kNoFault) return fault;
  return Next<int(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*)>("pthread_create")(thread, attributes,
                                                                                                 run, argument);
}

#ifndef FAULT_SHIM_WITHOUT_MALLOC
void* malloc(std::size_t size) {
  return Fault(kMalloc) != kNoFault ? nullptr : __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) {
  return Fault(kMalloc) != kNoFault ? nullptr : __libc_calloc(count, size);
}

void* realloc(void* memory, std::size_t size) {
  return Fault(kMalloc) != kNoFault ? nullptr : __libc_realloc(memory, size);
}
#endif
}
